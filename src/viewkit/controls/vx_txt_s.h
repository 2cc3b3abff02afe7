#pragma once

#include <string>

#include "viewkit/control.h"

namespace tavrix::viewkit {

/// A box that stands for one value and shows a text for it, such as an identifier and the name that
/// goes with it (`vxTxt_S`).
class vxTxt_S : public Control {
 public:
  using Control::Control;
  [[nodiscard]] std::string TypeName() const override { return "vxTxt_S"; }

  [[nodiscard]] const std::string& Value() const { return value_; }
  /// A new value shows as itself until it gets a text of its own.
  void SetValue(std::string value);
  [[nodiscard]] const std::string& Text() const { return text_; }
  void SetText(std::string text);

  Event<> Changed;  ///< the value or the text, whoever changed it

 private:
  std::string value_;
  std::string text_;
};

}  // namespace tavrix::viewkit
