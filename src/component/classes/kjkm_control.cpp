#include "component/classes/kjkm_control.h"

#include "maintenance/kjkm.h"

namespace tavrix::component {

namespace {

constexpr DISPID kMessage = 1;
constexpr DISPID kErrMessage = 2;

Variant Text(const std::string& text) {
  return Variant(std::string_view(text));
}

}  // namespace

/// The portable view with its windows' way of asking the user.
class KjkmView : public EmbeddedView {
 public:
  [[nodiscard]] maintenance::Kjkm& Model() { return model_; }
  [[nodiscard]] viewkit::ControlList& Controls() override { return model_.Controls(); }
  void Resize(int width, int height) override { model_.Resize(width, height); }
  [[nodiscard]] viewkit::Color BackColor() const override { return model_.BackColor(); }
  void SetBackColor(viewkit::Color color) override { model_.SetBackColor(color); }
  [[nodiscard]] viewkit::Event<>& BackColorChanged() override { return model_.BackColorChanged; }

 private:
  maintenance::Kjkm model_{User()};
};

KjkmControl::KjkmControl(IUnknown* outer) : KjkmControl(outer, std::make_shared<KjkmView>()) {}

KjkmControl::KjkmControl(IUnknown* outer, const std::shared_ptr<KjkmView>& view)
    : ActiveControl(outer, {CLSID_Kjkm, DIID___Kjkm, L"Kjkm"}, view),
      back_color_(*this),
      form_ui_(*this, view->Model()),
      design_ui_(*this, view->Model()) {
  PublishInterfaces();
  ForwardEvents(*view);
}

void KjkmControl::PublishInterfaces() {
  PublishDual(IID__Kjkm, &back_color_);
  PublishDual(IID_IFormUI, &form_ui_);
  PublishDual(IID_IDesignUI, &design_ui_);
}

void KjkmControl::ForwardEvents(KjkmView& view) {
  Listeners().To(view.Model().Message,
                 [this](const std::string& text) { Events().Fire(kMessage, {Text(text)}); });
  Listeners().To(view.Model().ErrMessage,
                 [this](const std::string& text, std::int32_t level, const std::string& title) {
                   Events().Fire(kErrMessage, {Text(text), Variant(level), Text(title)});
                 });
}

}  // namespace tavrix::component
