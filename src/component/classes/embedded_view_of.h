#pragma once

#include <string>

#include "component/activex/embedded_view.h"

namespace tavrix::component {

/// A portable view with its windows' way of asking the user.
template <class Model>
class EmbeddedViewOf : public EmbeddedView {
 public:
  [[nodiscard]] Model& GetModel() { return model_; }
  [[nodiscard]] viewkit::ControlList& Controls() override { return model_.Controls(); }
  void Resize(int width, int height) override { model_.Resize(width, height); }
  [[nodiscard]] viewkit::Color BackColor() const override { return model_.BackColor(); }
  void SetBackColor(viewkit::Color color) override { model_.SetBackColor(color); }
  [[nodiscard]] viewkit::Event<>& BackColorChanged() override { return model_.BackColorChanged; }
  void SetContainerName(const std::string& name) override {
    if constexpr (requires { model_.SetContainerName(name); }) model_.SetContainerName(name);
  }

 private:
  Model model_{User()};
};

}  // namespace tavrix::component
