#include "app/frame/status_bar.h"

#include <commctrl.h>

#include <algorithm>
#include <array>

#include "viewkit/win32/window.h"

namespace desk::app {

StatusBar::StatusBar(HWND parent, SharedStyle style)
    : window_(CreateWindowExW(0, STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0,
                              0, 0, 0, parent, nullptr, win32::ThisModule(), nullptr)) {
  SetStyle(std::move(style));
}

void StatusBar::SetStyle(SharedStyle style) {
  style_ = std::move(style);
  SendMessageW(Handle(), WM_SETFONT, reinterpret_cast<WPARAM>(style_->Font()), TRUE);
  SendMessageW(Handle(), SB_SETMINHEIGHT,
               static_cast<WPARAM>(style_->fonts.LinePixels() + style_->scale.Design(8)), 0);
  Arrange();
}

int StatusBar::Height() const {
  RECT place{};
  GetWindowRect(Handle(), &place);
  return static_cast<int>(place.bottom - place.top);
}

void StatusBar::Arrange() {
  SendMessageW(Handle(), WM_SIZE, 0, 0);  // it places itself at its parent's foot
  RECT area{};
  GetClientRect(Handle(), &area);
  const int margin = style_->scale.Design(24);
  const int width = static_cast<int>(area.right);
  const int file = std::min(style_->fonts.Pixels(file_, false) + margin + style_->scale.Design(16),
                            width * 2 / 5);
  const int company = std::min(style_->fonts.Pixels(company_, false) + margin, width * 3 / 10);
  const std::array<int, 3> ends = {std::max(0, width - file - company), std::max(0, width - file),
                                   -1};
  SendMessageW(Handle(), SB_SETPARTS, ends.size(), reinterpret_cast<LPARAM>(ends.data()));
  SetPart(1, Cut(company_, company - margin));
  SetPart(2, Cut(file_, file - margin - style_->scale.Design(16)));
}

/// The system would cut it in the middle of a character.
std::wstring StatusBar::Cut(const std::wstring& text, int room) const {
  std::wstring shown = text;
  for (std::size_t length = text.size(); length > 0; --length) {
    if (style_->fonts.Pixels(shown, false) <= room) break;
    shown = text.substr(0, length - 1) + L"…";
  }
  return shown;
}

void StatusBar::SetPart(int part, const std::wstring& text) {
  const std::wstring shown = L" " + text;
  SendMessageW(Handle(), SB_SETTEXTW, static_cast<WPARAM>(part),
               reinterpret_cast<LPARAM>(shown.c_str()));
}

void StatusBar::SetMessage(const std::wstring& text) {
  SetPart(0, text);
  UpdateWindow(Handle());
}

void StatusBar::SetBook(const std::wstring& company, const std::wstring& file) {
  company_ = company;
  file_ = file;
  Arrange();
}

}  // namespace desk::app
