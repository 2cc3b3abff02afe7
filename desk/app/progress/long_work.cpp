#include "app/progress/long_work.h"

#include <algorithm>
#include <utility>

#include "app/progress/progress_window.h"
#include "host/utf.h"

namespace desk::app {
namespace {

using std::chrono::duration_cast;
using std::chrono::milliseconds;
using std::chrono::seconds;

/// Whatever takes less needs no window.
constexpr milliseconds kUnnoticed(500);
constexpr milliseconds kBetweenPictures(50);
/// Sooner the rest cannot be told from what has been done.
constexpr seconds kBeforeGuess(3);

thread_local LongWork* current = nullptr;

/// A dialog may stand above the owner.
HWND TopOf(HWND owner) {
  if (owner == nullptr) return nullptr;
  const HWND popup = GetLastActivePopup(owner);
  return popup != nullptr && IsWindowVisible(popup) ? popup : owner;
}

/// Keys and clicks that came while nobody could take them: they were not meant for what comes now.
void DropInput() {
  MSG message{};
  while (PeekMessageW(&message, nullptr, WM_KEYFIRST, WM_KEYLAST, PM_REMOVE)) {
  }
  while (PeekMessageW(&message, nullptr, WM_MOUSEFIRST, WM_MOUSELAST, PM_REMOVE)) {
  }
}

int Thousandths(const book::WorkState& state) {
  if (state.all <= 0) return -1;
  return static_cast<int>(std::clamp<std::int64_t>(state.done * 1000 / state.all, 0, 1000));
}

std::wstring DurationText(seconds duration) {
  const auto count = duration.count();
  if (count < 60) return std::to_wstring(std::max<long long>(count, 1)) + L" 秒";
  return std::to_wstring((count + 59) / 60) + L" 分钟";
}

}  // namespace

LongWork::LongWork(HWND owner, std::wstring title)
    : owner_(TopOf(owner)), focus_(GetFocus()), title_(std::move(title)) {
  current = this;
}

LongWork::~LongWork() {
  current = nullptr;
  if (!window_) return;
  DropInput();
  // The owner takes input again before the window goes: else another program's would be activated.
  if (owner_disabled_) EnableWindow(owner_, TRUE);
  window_->Destroy();
  if (owner_ != nullptr) SetActiveWindow(owner_);
  if (IsWindow(focus_)) SetFocus(focus_);
}

LongWork* LongWork::Current() {
  return current;
}

bool LongWork::Show(const book::WorkState& state) {
  const auto now = Clock::now();
  if (now - shown_ < kBetweenPictures) return !cancelled_;
  state_ = state;
  return KeepAlive();
}

bool LongWork::KeepAlive() {
  const auto now = Clock::now();
  if (now - started_ < kUnnoticed) return true;
  shown_ = now;
  if (!window_) Open();
  window_->SetState(tavrix::host::Wide(state_.step), HowFar(), Thousandths(state_));
  window_->Pump();
  cancelled_ = cancelled_ || window_->Cancelled();
  return !cancelled_;
}

void LongWork::Open() {
  owner_disabled_ = owner_ != nullptr && IsWindowEnabled(owner_);
  window_ = ProgressWindow::Show(owner_, title_);
  if (owner_disabled_) EnableWindow(owner_, FALSE);
}

std::wstring LongWork::HowFar() const {
  const int thousandths = Thousandths(state_);
  if (thousandths < 0) return {};
  std::wstring text = std::to_wstring(thousandths / 10) + L" %";
  const auto spent = duration_cast<seconds>(Clock::now() - started_);
  if (spent < kBeforeGuess || thousandths == 0 || thousandths == 1000) return text;
  return text + L"，大约还要 " + DurationText(spent * (1000 - thousandths) / thousandths);
}

void RunLong(HWND owner, const std::wstring& title,
             const std::function<void(const book::Progress& progress)>& work) {
  LongWork window(owner, title);
  work([&](const book::WorkState& state) { return window.Show(state); });
}

std::function<void(const std::string&, const std::function<void(const book::Progress&)>&)>
LongRunnerAbove(HWND owner) {
  return [owner](const std::string& title, const std::function<void(const book::Progress&)>& work) {
    RunLong(owner, tavrix::host::Wide(title), work);
  };
}

}  // namespace desk::app
