#include "component/classes/sel_kjkm_control.h"

#include "picker/sel_kjkm.h"

namespace tavrix::component {

namespace {

constexpr DISPID kDoSelect = 1;
constexpr DISPID kDoCancel = 2;

}  // namespace

/// The portable picker with its windows' way of asking the user.
class SelKjkmView : public EmbeddedView {
 public:
  [[nodiscard]] picker::selKjkm& Model() { return model_; }
  [[nodiscard]] viewkit::ControlList& Controls() override { return model_.Controls(); }
  void Resize(int width, int height) override { model_.Resize(width, height); }
  [[nodiscard]] viewkit::Color BackColor() const override { return model_.BackColor(); }
  void SetBackColor(viewkit::Color color) override { model_.SetBackColor(color); }
  [[nodiscard]] viewkit::Event<>& BackColorChanged() override { return model_.BackColorChanged; }
  void SetContainerName(const std::string& name) override { model_.SetContainerName(name); }

 private:
  picker::selKjkm model_{User()};
};

SelKjkmControl::SelKjkmControl(IUnknown* outer)
    : SelKjkmControl(outer, std::make_shared<SelKjkmView>()) {}

SelKjkmControl::SelKjkmControl(IUnknown* outer, const std::shared_ptr<SelKjkmView>& view)
    : ActiveControl(outer, {CLSID_selKjkm, DIID___selKjkm, L"selKjkm"}, view),
      back_color_(*this),
      picker_ui_(*this, view->Model()),
      design_ui_(*this, view->Model()) {
  PublishInterfaces();
  ForwardEvents(*view);
}

void SelKjkmControl::PublishInterfaces() {
  PublishDual(IID__selKjkm, &back_color_);
  // Before the designer's interface: a caller by name means the picker's `Parameters`.
  PublishDual(IID_IPickerUI, &picker_ui_);
  PublishDual(IID_IDesignUI, &design_ui_);
}

void SelKjkmControl::ForwardEvents(SelKjkmView& view) {
  Listeners().To(view.Model().DoSelect, [this] { Events().Fire(kDoSelect, {}); });
  Listeners().To(view.Model().DoCancel, [this] { Events().Fire(kDoCancel, {}); });
}

}  // namespace tavrix::component
