#pragma once

#include <windows.h>

#include <memory>

#include "book/host/wheel_source.h"

namespace desk::app {

/// A mouse-wheel source that listens to the wheel over the window it is attached to. The window's
/// own handling of the wheel is replaced.
class WindowWheel : public book::WheelSource {
 public:
  [[nodiscard]] static std::shared_ptr<WindowWheel> Make();
  ~WindowWheel() override;

 protected:
  void Hook(std::intptr_t window) override;
  void Unhook(std::intptr_t window) override;

 private:
  static LRESULT CALLBACK Entry(HWND window, UINT message, WPARAM wparam, LPARAM lparam,
                                UINT_PTR id, DWORD_PTR source) noexcept;

  std::weak_ptr<WindowWheel> self_;
};

}  // namespace desk::app
