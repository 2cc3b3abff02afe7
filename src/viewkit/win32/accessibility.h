#pragma once

#include <windows.h>

#include <memory>

#include "viewkit/accessible.h"

namespace tavrix::viewkit::win32 {

class Window;

/// Gives the answer to WM_GETOBJECT that hands out an object for the window's client area.
using AccessibleAnswer = LRESULT (*)(const std::shared_ptr<Window>& window, WPARAM wparam);

/// How the windows of this module that have an `Inside` answer. Null at first: then the system
/// answers for them, and knows no more than that there is a window.
void SetAccessibleAnswer(AccessibleAnswer answer);
[[nodiscard]] AccessibleAnswer GetAccessibleAnswer();

/// Tells whoever listens of an event (`EVENT_OBJECT_...`) of an item, or of the window as a whole.
void RaiseAccessibleEvent(HWND window, DWORD event, AccessibleId id);

}  // namespace tavrix::viewkit::win32
