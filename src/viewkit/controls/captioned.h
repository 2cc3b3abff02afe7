#pragma once

#include <string>
#include <utility>

#include "viewkit/control.h"

namespace tavrix::viewkit {

/// A control that shows a fixed text. An "&" marks the letter behind it as the mnemonic; "&&" is a
/// plain "&".
class Captioned : public Control {
 public:
  explicit Captioned(std::string name, std::optional<int> index = {})
      : Control(std::move(name), index) {}

  [[nodiscard]] const std::string& Caption() const { return caption_; }
  void SetCaption(std::string caption);

 private:
  std::string caption_;
};

}  // namespace tavrix::viewkit
