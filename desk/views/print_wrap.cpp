#include "views/print_wrap.h"

#include <algorithm>

#include "host/code_points.h"

namespace desk::views {

namespace {

using tavrix::host::NextCodePoint;

constexpr char kEllipsis[] = "…";

bool IsBlank(char32_t point) {
  return point <= U' ';
}

/// A line may end before and behind it.
bool IsWide(char32_t point) {
  return point >= 0x2E80 && point < 0xFB00;
}

std::string_view WithoutBlanksAtEnd(std::string_view text) {
  while (!text.empty() && static_cast<unsigned char>(text.back()) <= ' ') text.remove_suffix(1);
  return text;
}

std::string_view WithoutBlanksAtStart(std::string_view text) {
  while (!text.empty() && static_cast<unsigned char>(text.front()) <= ' ') text.remove_prefix(1);
  return text;
}

/// How many bytes of `text` come on its first line.
std::size_t LineEnd(std::string_view text, int width, const WidthOf& width_of) {
  std::size_t good = 0;  // where the line may end
  std::size_t at = 0;
  bool wide_before = false;
  while (at < text.size()) {
    const std::size_t begin = at;
    const char32_t point = NextCodePoint(text, at);
    if (begin > 0 && (IsWide(point) || wide_before || IsBlank(point))) good = begin;
    wide_before = IsWide(point);
    if (IsBlank(point) || width_of(text.substr(0, at)) <= width) continue;
    if (good > 0) return good;
    return begin > 0 ? begin : at;
  }
  return text.size();
}

}  // namespace

std::vector<std::string> WrapText(std::string_view text, int width, const WidthOf& width_of) {
  std::vector<std::string> lines;
  std::string_view rest = WithoutBlanksAtEnd(text);
  while (!rest.empty()) {
    const std::size_t end = LineEnd(rest, width, width_of);
    lines.emplace_back(WithoutBlanksAtEnd(rest.substr(0, end)));
    rest = WithoutBlanksAtStart(rest.substr(end));
  }
  if (lines.empty()) lines.emplace_back();
  return lines;
}

std::string CutText(std::string_view text, int width, const WidthOf& width_of) {
  if (width_of(text) <= width) return std::string(text);
  const int room = std::max(0, width - width_of(kEllipsis));
  std::size_t end = 0;
  for (std::size_t at = 0; at < text.size(); end = at) {
    static_cast<void>(NextCodePoint(text, at));
    if (width_of(text.substr(0, at)) > room) break;
  }
  return std::string(text.substr(0, end)) + kEllipsis;
}

}  // namespace desk::views
