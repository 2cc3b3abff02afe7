#include "app/sheet/sheets.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace desk::app {

Sheets::Sheets(HWND frame, DeskSettings& settings, Calls calls)
    : frame_(frame), settings_(settings), calls_(std::move(calls)) {}

SheetWindow* Sheets::Find(const char* kind, const std::string& key) const {
  const auto found = std::ranges::find_if(opened_, [&](const Opened& sheet) {
    return sheet.kind == kind && sheet.window->Alive() && sheet.window->View().Key() == key;
  });
  return found == opened_.end() ? nullptr : found->window.get();
}

SheetWindow& Sheets::Open(const char* kind, const std::string& key, const SheetWindow::Plan& plan) {
  if (SheetWindow* open = Find(kind, key)) return open->Open(), *open;
  const auto self = std::make_shared<SheetWindow*>(nullptr);
  const auto window =
      SheetWindow::Make(frame_, calls_.style(), plan,
                        {.show = [this, kind](HWND hwnd) { Show(hwnd, kind); },
                         .closing = [this, kind](HWND hwnd) { settings_.Save(hwnd, kind); },
                         .modal = [this](HWND owner, bool modal) { SetModal(owner, modal); },
                         .closed = [this, self] { Forget(*self); },
                         .key = calls_.key});
  *self = window.get();
  opened_.push_back({kind, window});
  window->Open();
  return *window;
}

/// A second one of a kind does not hide the first.
void Sheets::Show(HWND window, const char* kind) {
  const auto of_kind = std::ranges::count(opened_, kind, &Opened::kind);
  settings_.Restore(window, kind, SW_SHOWNORMAL);
  if (of_kind <= 1 || IsZoomed(window)) return;
  RECT place{};
  GetWindowRect(window, &place);
  const auto step = static_cast<int>(of_kind - 1) *
                    (GetSystemMetrics(SM_CYCAPTION) + GetSystemMetrics(SM_CYSIZEFRAME));
  SetWindowPos(window, nullptr, place.left + step, place.top + step, 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

/// The user goes on in the sheet that was used before, or in the frame.
void Sheets::Forget(const SheetWindow* window) {
  std::erase_if(opened_, [&](const Opened& sheet) { return sheet.window.get() == window; });
  const HWND next = opened_.empty() ? frame_ : opened_.back().window->Hwnd();
  if (IsWindow(next)) SetActiveWindow(next);
}

void Sheets::Follow() {
  std::exception_ptr failure;
  for (const Opened& sheet : std::vector(opened_)) {
    if (!sheet.window->Alive()) continue;
    try {
      sheet.window->View().Follow();
    } catch (const std::exception&) {
      if (!failure) failure = std::current_exception();
    }
  }
  if (failure) std::rethrow_exception(failure);
}

bool Sheets::MayClose() {
  for (const Opened& sheet : std::vector(opened_)) {
    if (sheet.window->Alive() && !sheet.window->View().MayClose()) return false;
  }
  return true;
}

void Sheets::CloseAll() {
  while (!opened_.empty()) {
    const auto window = opened_.back().window;
    window->Destroy();
    std::erase_if(opened_, [&](const Opened& sheet) { return sheet.window == window; });
  }
}

bool Sheets::Translate(MSG& message) {
  return std::ranges::any_of(std::vector(opened_),
                             [&](const Opened& sheet) { return sheet.window->Translate(message); });
}

void Sheets::SetModal(HWND owner, bool modal) {
  dialogs_ += modal ? 1 : -1;
  if (modal && dialogs_ == 1) {
    std::vector<HWND> others = {frame_};
    for (const Opened& sheet : opened_) others.push_back(sheet.window->Hwnd());
    std::erase_if(others, [&](HWND each) { return each == owner || !IsWindowEnabled(each); });
    disabled_ = std::move(others);
  }
  // A dialog above a dialog gives way to that one, not to the windows below both.
  if (dialogs_ > 1) return;
  for (const HWND each : disabled_) EnableWindow(each, dialogs_ == 0);
}

}  // namespace desk::app
