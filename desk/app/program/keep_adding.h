#pragma once

#include "app/program/workplace.h"

namespace desk::app {

/// Opens the account's dialog beside the chosen account, and after each save beside the account
/// that was added last, until the user closes it without saving. Direction and kinds of accounting
/// of that account are proposed: they are set in the dialog as soon as a name is being typed, so
/// that a dialog in which nothing was typed closes without a question. Throws what the book raises.
void KeepAdding(const Workplace& place);

}  // namespace desk::app
