#include "app/frame/view_area.h"

#include "app/frame/icons.h"

namespace desk::app {
std::shared_ptr<ViewArea> ViewArea::Make(HWND parent, SharedStyle style, Calls calls) {
  auto area = std::make_shared<ViewArea>();
  area->style_ = std::move(style);
  area->calls_ = std::move(calls);
  area->Create(win32::ClassNamed(L"DeskViewArea", CS_HREDRAW | CS_VREDRAW),
               {.style = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN,
                .extended_style = WS_EX_CONTROLPARENT,
                .parent = parent});
  return area;
}

void ViewArea::SetStyle(SharedStyle style) {
  style_ = std::move(style);
  InvalidateRect(Hwnd(), nullptr, FALSE);
}

void ViewArea::SetEmptyText(std::wstring headline, std::wstring advice) {
  headline_ = std::move(headline);
  advice_ = std::move(advice);
  InvalidateRect(Hwnd(), nullptr, FALSE);
}

void ViewArea::Paint(HDC dc, const RECT& area) {
  const auto design = [this](int pixels) { return style_->scale.Design(pixels); };
  FillBox(dc, area, GetSysColor(COLOR_WINDOW));
  const int line = style_->fonts.LinePixels();
  const int icon = design(48);
  const int top = (static_cast<int>(area.bottom) - icon - 3 * line) / 2;
  PaintIcon(dc, Icon::kLedger, (static_cast<int>(area.right) - icon) / 2, top, icon);
  const win32::Selected bold(dc, style_->BoldFont());
  RECT text{0, top + icon + line, area.right, top + icon + 2 * line};
  DrawLine(dc, headline_.c_str(), text, GetSysColor(COLOR_WINDOWTEXT), DT_CENTER);
  const win32::Selected plain(dc, style_->Font());
  OffsetRect(&text, 0, line * 3 / 2);
  DrawLine(dc, advice_.c_str(), text, FaintColor(), DT_CENTER);
}

LRESULT ViewArea::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  if (message != WM_SETFOCUS) return Pane::OnMessage(message, wparam, lparam);
  calls_.focused();
  return 0;
}

}  // namespace desk::app
