#include "app/frame/notice.h"

#include <algorithm>

#include "app/frame/icons.h"
#include "host/report.h"

namespace desk::app {
namespace {

constexpr UINT_PTR kTimer = 1;
constexpr UINT kTickMilliseconds = 200;
constexpr int kTicksShown = 60;  // twelve seconds
constexpr UINT kTextFlags = DT_WORDBREAK | DT_EDITCONTROL | DT_NOPREFIX;

}  // namespace

std::shared_ptr<Notice> Notice::Show(HWND dialog, const Report& report) {
  auto notice = std::make_shared<Notice>();
  notice->dialog_ = dialog;
  notice->style_ = std::make_shared<const Style>(static_cast<int>(GetDpiForWindow(dialog)));
  notice->Create(
      win32::ClassNamed(L"DeskNotice", CS_DROPSHADOW),
      {.style = WS_POPUP, .extended_style = WS_EX_NOACTIVATE | WS_EX_TOOLWINDOW, .parent = dialog});
  notice->Change(report);
  SetTimer(notice->Hwnd(), kTimer, kTickMilliseconds, nullptr);
  return notice;
}

void Notice::Change(const Report& report) {
  text_ = report.text;
  loading_ = report.level >= tavrix::host::kLoadingError;
  ticks_ = 0;
  SetWindowTextW(Hwnd(), text_.c_str());
  MoveToPlace();
  InvalidateRect(Hwnd(), nullptr, FALSE);
}

void Notice::MoveToPlace() {
  const RECT place = Place();
  SetWindowPos(Hwnd(), HWND_TOP, place.left, place.top, place.right - place.left,
               place.bottom - place.top, SWP_NOACTIVATE | SWP_SHOWWINDOW);
}

int Notice::TextHeight(int width) const {
  const win32::MemoryDc dc;
  const win32::Selected font(dc.Get(), style_->Font());
  RECT area{0, 0, width, 0};
  DrawTextW(dc.Get(), text_.c_str(), -1, &area, kTextFlags | DT_CALCRECT);
  return static_cast<int>(area.bottom);
}

RECT Notice::Place() const {
  const auto design = [this](int pixels) { return style_->scale.Design(pixels); };
  RECT dialog{};
  GetWindowRect(dialog_, &dialog);
  const RECT work = win32::WorkArea(dialog_);
  const int width = static_cast<int>(dialog.right - dialog.left);
  const int height =
      std::clamp(TextHeight(width - design(60)), design(16), design(160)) + design(20);
  // Below the dialog where there is room, else over its foot.
  const LONG top = std::min(dialog.bottom, work.bottom - height);
  return {dialog.left, top, dialog.right, top + height};
}

void Notice::Paint(HDC dc, const RECT& area) {
  const auto design = [this](int pixels) { return style_->scale.Design(pixels); };
  FillBox(dc, area, loading_ ? kErrorColor : kWarningColor);
  const RECT inside{area.left + design(4), area.top + design(1), area.right - design(1),
                    area.bottom - design(1)};
  FillBox(dc, inside, GetSysColor(COLOR_INFOBK));
  const int icon = design(20);
  PaintIcon(dc, loading_ ? Icon::kError : Icon::kWarning, design(14), design(9), icon);
  const win32::Selected font(dc, style_->Font());
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, GetSysColor(COLOR_INFOTEXT));
  RECT text{design(44), design(10), inside.right - design(12), inside.bottom};
  DrawTextW(dc, text_.c_str(), -1, &text, kTextFlags);
}

void Notice::OnTimer() {
  const bool over = ++ticks_ >= kTicksShown || !IsWindowVisible(dialog_);
  if (over) return Destroy();
  RECT now{};
  GetWindowRect(Hwnd(), &now);
  const RECT place = Place();  // the dialog may have been moved
  if (!EqualRect(&now, &place)) MoveToPlace();
}

LRESULT Notice::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_MOUSEACTIVATE:
      return MA_NOACTIVATE;
    case WM_LBUTTONUP:
      Destroy();
      return 0;
    case WM_TIMER:
      OnTimer();
      return 0;
    default:
      return Pane::OnMessage(message, wparam, lparam);
  }
}

}  // namespace desk::app
