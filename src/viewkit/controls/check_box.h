#pragma once

#include "viewkit/controls/captioned.h"

namespace tavrix::viewkit {

class CheckBox : public Captioned {
 public:
  static constexpr int kUnchecked = 0;
  static constexpr int kChecked = 1;
  static constexpr int kGrayed = 2;

  using Captioned::Captioned;
  [[nodiscard]] std::string TypeName() const override { return "CheckBox"; }

  [[nodiscard]] int Value() const { return value_; }
  /// Raises `Clicked` when the value changes; any other number than the three is ignored.
  void SetValue(int value);
  /// The user's click: sets a clear box and clears any other, unless the box is disabled.
  void Click();

  Event<> Clicked;

 private:
  int value_ = kUnchecked;
};

}  // namespace tavrix::viewkit
