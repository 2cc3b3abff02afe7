#pragma once

#include "viewkit/controls/captioned.h"

namespace tavrix::viewkit {

class CommandButton : public Captioned {
 public:
  using Captioned::Captioned;
  [[nodiscard]] std::string TypeName() const override { return "CommandButton"; }

  /// The user's click: raises `Clicked`, unless the button is disabled.
  void Click();
  /// A key of the user: Enter clicks, once however long it is held. True when the key is the
  /// button's. `KeyDown` is raised by the caller, before.
  bool HandleKey(Key key, Modifiers modifiers = {});

  Event<> Clicked;
};

}  // namespace tavrix::viewkit
