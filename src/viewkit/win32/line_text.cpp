#include "viewkit/win32/line_text.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

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

bool IsFigures(const std::wstring& text) {
  return std::ranges::all_of(text, [](wchar_t unit) { return unit >= L' ' && unit < 0x7F; });
}

/// Each figure stands where it was measured: with fonts that paint narrower than they measure,
/// amounts above one another would not end on one line.
void DrawFigures(HDC dc, const std::wstring& text, const RECT& place) {
  const int count = static_cast<int>(text.size());
  std::vector<int> steps(text.size());
  SIZE size{};
  TEXTMETRICW metric{};
  GetTextExtentExPointW(dc, text.data(), count, 0, nullptr, steps.data(), &size);
  std::adjacent_difference(steps.begin(), steps.end(), steps.begin());
  GetTextMetricsW(dc, &metric);
  const int top = static_cast<int>(place.top + (place.bottom - place.top - metric.tmHeight) / 2);
  ExtTextOutW(dc, static_cast<int>(place.right - size.cx), top, ETO_CLIPPED, &place, text.data(),
              static_cast<UINT>(count), steps.data());
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
  return text + kMore;
}

void DrawLine(HDC dc, std::wstring text, RECT place, UINT flags) {
  const std::wstring shown =
      CutToFit(dc, std::move(text), static_cast<int>(place.right - place.left));
  constexpr UINT kFiguresLie = DT_RIGHT | DT_VCENTER;
  if ((flags & kFiguresLie) == kFiguresLie && IsFigures(shown)) {
    return DrawFigures(dc, shown, place);
  }
  DrawTextW(dc, shown.data(), static_cast<int>(shown.size()), &place,
            flags | DT_SINGLELINE | DT_NOPREFIX);
}

}  // namespace tavrix::viewkit::win32
