#pragma once

#include "viewkit/color.h"
#include "viewkit/controls/captioned.h"

namespace tavrix::viewkit {

/// A line of text. Its mnemonic leads to the control created after it.
class Label : public Captioned {
 public:
  using Captioned::Captioned;
  [[nodiscard]] std::string TypeName() const override { return "Label"; }

  /// `color::kDefault`: as the view's other texts, on the view's ground.
  [[nodiscard]] Color ForeColor() const { return fore_color_; }
  [[nodiscard]] Color BackColor() const { return back_color_; }
  void SetForeColor(Color color);
  void SetBackColor(Color color);

 private:
  Color fore_color_ = color::kDefault;
  Color back_color_ = color::kDefault;
};

}  // namespace tavrix::viewkit
