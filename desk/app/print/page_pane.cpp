#include "app/print/page_pane.h"

#include <windowsx.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "host/utf.h"
#include "viewkit/win32/accessibility.h"

namespace desk::app {
namespace {

using Zoom = views::PrintPreview::Zoom;
using tavrix::viewkit::kTwipsPerInch;

constexpr int kLineDesign = 48;

/// Parts of a hundred of the paper's own size; 0 for what depends on the window.
int PercentOf(Zoom zoom) {
  switch (zoom) {
    case Zoom::kThreeQuarters:
      return 75;
    case Zoom::kFull:
      return 100;
    case Zoom::kOneAndHalf:
      return 150;
    case Zoom::kDouble:
      return 200;
    default:
      return 0;
  }
}

}  // namespace

std::shared_ptr<PagePane> PagePane::Make(HWND parent, SharedStyle style,
                                         const views::PrintPreview& preview,
                                         const PageMeasure& measure, Calls calls) {
  auto pane = std::make_shared<PagePane>();
  pane->style_ = std::move(style);
  pane->preview_ = &preview;
  pane->calls_ = std::move(calls);
  pane->painter_ = std::make_unique<PagePainter>(measure);
  pane->Create(win32::ClassNamed(L"DeskPage", CS_HREDRAW | CS_VREDRAW),
               {.text = L"页面",
                .style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL,
                .parent = parent});
  return pane;
}

void PagePane::SetStyle(SharedStyle style) {
  style_ = std::move(style);
  SetBars();
  InvalidateRect(Hwnd(), nullptr, FALSE);
}

void PagePane::Show() {
  page_ = preview_->Layout().Page(preview_->Page());
  SetWindowTextW(Hwnd(), tavrix::host::Wide(preview_->PositionText()).c_str());
  accessible_.SetLines(preview_->Layout().SpokenPage(preview_->Page()));
  win32::RaiseAccessibleEvent(Hwnd(), EVENT_OBJECT_NAMECHANGE, {});
  SetBars();
  InvalidateRect(Hwnd(), nullptr, FALSE);
}

double PagePane::PixelsPerTwip() const {
  const int percent = PercentOf(preview_->ZoomLevel());
  if (percent > 0) return percent / 100.0 * style_->scale.dpi / kTwipsPerInch;
  const views::Paper& paper = preview_->Layout().PaperUsed();
  const RECT area = Client();
  const auto fit = [&](LONG pixels, int twips) {
    return std::max(0.005, static_cast<double>(pixels - 2 * Surrounding()) / twips);
  };
  const double by_width = fit(area.right, paper.width);
  if (preview_->ZoomLevel() == Zoom::kPageWidth) return by_width;
  return std::min(by_width, fit(area.bottom, paper.height));
}

SIZE PagePane::PageSize() const {
  const views::Paper& paper = preview_->Layout().PaperUsed();
  const double scale = PixelsPerTwip();
  return {std::lround(paper.width * scale), std::lround(paper.height * scale)};
}

SIZE PagePane::Extent() const {
  const SIZE page = PageSize();
  return {page.cx + 2 * Surrounding(), page.cy + 2 * Surrounding()};
}

void PagePane::SetBars() {
  if (preview_ == nullptr || !Alive()) return;
  const auto set = [this](int bar, LONG extent, LONG room, LONG& position) {
    position = std::clamp<LONG>(position, 0, std::max<LONG>(0, extent - room));
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
    // A bar that came and went would change the width to which the page is fitted.
    if (bar == SB_VERT) info.fMask |= SIF_DISABLENOSCROLL;
    info.nMax = static_cast<int>(std::max<LONG>(0, extent - 1));
    info.nPage = static_cast<UINT>(room);
    info.nPos = static_cast<int>(position);
    SetScrollInfo(Hwnd(), bar, &info, TRUE);
  };
  set(SB_HORZ, Extent().cx, Client().right, scrolled_.x);
  set(SB_VERT, Extent().cy, Client().bottom, scrolled_.y);
}

void PagePane::TurnTo(int page, bool at_its_end) {
  if (!calls_.go(page)) return;
  scrolled_.y = at_its_end ? Extent().cy : 0;
  SetBars();
  InvalidateRect(Hwnd(), nullptr, FALSE);
}

void PagePane::ScrollBy(int down, bool turn) {
  const LONG most = std::max<LONG>(0, Extent().cy - Client().bottom);
  if (turn && down > 0 && scrolled_.y >= most) return TurnTo(preview_->Page() + 1, false);
  if (turn && down < 0 && scrolled_.y <= 0) return TurnTo(preview_->Page() - 1, true);
  scrolled_.y += down;
  SetBars();
  InvalidateRect(Hwnd(), nullptr, FALSE);
}

void PagePane::OnScroll(Bar bar, WORD action) {
  const bool vertical = bar == Bar::kVertical;
  SCROLLINFO info{};
  info.cbSize = sizeof info;
  info.fMask = SIF_TRACKPOS | SIF_PAGE;
  GetScrollInfo(Hwnd(), vertical ? SB_VERT : SB_HORZ, &info);
  const int line = style_->scale.Design(kLineDesign);
  LONG& position = vertical ? scrolled_.y : scrolled_.x;
  switch (action) {
    case SB_LINEUP:
      position -= line;
      break;
    case SB_LINEDOWN:
      position += line;
      break;
    case SB_PAGEUP:
      position -= static_cast<LONG>(info.nPage);
      break;
    case SB_PAGEDOWN:
      position += static_cast<LONG>(info.nPage);
      break;
    case SB_THUMBTRACK:
      position = info.nTrackPos;
      break;
    default:
      return;
  }
  SetBars();
  InvalidateRect(Hwnd(), nullptr, FALSE);
}

bool PagePane::OnKey(WPARAM key) {
  const int line = style_->scale.Design(kLineDesign);
  const int page = std::max(line, static_cast<int>(Client().bottom) - line);
  switch (key) {
    case VK_UP:
      return ScrollBy(-line, true), true;
    case VK_DOWN:
      return ScrollBy(line, true), true;
    case VK_PRIOR:
      return ScrollBy(-page, true), true;
    case VK_NEXT:
    case VK_SPACE:
      return ScrollBy(page, true), true;
    case VK_LEFT:
      return OnScroll(Bar::kHorizontal, SB_LINEUP), true;
    case VK_RIGHT:
      return OnScroll(Bar::kHorizontal, SB_LINEDOWN), true;
    case VK_HOME:
      return TurnTo(0, false), true;
    case VK_END:
      return TurnTo(preview_->Layout().Pages() - 1, false), true;
    case VK_TAB:
      return calls_.leave(GetKeyState(VK_SHIFT) < 0), true;
    default:
      return false;
  }
}

void PagePane::Paint(HDC dc, const RECT& area) {
  const SIZE size = PageSize();
  const auto left = std::max<LONG>(Surrounding(), (area.right - size.cx) / 2) - scrolled_.x;
  const auto top = std::max<LONG>(Surrounding(), (area.bottom - size.cy) / 2) - scrolled_.y;
  const RECT page{left, top, left + size.cx, top + size.cy};
  buffer_.Paint(dc, area, [&](HDC buffer) {
    FillBox(buffer, area, GetSysColor(COLOR_BTNSHADOW));
    RECT shadow = page;
    OffsetRect(&shadow, style_->scale.Design(3), style_->scale.Design(3));
    FillBox(buffer, shadow, RGB(90, 90, 90));
    FillBox(buffer, page, RGB(255, 255, 255));
    const auto per_inch = std::lround(PixelsPerTwip() * kTwipsPerInch);
    painter_->Paint(buffer, {left, top}, {per_inch, per_inch}, page_);
    if (GetFocus() != Hwnd()) return;
    const win32::SavedDc saved(buffer);
    RECT ring = area;
    InflateRect(&ring, -style_->scale.Design(2), -style_->scale.Design(2));
    DrawFocusRect(buffer, &ring);
  });
}

LRESULT PagePane::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_VSCROLL:
      OnScroll(Bar::kVertical, LOWORD(wparam));
      return 0;
    case WM_HSCROLL:
      OnScroll(Bar::kHorizontal, LOWORD(wparam));
      return 0;
    case WM_MOUSEWHEEL:
      ScrollBy(-MulDiv(GET_WHEEL_DELTA_WPARAM(wparam), 2 * style_->scale.Design(kLineDesign),
                       WHEEL_DELTA),
               true);
      return 0;
    case WM_KEYDOWN:
      if (OnKey(wparam)) return 0;
      break;
    case WM_LBUTTONDOWN:
      SetFocus(Hwnd());
      return 0;
    default:
      break;
  }
  return Pane::OnMessage(message, wparam, lparam);
}

}  // namespace desk::app
