#include "component/classes/view_controls.h"

namespace tavrix::component {

namespace {

// What the views raise, by their members' identifiers.
enum KjkmEvent : DISPID { kMessage = 1, kErrMessage = 2 };
enum SelKjkmEvent : DISPID { kDoSelect = 1, kDoCancel = 2 };

}  // namespace

KjkmControl::KjkmControl(IUnknown* outer) : ViewControl(outer, {CLSID_Kjkm, DIID___Kjkm, L"Kjkm"}) {
  Listeners().To(GetModel().Message, [this](const std::string& text) {
    Events().Fire(kMessage, {com::Variant(text)});
  });
  Listeners().To(GetModel().ErrMessage, [this](const std::string& text, std::int32_t level,
                                               const std::string& title) {
    Events().Fire(kErrMessage, {com::Variant(text), com::Variant(level), com::Variant(title)});
  });
}

SelKjkmControl::SelKjkmControl(IUnknown* outer)
    : ViewControl(outer, {CLSID_selKjkm, DIID___selKjkm, L"selKjkm"}) {
  Listeners().To(GetModel().DoSelect, [this] { Events().Fire(kDoSelect, {}); });
  Listeners().To(GetModel().DoCancel, [this] { Events().Fire(kDoCancel, {}); });
}

}  // namespace tavrix::component
