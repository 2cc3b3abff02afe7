#include "component/classes/kjkm_control.h"

namespace tavrix::component {

namespace {

constexpr DISPID kMessage = 1;
constexpr DISPID kErrMessage = 2;

com::Variant Text(const std::string& text) {
  return com::Variant(std::string_view(text));
}

}  // namespace

KjkmControl::KjkmControl(IUnknown* outer) : KjkmControl(outer, std::make_shared<KjkmView>()) {}

KjkmControl::KjkmControl(IUnknown* outer, const std::shared_ptr<KjkmView>& view)
    : ActiveControl(outer, {CLSID_Kjkm, DIID___Kjkm, L"Kjkm"}, view),
      back_color_(*this),
      form_ui_(*this, view->GetModel()),
      design_ui_(*this, view->GetModel()) {
  AddOwnInterfaces();
  ForwardEvents(*view);
}

void KjkmControl::AddOwnInterfaces() {
  AddDualInterface(IID__Kjkm, &back_color_);
  AddDualInterface(IID_IFormUI, &form_ui_);
  AddDualInterface(IID_IDesignUI, &design_ui_);
}

void KjkmControl::ForwardEvents(KjkmView& view) {
  Listeners().To(view.GetModel().Message,
                 [this](const std::string& text) { Events().Fire(kMessage, {Text(text)}); });
  Listeners().To(view.GetModel().ErrMessage,
                 [this](const std::string& text, std::int32_t level, const std::string& title) {
                   Events().Fire(kErrMessage, {Text(text), com::Variant(level), Text(title)});
                 });
}

}  // namespace tavrix::component
