#include <array>
#include <charconv>
#include <cstdio>
#include <optional>

#include "book/exchange/xlsx_reader.h"
#include "host/code_points.h"

// Characters of cells that XML cannot hold.
namespace desk::book {

namespace {

namespace host = tavrix::host;

constexpr std::size_t kEscapeLength = 7;  // _xHHHH_

/// The character that is escaped at the start of the text.
std::optional<char32_t> EscapeAt(std::string_view text) {
  if (text.size() < kEscapeLength || !text.starts_with("_x") || text[kEscapeLength - 1] != '_') {
    return std::nullopt;
  }
  std::uint32_t point = 0;
  const char* const digits = text.data() + 2;
  constexpr int kHex = 16;
  const auto read = std::from_chars(digits, digits + 4, point, kHex);
  if (read.ptr != digits + 4) return std::nullopt;
  return point;
}

void AppendEscape(std::string& target, char32_t point) {
  std::array<char, kEscapeLength + 1> escape;
  std::snprintf(escape.data(), escape.size(), "_x%04X_", static_cast<unsigned>(point & 0xFFFF));
  target += escape.data();
}

bool FitsXml(char32_t point) {
  if (point < ' ') return point == '\t' || point == '\n';
  return point != 0xFFFE && point != 0xFFFF;
}

std::string_view EntityOf(char32_t point) {
  switch (point) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    default:
      return {};
  }
}

}  // namespace

std::string EscapedCell(std::string_view text) {
  std::string escaped;
  for (std::size_t at = 0; at < text.size();) {
    if (EscapeAt(text.substr(at))) AppendEscape(escaped, U'_');
    const std::size_t start = at + (EscapeAt(text.substr(at)) ? 1 : 0);
    at = start;
    const char32_t point = host::NextCodePoint(text, at);
    if (const std::string_view entity = EntityOf(point); !entity.empty()) {
      escaped += entity;
    } else if (FitsXml(point)) {
      host::AppendUtf8(escaped, point);
    } else {
      AppendEscape(escaped, point);
    }
  }
  return escaped;
}

std::string UnescapedCell(std::string_view text) {
  std::string plain;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t next = std::min(text.find("_x", at), text.size());
    plain += text.substr(at, next - at);
    at = next;
    if (at == text.size()) break;
    const auto point = EscapeAt(text.substr(at));
    const bool half = point && *point >= 0xD800 && *point < 0xE000;
    if (point) host::AppendUtf8(plain, half ? host::kReplacement : *point);
    if (!point) plain += text[at];
    at += point ? kEscapeLength : 1;
  }
  return plain;
}

}  // namespace desk::book
