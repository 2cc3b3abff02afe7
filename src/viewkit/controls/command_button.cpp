#include "viewkit/controls/command_button.h"

namespace tavrix::viewkit {

void CommandButton::Click() {
  if (Enabled()) Clicked.Raise();
}

bool CommandButton::HandleKey(Key key, Modifiers modifiers) {
  if (key != Key::kEnter || modifiers.control || modifiers.alt) return false;
  if (!modifiers.repeated) Click();
  return true;
}

}  // namespace tavrix::viewkit
