#include "book/ledger/code_rule.h"

#include <algorithm>
#include <limits>

#include "host/text.h"
#include "host/utf.h"

namespace desk::book {

namespace {

std::int32_t SegmentLength(char16_t c) {
  return c >= u'0' && c <= u'9' ? c - u'0' : 0;
}

std::int32_t Bounded(std::size_t number) {
  constexpr auto kMax = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::min<std::size_t>(number, kMax));
}

}  // namespace

std::int32_t CodeRuleArithmetic::LengthAtLevel(std::int32_t level, const std::string& rule) {
  const std::u16string segments = host::ToUtf16(rule);
  const auto levels = static_cast<std::size_t>(std::max(level, 0));
  std::size_t length = 0;
  for (const char16_t c : segments.substr(0, levels)) {
    length += static_cast<std::size_t>(SegmentLength(c));
  }
  return Bounded(length);
}

std::int32_t CodeRuleArithmetic::LevelOf(const std::string& code, const std::string& rule) {
  if (code.empty()) return 0;
  const std::int32_t length = Bounded(host::TextLength(code));
  const std::u16string segments = host::ToUtf16(rule);
  std::int32_t total = 0;
  for (std::size_t i = 0; i < segments.size() && total < length; ++i) {
    total += SegmentLength(segments[i]);
    if (total == length) return Bounded(i + 1);
  }
  return 0;
}

std::string CodeRuleArithmetic::ParentCode(const std::string& code, const std::string& rule) {
  const std::int32_t level = LevelOf(code, rule);
  if (level <= 1) return {};
  const auto length = static_cast<std::size_t>(LengthAtLevel(level - 1, rule));
  return host::ToUtf8(host::ToUtf16(code).substr(0, length));
}

}  // namespace desk::book
