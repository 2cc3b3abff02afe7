#include "host/text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

#include "host/code_points.h"

namespace tavrix::host {

namespace {

/// Upper-case letters whose lower-case letter lies a fixed distance above them.
struct CaseRange {
  char32_t first;
  char32_t last;
  char32_t distance;
};
constexpr std::array kCaseRanges = {CaseRange{'A', 'Z', 32},     CaseRange{0xC0, 0xD6, 32},
                                    CaseRange{0xD8, 0xDE, 32},   CaseRange{0x391, 0x3A1, 32},
                                    CaseRange{0x3A3, 0x3AB, 32}, CaseRange{0x410, 0x42F, 32},
                                    CaseRange{0x400, 0x40F, 80}, CaseRange{0xFF21, 0xFF3A, 32}};

char32_t Lower(char32_t point) {
  if (point < 0x80) return point >= 'A' && point <= 'Z' ? point + 32 : point;
  for (const CaseRange& range : kCaseRanges) {
    if (point >= range.first && point <= range.last) return point + range.distance;
  }
  return point;
}

char32_t Upper(char32_t point) {
  if (point < 0x80) return point >= 'a' && point <= 'z' ? point - 32 : point;
  for (const CaseRange& range : kCaseRanges) {
    const bool inside =
        point >= range.first + range.distance && point <= range.last + range.distance;
    if (inside) return point - range.distance;
  }
  return point;
}

/// Bytes that the two begin with in common, eight at a step: sorted codes are much alike.
std::size_t CommonPrefix(std::string_view left, std::string_view right) {
  const std::size_t most = std::min(left.size(), right.size());
  std::size_t at = 0;
  if (std::endian::native == std::endian::little && most >= sizeof(std::uint64_t)) {
    const std::size_t last_step = most - sizeof(std::uint64_t);
    for (;;) {
      std::uint64_t l = 0;
      std::uint64_t r = 0;
      std::memcpy(&l, left.data() + at, sizeof l);
      std::memcpy(&r, right.data() + at, sizeof r);
      if (l != r) return at + static_cast<std::size_t>(std::countr_zero(l ^ r)) / 8;
      if (at == last_step) return most;
      at = std::min(at + sizeof l, last_step);  // the last one overlaps the one before
    }
  }
  while (at < most && left[at] == right[at]) ++at;
  return at;
}

/// Places code points as their UTF-16 code units order: surrogate pairs before U+E000 to U+FFFF.
char32_t CodeUnitRank(char32_t point) {
  if (point < 0xE000) return point;
  return point < 0x10000 ? point + 0x100000 : point - 0x2000;
}

template <class Map>
std::string MapCase(std::string_view text, Map map) {
  std::string mapped;
  mapped.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const auto unit = static_cast<unsigned char>(text[at]);
    if (unit < 0x80) {  // ASCII stays ASCII
      mapped.push_back(static_cast<char>(map(unit)));
      ++at;
    } else {
      AppendUtf8(mapped, map(NextCodePoint(text, at)));
    }
  }
  return mapped;
}

/// The part of `text` from `at` on that a decimal number may take, as `from_chars` reads it.
std::string NumberPart(std::string_view text, std::size_t at) {
  std::string part;
  if (at < text.size() && (text[at] == '-' || text[at] == '+')) {
    if (text[at] == '-') part = "-";
    ++at;
  }
  const auto digits = [&] {
    while (at < text.size() && IsDigit(text[at])) part.push_back(text[at++]);
  };
  digits();
  if (at < text.size() && text[at] == '.') {
    part.push_back(text[at++]);
    digits();
  }
  const bool exponent = at < text.size() && (text[at] == 'e' || text[at] == 'E');
  if (exponent) part.append(text.substr(at, std::min<std::size_t>(8, text.size() - at)));
  return part;
}

}  // namespace

std::optional<double> NumberAtStart(std::string_view text) {
  const std::size_t start = text.find_first_not_of(" \t\r\n");
  if (start == std::string_view::npos) return {};
  std::string part = NumberPart(text, start);
  if (part.starts_with("+")) part.erase(0, 1);
  if (const std::size_t plus = part.find("e+"); plus != std::string::npos) part.erase(plus + 1, 1);
  double number = 0;
  const auto result = std::from_chars(part.data(), part.data() + part.size(), number);
  if (result.ec == std::errc::invalid_argument) return {};
  if (result.ec != std::errc::result_out_of_range) return number;
  const bool tiny = part.find("e-") != std::string::npos || part.find("E-") != std::string::npos;
  if (tiny) return 0.0;
  const double most = std::numeric_limits<double>::max();
  return part.front() == '-' ? -most : most;
}

double LeadingNumber(std::string_view text) {
  return NumberAtStart(text).value_or(0);
}

std::int32_t ToLong32(double number) {
  if (std::isnan(number)) return 0;
  constexpr double kMin = std::numeric_limits<std::int32_t>::min();
  constexpr double kMax = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::clamp(number, kMin, kMax));
}

std::int32_t LeadingLong(std::string_view text) {
  return ToLong32(LeadingNumber(text));
}

std::size_t TextLength(std::string_view text) {
  std::size_t units = 0;
  for (std::size_t at = 0; at < text.size();) units += NextCodePoint(text, at) >= 0x10000 ? 2U : 1U;
  return units;
}

int CompareText(std::string_view left, std::string_view right) {
  const std::size_t at = CommonPrefix(left, right);
  if (at == left.size() || at == right.size()) {
    return at < right.size() ? -1 : at < left.size() ? 1 : 0;
  }
  // UTF-8 orders as code points do. Only U+E000 to U+FFFF against a surrogate pair differs.
  const auto a = static_cast<unsigned char>(left[at]);
  const auto b = static_cast<unsigned char>(right[at]);
  const bool pair_left = a >= 0xF0;
  const bool pair_right = b >= 0xF0;
  if (pair_left != pair_right && std::min(a, b) >= 0xEE) return pair_left ? -1 : 1;
  return a < b ? -1 : 1;
}

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string LowerCase(std::string_view text) {
  return MapCase(text, [](char32_t point) { return Lower(point); });
}
std::string UpperCase(std::string_view text) {
  return MapCase(text, [](char32_t point) { return Upper(point); });
}

int CompareNoCase(std::string_view left, std::string_view right) {
  std::size_t l = 0;
  std::size_t r = 0;
  while (l < left.size() && r < right.size()) {
    const char32_t a = CodeUnitRank(Lower(NextCodePoint(left, l)));
    const char32_t b = CodeUnitRank(Lower(NextCodePoint(right, r)));
    if (a != b) return a < b ? -1 : 1;
  }
  return l < left.size() ? 1 : r < right.size() ? -1 : 0;
}

bool EqualNoCase(std::string_view left, std::string_view right) {
  // Letter by letter and without a copy: columns are sought by name in every row that is read.
  std::size_t l = 0;
  std::size_t r = 0;
  while (l < left.size() && r < right.size()) {
    if (Lower(NextCodePoint(left, l)) != Lower(NextCodePoint(right, r))) return false;
  }
  return l == left.size() && r == right.size();
}

CaselessText::CaselessText(std::string_view text) : lower_(LowerCase(text)) {
  if (lower_.empty()) return;
  std::size_t behind = 0;
  const char32_t first = NextCodePoint(lower_, behind);
  for (const char32_t point : {first, Upper(first)}) {
    std::string bytes;
    AppendUtf8(bytes, point);
    begins_[static_cast<unsigned char>(bytes[0])] = true;
  }
}

bool CaselessText::StandsAt(std::string_view text, std::size_t at) const {
  for (std::size_t own = 0; own < lower_.size();) {
    if (at >= text.size()) return false;
    if (Lower(NextCodePoint(text, at)) != NextCodePoint(lower_, own)) return false;
  }
  return true;
}

bool CaselessText::IsIn(std::string_view text) const {
  // The two cases of a letter take as many bytes; damaged text alone is read as something longer.
  static constexpr std::string_view kDamage = "\xEF\xBF\xBD";
  if (lower_.find(kDamage) != std::string::npos) {
    return LowerCase(text).find(lower_) != std::string::npos;
  }
  if (lower_.empty()) return true;
  for (std::size_t at = 0; at + lower_.size() <= text.size(); ++at) {
    if (begins_[static_cast<unsigned char>(text[at])] && StandsAt(text, at)) return true;
  }
  return false;
}

}  // namespace tavrix::host
