#pragma once

#include <windows.h>

#include <memory>

#include "component/activex/active_control.h"
#include "component/classes/back_color.h"
#include "component/classes/design_ui.h"
#include "component/classes/embedded_view_of.h"
#include "component/classes/picker_ui.h"
#include "picker/sel_kjkm.h"
#include "tavrix.h"

namespace tavrix::component {

/// The class `selKjkm`: the account picker as an ActiveX control.
class SelKjkmControl : public ActiveControl {
 public:
  explicit SelKjkmControl(IUnknown* outer);

 private:
  using SelKjkmView = EmbeddedViewOf<picker::selKjkm>;
  SelKjkmControl(IUnknown* outer, const std::shared_ptr<SelKjkmView>& view);
  void AddOwnInterfaces();
  void ForwardEvents(SelKjkmView& view);

  BackColorImpl<_selKjkm> back_color_;
  PickerUi picker_ui_;
  DesignUi design_ui_;
};

}  // namespace tavrix::component
