#pragma once

#include <windows.h>

#include <string>

namespace desk::app {

/// Starts this program once more, on the same book. `host::HostError` when the system refuses.
void OpenNewWindow(const std::wstring& book);

/// The book that `OpenNewWindow` has started this program for; empty when it has not.
[[nodiscard]] std::wstring BookOfNewWindow();

/// Moves the window a little when another one of this program stands at the same place.
void StepAside(HWND window);

}  // namespace desk::app
