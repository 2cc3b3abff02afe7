#pragma once

#include <string>

#include "viewkit/control.h"

namespace tavrix::viewkit {

/// One line of text, of any length. Getting the focus by key selects the whole text.
class TextBox : public Control {
 public:
  using Control::Control;
  [[nodiscard]] std::string TypeName() const override { return "TextBox"; }

  [[nodiscard]] const std::string& Text() const { return text_; }
  /// Raises `Changed` when the text changes, whoever sets it.
  void SetText(std::string text);

  Event<> Changed;

 private:
  std::string text_;
};

}  // namespace tavrix::viewkit
