#include "app/program/server_wait.h"

#include <exception>
#include <string>

#include "app/progress/long_work.h"

namespace desk::app {
namespace {

/// Whatever is answered sooner needs no window.
constexpr std::chrono::milliseconds kUnnoticed(600);

/// How long the user may notice that the program does not answer, for what he has not asked for.
constexpr std::chrono::milliseconds kQuietPatience(1200);

/// Long work is cancelled between its statements; only one that does not end is given up.
constexpr std::chrono::milliseconds kStatementOfLongWork(10000);

bool EscapePressed() {
  constexpr int kDownOrPressedSince = 0x8001;
  return (GetAsyncKeyState(VK_ESCAPE) & kDownOrPressedSince) != 0;
}

bool InForeground() {
  DWORD process = 0;
  GetWindowThreadProcessId(GetForegroundWindow(), &process);
  return process == GetCurrentProcessId();
}

/// What was typed and clicked for an answer that does not come.
void DropInput() {
  MSG message{};
  while (PeekMessageW(&message, nullptr, WM_KEYFIRST, WM_KEYLAST, PM_REMOVE)) {
  }
}

}  // namespace

bool ServerWait::OnWait(std::chrono::milliseconds waited) {
  if (GetCurrentThreadId() != thread_) return true;
  if (LongWork* const work = LongWork::Current()) {
    return work->KeepAlive() || waited < kStatementOfLongWork;
  }
  if (closing_ || enough_) return false;
  if (FrameIsToClose()) {
    enough_ = true;
    return false;
  }
  if (quiet_) return waited < kQuietPatience;
  if (waited < kUnnoticed) return true;
  try {
    ShowWait(waited);
    GoOnPainting();
  } catch (const std::exception&) {  // without a window it waits as well
  }
  if (!HasEnough(waited)) return true;
  enough_ = true;
  DropInput();
  return false;
}

void ServerWait::OnMessage(const MSG& message) {
  const bool key = message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
  const bool click = message.message == WM_LBUTTONDOWN || message.message == WM_LBUTTONDBLCLK;
  if (key || click || message.message == WM_COMMAND) enough_ = false;
}

void ServerWait::ShowWait(std::chrono::milliseconds waited) {
  if (!window_) {
    const HWND active = GetActiveWindow();
    window_ = WaitWindow::Show(active != nullptr ? active : frame_);
    (void)EscapePressed();  // what was pressed before does not count
  }
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(waited).count();
  window_->SetText(L"正在等待数据库服务器的回答，已等待 " + std::to_wstring(seconds) +
                   L" 秒。\n正在保存的，取消后是否已保存不得而知。");
}

void ServerWait::GoOnPainting() {
  MSG message{};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | PM_QS_PAINT)) DispatchMessageW(&message);
  while (PeekMessageW(&message, window_->Hwnd(), 0, 0, PM_REMOVE)) DispatchMessageW(&message);
}

bool ServerWait::HasEnough(std::chrono::milliseconds waited) {
  if (window_ && window_->Clicked()) return true;
  return waited > kUnnoticed && InForeground() && EscapePressed();
}

bool ServerWait::FrameIsToClose() const {
  MSG message{};
  if (PeekMessageW(&message, frame_, WM_CLOSE, WM_CLOSE, PM_NOREMOVE)) return true;
  constexpr WPARAM kCommand = 0xFFF0;  // the lower bits are the system's own
  if (PeekMessageW(&message, frame_, WM_SYSCOMMAND, WM_SYSCOMMAND, PM_NOREMOVE) &&
      (message.wParam & kCommand) == SC_CLOSE) {
    return true;
  }
  if (PeekMessageW(&message, nullptr, WM_SYSKEYDOWN, WM_SYSKEYDOWN, PM_NOREMOVE) &&
      message.wParam == VK_F4) {
    return true;
  }
  return PeekMessageW(&message, frame_, WM_NCLBUTTONDOWN, WM_NCLBUTTONDOWN, PM_NOREMOVE) &&
         message.wParam == HTCLOSE;
}

}  // namespace desk::app
