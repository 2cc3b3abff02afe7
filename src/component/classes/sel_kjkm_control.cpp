#include "component/classes/sel_kjkm_control.h"

namespace tavrix::component {

namespace {

constexpr DISPID kDoSelect = 1;
constexpr DISPID kDoCancel = 2;

}  // namespace

SelKjkmControl::SelKjkmControl(IUnknown* outer)
    : SelKjkmControl(outer, std::make_shared<SelKjkmView>()) {}

SelKjkmControl::SelKjkmControl(IUnknown* outer, const std::shared_ptr<SelKjkmView>& view)
    : ActiveControl(outer, {CLSID_selKjkm, DIID___selKjkm, L"selKjkm"}, view),
      back_color_(*this),
      picker_ui_(*this, view->GetModel()),
      design_ui_(*this, view->GetModel()) {
  AddOwnInterfaces();
  ForwardEvents(*view);
}

void SelKjkmControl::AddOwnInterfaces() {
  AddDualInterface(IID__selKjkm, &back_color_);
  // Before the designer's interface: a caller by name means the picker's `Parameters`.
  AddDualInterface(IID_IPickerUI, &picker_ui_);
  AddDualInterface(IID_IDesignUI, &design_ui_);
}

void SelKjkmControl::ForwardEvents(SelKjkmView& view) {
  Listeners().To(view.GetModel().DoSelect, [this] { Events().Fire(kDoSelect, {}); });
  Listeners().To(view.GetModel().DoCancel, [this] { Events().Fire(kDoCancel, {}); });
}

}  // namespace tavrix::component
