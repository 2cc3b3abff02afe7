#pragma once

#include "viewkit/controls/captioned.h"

namespace tavrix::viewkit {

/// A line of text. Its mnemonic leads to the control created after it.
class Label : public Captioned {
 public:
  using Captioned::Captioned;
  [[nodiscard]] std::string TypeName() const override { return "Label"; }
};

}  // namespace tavrix::viewkit
