#include "app/frame/style.h"

#include <algorithm>

#include "viewkit/win32/colors.h"
#include "viewkit/win32/line_text.h"

namespace desk::app {

namespace {

// No lambda: it cannot have the system's calling convention, which is another one on x86.
BOOL CALLBACK SetFontOf(HWND window, LPARAM font) {
  SendMessageW(window, WM_SETFONT, static_cast<WPARAM>(font), TRUE);
  return TRUE;
}

/// The user has asked for the system's colours alone.
bool HighContrast() {
  HIGHCONTRASTW contrast{};
  contrast.cbSize = sizeof contrast;
  return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof contrast, &contrast, 0) &&
         (contrast.dwFlags & HCF_HIGHCONTRASTON) != 0;
}

/// Of a small text.
COLORREF OnStrip(COLORREF wanted) {
  constexpr double kEasilyRead = 4;
  return Readable(wanted, FaceColor(), TextColor(), kEasilyRead);
}

}  // namespace

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
  constexpr int kShare = 65;
  return Readable(GetSysColor(COLOR_GRAYTEXT), FaceColor(),
                  HighContrast() ? TextColor() : win32::Blend(TextColor(), FaceColor(), kShare));
}

COLORREF LineColor() {
  return win32::Blend(TextColor(), FaceColor(), 20);
}

COLORREF LinkColor() {
  return OnStrip(kLinkColor);
}

COLORREF RefusedColor() {
  return OnStrip(kRefusedColor);
}

COLORREF DoneColor() {
  return OnStrip(kDoneColor);
}

COLORREF Readable(COLORREF wanted, COLORREF ground, COLORREF system, double least) {
  const bool readable = tavrix::viewkit::Contrast(wanted, ground) >= least;
  return readable && !HighContrast() ? wanted : system;
}

void SetFontsInside(HWND parent, const Style& style) {
  EnumChildWindows(parent, SetFontOf, reinterpret_cast<LPARAM>(style.Font()));
}

void FillBox(HDC dc, const RECT& area, COLORREF color) {
  SetDCBrushColor(dc, color);
  FillRect(dc, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

void FillPane(HDC dc, const RECT& area, const Style& style) {
  FillBox(dc, area, FaceColor());
  FillBox(dc, {area.left, area.top, area.right, area.top + style.scale.Design(1)}, LineColor());
}

void DrawLine(HDC dc, const wchar_t* text, const RECT& area, COLORREF color, UINT flags) {
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, color);
  std::wstring line = text;
  win32::DrawLine(dc, line, area, flags | DT_VCENTER);
}

}  // namespace desk::app
