#include "viewkit/win32/colors.h"

#include "viewkit/grid/contrast.h"

namespace tavrix::viewkit::win32 {
namespace {

constexpr Color kSystemColor = 0x80000000;

int Mix(int over, int under, int share) {
  return (over * share + under * (100 - share)) / 100;
}

}  // namespace

COLORREF ToColorRef(Color color, Color fallback) {
  if (color == color::kDefault) color = fallback;
  if ((color & kSystemColor) != 0) return GetSysColor(static_cast<int>(color & 0xFF));
  return color & 0xFFFFFF;
}

COLORREF TextOn(COLORREF ground, COLORREF wanted) {
  constexpr int kPaler = 60;
  const COLORREF text = GetSysColor(COLOR_WINDOWTEXT);
  // Disabled text stays paler than other text where the system's grey is too light to be read.
  const bool grey = wanted == GetSysColor(COLOR_GRAYTEXT);
  const Color system[] = {grey ? Blend(text, ground, kPaler) : text, text,
                          GetSysColor(COLOR_BTNTEXT), GetSysColor(COLOR_HIGHLIGHTTEXT),
                          GetSysColor(COLOR_WINDOW)};
  return LegibleOn(ground, wanted, system);
}

COLORREF Blend(COLORREF over, COLORREF under, int share) {
  return RGB(Mix(GetRValue(over), GetRValue(under), share),
             Mix(GetGValue(over), GetGValue(under), share),
             Mix(GetBValue(over), GetBValue(under), share));
}

void Fill(HDC dc, const RECT& area, COLORREF color) {
  const COLORREF before = SetBkColor(dc, color);
  ExtTextOutW(dc, 0, 0, ETO_OPAQUE, &area, nullptr, 0, nullptr);
  SetBkColor(dc, before);
}

}  // namespace tavrix::viewkit::win32
