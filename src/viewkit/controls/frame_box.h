#pragma once

#include "viewkit/controls/captioned.h"

namespace tavrix::viewkit {

/// The titled border around a group of controls. It is created before them and does not own them.
class FrameBox : public Captioned {
 public:
  using Captioned::Captioned;
  [[nodiscard]] std::string TypeName() const override { return "Frame"; }
};

}  // namespace tavrix::viewkit
