#pragma once

#include "component/classes/form_ui.h"
#include "component/classes/picker_ui.h"
#include "component/classes/view_control.h"
#include "maintenance/kjkm.h"
#include "picker/sel_kjkm.h"
#include "tavrix.h"

/// The views as ActiveX controls.
namespace tavrix::component {

/// The class `Kjkm`: the maintenance view.
class KjkmControl : public ViewControl<maintenance::Kjkm, _Kjkm, FormUi, IFormUI> {
 public:
  explicit KjkmControl(IUnknown* outer);
};

/// The class `selKjkm`: the account picker.
class SelKjkmControl : public ViewControl<picker::selKjkm, _selKjkm, PickerUi, IPickerUI> {
 public:
  explicit SelKjkmControl(IUnknown* outer);
};

}  // namespace tavrix::component
