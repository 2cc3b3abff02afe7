#pragma once

#include "component/classes/picker_ui.h"
#include "component/classes/view_control.h"
#include "picker/sel_kjkm.h"
#include "tavrix.h"

namespace tavrix::component {

/// The class `selKjkm`: the account picker as an ActiveX control.
class SelKjkmControl : public ViewControl<picker::selKjkm, _selKjkm, PickerUi, IPickerUI> {
 public:
  explicit SelKjkmControl(IUnknown* outer);
};

}  // namespace tavrix::component
