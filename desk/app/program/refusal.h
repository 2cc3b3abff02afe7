#pragma once

#include <functional>

#include "app/program/workplace.h"

namespace desk::app {

/// Runs a command. What the book refuses is told above the frame, that the user has cancelled in
/// the status bar; all else is thrown on.
void TellRefusal(const Workplace& place, const char* title, const std::function<void()>& body);

}  // namespace desk::app
