#pragma once

#include <string>

#include "app/program/workplace.h"

namespace desk::app {

/// Takes back what was done last in the book. Asks first when somebody else has done it.
void UndoLast(const Workplace& place);
/// Does again what was taken back last.
void RedoLast(const Workplace& place);
/// Opens the history of the book.
void ShowHistory(const Workplace& place);

/// The name of whoever is logged on to this machine.
[[nodiscard]] std::string UserName();

}  // namespace desk::app
