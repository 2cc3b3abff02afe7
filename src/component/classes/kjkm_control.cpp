#include "component/classes/kjkm_control.h"

namespace tavrix::component {

namespace {

constexpr DISPID kMessage = 1;
constexpr DISPID kErrMessage = 2;

com::Variant Text(const std::string& text) {
  return com::Variant(std::string_view(text));
}

}  // namespace

KjkmControl::KjkmControl(IUnknown* outer) : ViewControl(outer, {CLSID_Kjkm, DIID___Kjkm, L"Kjkm"}) {
  Listeners().To(GetModel().Message,
                 [this](const std::string& text) { Events().Fire(kMessage, {Text(text)}); });
  Listeners().To(GetModel().ErrMessage,
                 [this](const std::string& text, std::int32_t level, const std::string& title) {
                   Events().Fire(kErrMessage, {Text(text), com::Variant(level), Text(title)});
                 });
}

}  // namespace tavrix::component
