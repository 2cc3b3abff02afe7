#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "viewkit/ports.h"

namespace tavrix::viewkit::win32 {

/// Asks the user through the system's windows.
class WindowsUser : public UserPort {
 public:
  struct Options {
    /// The window a question stands above: the container's frame or the view. Its top-level window
    /// is disabled while the question is open. Empty or null: the thread's active window.
    std::function<HWND()> owner{};
    /// Called with true before and false after each modal window, so that a container can disable
    /// its other frames. May be empty.
    std::function<void(bool)> modal{};
  };
  WindowsUser() = default;
  explicit WindowsUser(Options options) : options_(std::move(options)) {}

  [[nodiscard]] Answer Ask(const std::string& text, const std::string& title, Icon icon,
                           Buttons buttons) override;
  [[nodiscard]] std::string Input(const std::string& prompt, const std::string& title) override;
  void ShowModal(DialogModel& dialog) override;
  /// The hourglass stands as long as the thread does not return to its message loop.
  void SetWaitCursor(bool on) override;
  [[nodiscard]] std::string ApplicationTitle() override;

 private:
  class Modal;
  class DisabledOwner;
  [[nodiscard]] HWND Owner() const;

  Options options_;
  int waiting_ = 0;
  HCURSOR pointer_ = nullptr;
};

/// The description in a program file's version resource; its base name when it has none.
[[nodiscard]] std::string ProgramTitle(const std::wstring& file);

}  // namespace tavrix::viewkit::win32
