#include "viewkit/command_button.h"

namespace tavrix::viewkit {

void CommandButton::Click() {
  if (Enabled()) Clicked.Raise();
}

}  // namespace tavrix::viewkit
