#pragma once

#include <windows.h>

#include <memory>

#include "app/frame/wait_window.h"
#include "book/database/database.h"

namespace desk::app {

/// What the program does while a server does not answer: after a moment it says so, goes on
/// painting, and ends the wait when the user has enough or closes the program. All other input
/// stays in the queue until the wait is over, so that no command runs inside another.
class ServerWait : public book::WaitPort {
 public:
  explicit ServerWait(HWND frame) : frame_(frame), thread_(GetCurrentThreadId()) {}

  bool OnWait(std::chrono::milliseconds waited) override;
  void OnWaited() noexcept override { window_.reset(); }

  /// A message that the program is about to handle. What the user does anew is waited for again:
  /// once he has had enough no server is, until then, because a command may ask more than once.
  void OnMessage(const MSG& message);
  /// What is asked while it is quiet nobody waits for: after a moment it is given up, without a
  /// word.
  void SetQuiet(bool quiet) { quiet_ = quiet; }
  /// The program ends: nothing is waited for any more.
  void OnClosing() { closing_ = true; }

 private:
  [[nodiscard]] bool HasEnough(std::chrono::milliseconds waited);
  void ShowWait(std::chrono::milliseconds waited);
  void GoOnPainting();
  /// Whether the message that closes the frame is waiting to be read.
  [[nodiscard]] bool FrameIsToClose() const;

  HWND frame_;
  DWORD thread_;
  std::shared_ptr<WaitWindow> window_;
  bool enough_ = false;
  bool quiet_ = false;
  bool closing_ = false;
};

}  // namespace desk::app
