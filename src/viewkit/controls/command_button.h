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

  /// The Tab key stops here. Before the button has a window.
  [[nodiscard]] bool TabStop() const { return tab_stop_; }
  void SetTabStop(bool stop) { tab_stop_ = stop; }

  Event<> Clicked;

 private:
  bool tab_stop_ = true;
};

}  // namespace tavrix::viewkit
