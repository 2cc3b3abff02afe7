#include "viewkit/win32/line_text.h"

#include <algorithm>
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
  DrawTextW(dc, shown.data(), static_cast<int>(shown.size()), &place,
            flags | DT_SINGLELINE | DT_NOPREFIX);
}

}  // namespace tavrix::viewkit::win32
