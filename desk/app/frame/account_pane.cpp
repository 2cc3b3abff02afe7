#include "app/frame/account_pane.h"

#include <windowsx.h>

#include <algorithm>
#include <utility>

#include "app/frame/account_painter.h"
#include "app/frame/icons.h"
#include "host/utf.h"
#include "viewkit/win32/accessibility.h"

namespace desk::app {
namespace {

constexpr UINT_PTR kExpected = 1;
// Longer than the pause between two repetitions of a key.
constexpr UINT kMomentMilliseconds = 90;

}  // namespace

std::shared_ptr<AccountPane> AccountPane::Make(HWND parent, SharedStyle style, Calls calls) {
  auto pane = std::make_shared<AccountPane>();
  pane->style_ = std::move(style);
  pane->calls_ = std::move(calls);
  pane->Create(
      win32::ClassNamed(L"DeskAccount", CS_HREDRAW | CS_VREDRAW),
      {.text = L"科目详情", .style = WS_CHILD | WS_TABSTOP | WS_VSCROLL, .parent = parent});
  pane->SetBar();
  return pane;
}

void AccountPane::SetStyle(SharedStyle style) {
  style_ = std::move(style);
  SetBar();
  InvalidateRect(Hwnd(), nullptr, FALSE);
}

void AccountPane::SetSheet(std::optional<views::AccountSheet> sheet, std::wstring reason) {
  const bool other = !sheet || !sheet_ || sheet->code != sheet_->code;
  sheet_ = std::move(sheet);
  reason_ = std::move(reason);
  if (other) scrolled_ = 0;
  // What a screen reader says when the focus comes here.
  const std::wstring name =
      sheet_ ? tavrix::host::Wide(sheet_->code + " " + sheet_->name + " " + sheet_->balance)
             : reason_;
  SetWindowTextW(Hwnd(), name.c_str());
  accessible_.SetLines(sheet_ ? views::SpokenLines(*sheet_) : std::vector<std::string>());
  win32::RaiseAccessibleEvent(Hwnd(), EVENT_OBJECT_NAMECHANGE, {});
  SetBar();
  InvalidateRect(Hwnd(), nullptr, FALSE);
}

void AccountPane::Expect() {
  SetTimer(Hwnd(), kExpected, kMomentMilliseconds, nullptr);
}

int AccountPane::Page() const {
  return std::max(0, static_cast<int>(Client().bottom) - style_->strip_height);
}

// The bar takes room itself: the sheet may become longer by it, never shorter.
void AccountPane::SetBar() {
  height_ = 0;
  if (sheet_) {
    const win32::MemoryDc dc;
    height_ = AccountPainter(dc.Get(), *style_, static_cast<int>(Client().right),
                             AccountPainter::Mode::kMeasure)
                  .Paint(*sheet_);
  }
  scrolled_ = std::clamp(scrolled_, 0, std::max(0, height_ - Page()));
  SCROLLINFO info{};
  info.cbSize = sizeof info;
  info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
  info.nMax = std::max(0, height_ - 1);
  info.nPage = static_cast<UINT>(Page());
  info.nPos = scrolled_;
  SetScrollInfo(Hwnd(), SB_VERT, &info, TRUE);
}

void AccountPane::ScrollTo(int position) {
  scrolled_ = std::clamp(position, 0, std::max(0, height_ - Page()));
  SetScrollPos(Hwnd(), SB_VERT, scrolled_, TRUE);
  InvalidateRect(Hwnd(), nullptr, FALSE);
}

void AccountPane::OnScroll(WORD action) {
  const int line = style_->fonts.LinePixels();
  SCROLLINFO info{};
  info.cbSize = sizeof info;
  info.fMask = SIF_TRACKPOS;
  switch (action) {
    case SB_LINEUP:
      return ScrollTo(scrolled_ - line);
    case SB_LINEDOWN:
      return ScrollTo(scrolled_ + line);
    case SB_PAGEUP:
      return ScrollTo(scrolled_ - Page());
    case SB_PAGEDOWN:
      return ScrollTo(scrolled_ + Page());
    case SB_TOP:
      return ScrollTo(0);
    case SB_BOTTOM:
      return ScrollTo(height_);
    case SB_THUMBTRACK:
      GetScrollInfo(Hwnd(), SB_VERT, &info);
      return ScrollTo(info.nTrackPos);
    default:
      return;
  }
}

bool AccountPane::OnKey(WPARAM key) {
  constexpr std::pair<WPARAM, WORD> kScrolls[] = {{VK_UP, SB_LINEUP},    {VK_DOWN, SB_LINEDOWN},
                                                  {VK_PRIOR, SB_PAGEUP}, {VK_NEXT, SB_PAGEDOWN},
                                                  {VK_HOME, SB_TOP},     {VK_END, SB_BOTTOM}};
  for (const auto& [pressed, scroll] : kScrolls) {
    if (key == pressed) return OnScroll(scroll), true;
  }
  switch (key) {
    case VK_TAB:
      return calls_.leave(), true;
    case VK_ESCAPE:
      return calls_.close(), true;
    default:
      return false;
  }
}

void AccountPane::Paint(HDC dc, const RECT& area) {
  buffer_.Paint(dc, area, [&](HDC buffer) {
    FillBox(buffer, area, GetSysColor(COLOR_WINDOW));
    PaintSheet(buffer, area);
    PaintHeading(buffer, {area.left, area.top, area.right, style_->strip_height});
    const RECT edge{area.left, area.top, area.left + style_->scale.Design(1), area.bottom};
    FillBox(buffer, edge, LineColor());
  });
}

void AccountPane::PaintSheet(HDC dc, const RECT& area) {
  if (!sheet_) {
    const win32::Selected font(dc, style_->Font());
    RECT place = area;
    place.top = style_->strip_height;
    const COLORREF ground = GetSysColor(COLOR_WINDOW);
    DrawLine(dc, reason_.c_str(), place,
             Readable(FaintColor(), ground, GetSysColor(COLOR_WINDOWTEXT)), DT_CENTER);
    return;
  }
  const win32::SavedDc saved(dc);
  SetBkMode(dc, TRANSPARENT);
  OffsetViewportOrgEx(dc, 0, style_->strip_height - scrolled_, nullptr);
  AccountPainter(dc, *style_, static_cast<int>(area.right), AccountPainter::Mode::kDraw)
      .Paint(*sheet_);
}

void AccountPane::PaintHeading(HDC dc, const RECT& area) {
  FillPane(dc, area, *style_);
  const win32::Selected font(dc, style_->BoldFont());
  RECT title = area;
  title.left += style_->scale.Design(12);
  DrawLine(dc, L"科目详情", title, TextColor());
  PaintCross(dc, CrossArea(area, area.bottom, *style_), *style_);
  if (GetFocus() != Hwnd()) return;
  RECT ring = area;
  InflateRect(&ring, -style_->scale.Design(3), -style_->scale.Design(3));
  SetTextColor(dc, TextColor());
  SetBkColor(dc, FaceColor());
  DrawFocusRect(dc, &ring);
}

void AccountPane::OnClick(POINT at) {
  const RECT cross = CrossArea(Client(), style_->strip_height, *style_);
  if (PtInRect(&cross, at)) return calls_.close();
  if (!StartDrag(at)) SetFocus(Hwnd());
}

LRESULT AccountPane::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_TIMER:
      KillTimer(Hwnd(), kExpected);
      calls_.due();
      return 0;
    case WM_VSCROLL:
      OnScroll(LOWORD(wparam));
      return 0;
    case WM_MOUSEWHEEL:
      ScrollTo(scrolled_ -
               MulDiv(GET_WHEEL_DELTA_WPARAM(wparam), 3 * style_->fonts.LinePixels(), WHEEL_DELTA));
      return 0;
    case WM_KEYDOWN:
      if (OnKey(wparam)) return 0;
      break;
    case WM_LBUTTONDOWN:
      OnClick({GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)});
      return 0;
    default:
      break;
  }
  return Pane::OnMessage(message, wparam, lparam);
}

}  // namespace desk::app
