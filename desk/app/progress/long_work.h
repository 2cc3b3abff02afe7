#pragma once

#include <windows.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "book/session/progress.h"
#include "host/non_copyable.h"

namespace desk::app {

class ProgressWindow;

/// Work that may take long, in the thread of the windows. After half a second a window says how far
/// it has come and offers to cancel; `owner` and what stands above it take no input as long as that
/// window is there, and the focus is where it was afterwards. One at a time.
class LongWork : private tavrix::host::NonCopyable {
 public:
  /// `title` says what is being done. Without an owner the window stands by itself.
  LongWork(HWND owner, std::wstring title);
  ~LongWork();

  /// What `book::Progress` wants: false when the user has cancelled. May be called very often.
  [[nodiscard]] bool Show(const book::WorkState& state);
  /// Goes on painting while a statement of the work runs. False when the user has cancelled.
  [[nodiscard]] bool KeepAlive();
  [[nodiscard]] bool Cancelled() const { return cancelled_; }
  /// What is going on in this thread; null for nothing.
  [[nodiscard]] static LongWork* Current();

 private:
  using Clock = std::chrono::steady_clock;

  void Open();
  [[nodiscard]] std::wstring HowFar() const;

  HWND owner_;
  HWND focus_;
  std::wstring title_;
  book::WorkState state_;
  Clock::time_point started_ = Clock::now();
  Clock::time_point shown_ = started_;
  std::shared_ptr<ProgressWindow> window_;  // null as long as it is not wanted
  bool owner_disabled_ = false;
  bool cancelled_ = false;
};

/// Does `work`, which tells how far it is. Throws what it throws: `book::WorkCancelled` when the
/// user has cancelled.
void RunLong(HWND owner, const std::wstring& title,
             const std::function<void(const book::Progress& progress)>& work);

/// The same for views, which know no windows.
[[nodiscard]] std::function<void(const std::string& title,
                                 const std::function<void(const book::Progress& progress)>& work)>
LongRunnerAbove(HWND owner);

}  // namespace desk::app
