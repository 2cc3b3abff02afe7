#pragma once

#include <windows.h>

#include <memory>

#include "component/activex/active_control.h"
#include "component/classes/back_color.h"
#include "component/classes/design_ui.h"
#include "component/classes/embedded_view_of.h"
#include "component/classes/form_ui.h"
#include "maintenance/kjkm.h"
#include "tavrix.h"

namespace tavrix::component {

/// The class `Kjkm`: the maintenance view as an ActiveX control.
class KjkmControl : public ActiveControl {
 public:
  explicit KjkmControl(IUnknown* outer);

 private:
  using KjkmView = EmbeddedViewOf<maintenance::Kjkm>;
  KjkmControl(IUnknown* outer, const std::shared_ptr<KjkmView>& view);
  void AddOwnInterfaces();
  void ForwardEvents(KjkmView& view);

  BackColorImpl<_Kjkm> back_color_;
  FormUi form_ui_;
  DesignUi design_ui_;
};

}  // namespace tavrix::component
