#include "component/classes/sel_kjkm_control.h"

namespace tavrix::component {

namespace {

constexpr DISPID kDoSelect = 1;
constexpr DISPID kDoCancel = 2;

}  // namespace

SelKjkmControl::SelKjkmControl(IUnknown* outer)
    : ViewControl(outer, {CLSID_selKjkm, DIID___selKjkm, L"selKjkm"}) {
  Listeners().To(GetModel().DoSelect, [this] { Events().Fire(kDoSelect, {}); });
  Listeners().To(GetModel().DoCancel, [this] { Events().Fire(kDoCancel, {}); });
}

}  // namespace tavrix::component
