#pragma once

#include <windows.h>

#include <memory>

#include "component/activex/active_control.h"
#include "component/classes/back_color.h"
#include "component/classes/design_ui.h"
#include "component/classes/picker_ui.h"
#include "tavrix.h"

namespace tavrix::component {

class SelKjkmView;

/// The class `selKjkm`: the account picker as an ActiveX control.
class SelKjkmControl : public ActiveControl {
 public:
  explicit SelKjkmControl(IUnknown* outer);

 private:
  SelKjkmControl(IUnknown* outer, const std::shared_ptr<SelKjkmView>& view);
  void PublishInterfaces();
  void ForwardEvents(SelKjkmView& view);

  BackColorFace<_selKjkm> back_color_;
  PickerUi picker_ui_;
  DesignUi design_ui_;
};

}  // namespace tavrix::component
