#include "app/frame/style.h"

#include <algorithm>

namespace desk::app {

namespace win32 = tavrix::viewkit::win32;

Style::Style(int dpi)
    : scale{dpi},
      fonts(DeskFont(), scale),
      icon_pixels(scale.Design(24)),
      small_icon_pixels(scale.Design(16)),
      strip_height(std::max(scale.Design(28), fonts.LinePixels() + scale.Design(12))) {}

win32::FontSpec DeskFont() {
  constexpr int kNinePoints = 180;
  win32::FontSpec wanted = win32::FontSpec::System();
  wanted.height = std::max(wanted.height, kNinePoints);
  return wanted;
}

COLORREF FaceColor() {
  return GetSysColor(COLOR_BTNFACE);
}

COLORREF TextColor() {
  return GetSysColor(COLOR_BTNTEXT);
}

COLORREF FaintColor() {
  return GetSysColor(COLOR_GRAYTEXT);
}

void FillBox(HDC dc, const RECT& area, COLORREF color) {
  SetDCBrushColor(dc, color);
  FillRect(dc, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

void FillPane(HDC dc, const RECT& area, const Style& style) {
  FillBox(dc, area, FaceColor());
  FillBox(dc, {area.left, area.top, area.right, area.top + style.scale.Design(1)}, kLineColor);
}

void DrawLine(HDC dc, const wchar_t* text, RECT area, COLORREF color, UINT flags) {
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, color);
  DrawTextW(dc, text, -1, &area,
            flags | DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS | DT_NOPREFIX);
}

}  // namespace desk::app
