#include "app/automation/window_wheel.h"

#include <commctrl.h>

namespace desk::app {

std::shared_ptr<WindowWheel> WindowWheel::Make() {
  auto source = std::make_shared<WindowWheel>();
  source->self_ = source;
  return source;
}

WindowWheel::~WindowWheel() {
  if (AttachedTo() != 0) WindowWheel::Unhook(AttachedTo());
}

void WindowWheel::Hook(std::intptr_t window) {
  SetWindowSubclass(reinterpret_cast<HWND>(window), Entry, reinterpret_cast<UINT_PTR>(this),
                    reinterpret_cast<DWORD_PTR>(this));
}

void WindowWheel::Unhook(std::intptr_t window) {
  RemoveWindowSubclass(reinterpret_cast<HWND>(window), Entry, reinterpret_cast<UINT_PTR>(this));
}

LRESULT CALLBACK WindowWheel::Entry(HWND window, UINT message, WPARAM wparam, LPARAM lparam,
                                    UINT_PTR, DWORD_PTR source) noexcept {
  // What the wheel leads to may let go of the source.
  const std::shared_ptr<WindowWheel> wheel = reinterpret_cast<WindowWheel*>(source)->self_.lock();
  if (!wheel) return DefSubclassProc(window, message, wparam, lparam);
  if (message == WM_MOUSEWHEEL) {
    try {
      wheel->Turn(GET_WHEEL_DELTA_WPARAM(wparam));
    } catch (...) {  // nothing may unwind through the system; views report their own errors
    }
    return 0;
  }
  const LRESULT result = DefSubclassProc(window, message, wparam, lparam);
  if (message == WM_NCDESTROY) wheel->Detach();
  return result;
}

}  // namespace desk::app
