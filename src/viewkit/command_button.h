#pragma once

#include "viewkit/captioned.h"

namespace tavrix::viewkit {

class CommandButton : public Captioned {
 public:
  using Captioned::Captioned;
  [[nodiscard]] std::string TypeName() const override { return "CommandButton"; }

  /// The user's click: raises `Clicked`, unless the button is disabled.
  void Click();

  Event<> Clicked;
};

}  // namespace tavrix::viewkit
