#include "viewkit/win32/line_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <numeric>
#include <optional>
#include <utility>

namespace tavrix::viewkit::win32 {
namespace {

/// More than any screen is wide; a text of any length then costs the same.
constexpr std::size_t kLongest = 2000;
constexpr wchar_t kMore = L'…';

int Width(HDC dc, const std::wstring& text) {
  SIZE size{};
  GetTextExtentPoint32W(dc, text.data(), static_cast<int>(text.size()), &size);
  return static_cast<int>(size.cx);
}

/// A unit that belongs to the one before it: the end of a surrogate pair, a mark above a letter.
bool Joins(wchar_t unit) {
  return (unit & 0xFC00) == 0xDC00 || (unit >= 0x0300 && unit <= 0x036F) ||
         (unit >= 0xFE00 && unit <= 0xFE0F) || unit == 0x200D;
}

bool IsLeftOut(wchar_t last) {
  return last == L' ' || last == 0x3000 || last == kMore;
}

/// A character whose width does not depend on its neighbours, as it does in Arabic and Indian
/// scripts and with combining marks: a text of these alone may be drawn letter by letter.
bool StandsAlone(wchar_t unit) {
  struct Range {
    wchar_t first;
    wchar_t last;
  };
  constexpr Range kRanges[] = {
      {0x0020, 0x007E}, {0x00A0, 0x02FF}, {0x0370, 0x0482}, {0x048A, 0x0556},
      {0x1E00, 0x1FFF}, {0x2010, 0x2027}, {0x2030, 0x205E}, {0x20A0, 0x20BF},
      {0x2100, 0x27BF}, {0x2E80, 0x3029}, {0x3030, 0x3098}, {0x309B, 0x9FFF},
      {0xAC00, 0xD7A3}, {0xF900, 0xFAFF}, {0xFE30, 0xFE4F}, {0xFF01, 0xFFEF}};
  return std::ranges::any_of(
      kRanges, [unit](const Range& range) { return unit >= range.first && unit <= range.last; });
}

LONG LeftOf(const RECT& place, LONG width, UINT flags) {
  if ((flags & DT_RIGHT) != 0) return place.right - width;
  if ((flags & DT_CENTER) != 0) return place.left + (place.right - place.left - width) / 2;
  return place.left;
}

LONG TopOf(const RECT& place, LONG height, UINT flags) {
  if ((flags & DT_BOTTOM) != 0) return place.bottom - height;
  if ((flags & DT_VCENTER) != 0) return place.top + (place.bottom - place.top - height) / 2;
  return place.top;
}

/// How far each letter of one line moves on. It has its place here, as each cell that is painted
/// asks for one.
using Steps = std::array<int, kLongest + 1>;

/// As they are measured; gives their sum.
LONG MeasureSteps(HDC dc, const std::wstring& text, Steps& steps) {
  SIZE size{};
  GetTextExtentExPointW(dc, text.data(), static_cast<int>(text.size()), 0, nullptr, steps.data(),
                        &size);
  const auto end = steps.begin() + static_cast<std::ptrdiff_t>(text.size());
  std::adjacent_difference(steps.begin(), end, steps.begin());
  return std::accumulate(steps.begin(), end, LONG{0});
}

/// As they are painted: a font with drawn pictures of a small size paints narrower than it
/// measures. Nothing where that is not known.
std::optional<LONG> PaintedSteps(HDC dc, const std::wstring& text, Steps& steps) {
  TEXTMETRICW metric{};
  GetTextMetricsW(dc, &metric);
  if (metric.tmWeight >= FW_SEMIBOLD) return {};  // thickened by the system, which measures that
  const MAT2 unchanged{{0, 1}, {0, 0}, {0, 0}, {0, 1}};
  LONG sum = 0;
  auto step = steps.begin();
  for (const wchar_t unit : text) {
    GLYPHMETRICS glyph{};
    const DWORD size = GetGlyphOutlineW(dc, unit, GGO_BITMAP, &glyph, 0, nullptr, &unchanged);
    if (size == GDI_ERROR) return {};
    *step++ = glyph.gmCellIncX;
    sum += glyph.gmCellIncX;
  }
  return sum;
}

/// Whether a text is a number at the right edge: its figures keep the font's own distances, or a
/// comma would touch the next one. It only gets narrower by that.
bool IsAmount(const std::wstring& text, UINT flags) {
  return (flags & DT_RIGHT) != 0 &&
         std::ranges::all_of(text, [](wchar_t unit) { return unit >= L' ' && unit < 0x7F; });
}

/// Each letter stands at a known place. There are fonts that paint wider or narrower than they
/// measure: amounts above one another would not end on one line, and what was cut to fit would lose
/// its ellipsis at the edge.
void DrawByLetters(HDC dc, const std::wstring& text, const RECT& place, UINT flags) {
  Steps measured;
  Steps painted;
  const Steps* steps = &measured;
  LONG width = MeasureSteps(dc, text, measured);
  if (IsAmount(text, flags)) {
    const auto narrower = PaintedSteps(dc, text, painted);
    if (narrower && *narrower < width) {
      steps = &painted;
      width = *narrower;
    }
  }
  TEXTMETRICW metric{};
  GetTextMetricsW(dc, &metric);
  ExtTextOutW(dc, static_cast<int>(LeftOf(place, width, flags)),
              static_cast<int>(TopOf(place, metric.tmHeight, flags)), ETO_CLIPPED, &place,
              text.data(), static_cast<UINT>(text.size()), steps->data());
}

}  // namespace

std::wstring CutToFit(HDC dc, std::wstring text, int width) {
  if (text.size() > kLongest) text.resize(kLongest);
  std::replace_if(
      text.begin(), text.end(), [](wchar_t unit) { return unit < L' '; }, L' ');
  if (Width(dc, text) <= width) return text;
  const int room = std::max(0, width - Width(dc, std::wstring(1, kMore)));
  int fitting = 0;
  SIZE size{};
  GetTextExtentExPointW(dc, text.data(), static_cast<int>(text.size()), room, &fitting, nullptr,
                        &size);
  auto kept = static_cast<std::size_t>(fitting);
  while (kept > 0 && kept < text.size() && Joins(text[kept])) --kept;
  while (kept > 0 && IsLeftOut(text[kept - 1])) --kept;
  text.resize(kept);
  text += kMore;
  return text;
}

void DrawLine(HDC dc, std::wstring& text, RECT place, UINT flags) {
  text = CutToFit(dc, std::move(text), static_cast<int>(place.right - place.left));
  if (std::ranges::all_of(text, StandsAlone)) return DrawByLetters(dc, text, place, flags);
  DrawTextW(dc, text.data(), static_cast<int>(text.size()), &place,
            flags | DT_SINGLELINE | DT_NOPREFIX);
}

}  // namespace tavrix::viewkit::win32
