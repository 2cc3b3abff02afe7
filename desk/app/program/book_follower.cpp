#include "app/program/book_follower.h"

#include <exception>
#include <utility>

#include "app/progress/long_work.h"
#include "viewkit/win32/window.h"

namespace desk::app {
namespace {

namespace win32 = tavrix::viewkit::win32;

constexpr UINT_PTR kTick = 1;
constexpr UINT kTickMilliseconds = 2000;

}  // namespace

/// A window that nobody sees, for its timer.
class BookFollower::Ticker : public win32::Window {
 public:
  void Open(std::function<void()> tick) {
    tick_ = std::move(tick);
    Create(win32::ClassNamed(L"DeskTicker"), {.parent = HWND_MESSAGE});
    SetTimer(Hwnd(), kTick, kTickMilliseconds, nullptr);
  }

 private:
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override {
    if (message != WM_TIMER) return Window::OnMessage(message, wparam, lparam);
    tick_();
    return 0;
  }
  std::function<void()> tick_;
};

BookFollower::BookFollower(HWND frame, Calls calls)
    : frame_(frame), calls_(std::move(calls)), ticker_(std::make_shared<Ticker>()) {
  ticker_->Open([this] { Look(); });
}

BookFollower::~BookFollower() {
  ticker_->Destroy();
}

bool BookFollower::MayLook() const {
  if ((!watch_ && !unread_.Any()) || !IsWindowEnabled(frame_) || LongWork::Current() != nullptr)
    return false;
  GUITHREADINFO thread{};
  thread.cbSize = sizeof thread;
  constexpr DWORD kBusy = GUI_INMENUMODE | GUI_INMOVESIZE | GUI_POPUPMENUMODE | GUI_SYSTEMMENUMODE;
  return GetGUIThreadInfo(GetCurrentThreadId(), &thread) && (thread.flags & kBusy) == 0 &&
         thread.hwndCapture == nullptr;
}

void BookFollower::Note() {
  Forget();
  book::Session* session = calls_.session();
  if (session == nullptr) return;
  try {
    watch_.emplace(*session);
  } catch (const std::exception&) {  // a book that cannot be watched serves all the same
  }
}

void BookFollower::Forget() {
  watch_.reset();
  unread_ = {};
}

book::ChangeWatch::Seen BookFollower::Ask() {
  try {
    book::ChangeWatch::Seen seen = unread_;
    if (watch_) {
      seen |= watch_->Look();
    } else {
      watch_.emplace(*calls_.session());
    }
    return seen;
  } catch (const book::DatabaseError& error) {
    if (error.Kind() == book::ErrorKind::kGone) Forget();
    return {};
  }
}

void BookFollower::Look() {
  if (!MayLook()) return;
  calls_.quiet(true);
  const book::ChangeWatch::Seen seen = Ask();
  calls_.quiet(false);
  if (seen.Any() && !calls_.changed(seen)) unread_ = seen;
}

}  // namespace desk::app
