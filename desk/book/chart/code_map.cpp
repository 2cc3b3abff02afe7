#include "book/chart/code_map.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "book/ledger/code_rule.h"
#include "host/text.h"
#include "host/utf.h"

namespace desk::book {

namespace {

constexpr char kTooDeep[] = "编码规则没有这么多级";

bool HasSurrogates(const std::u16string& text) {
  return std::ranges::any_of(text, [](char16_t c) { return c >= 0xD800 && c <= 0xDFFF; });
}

}  // namespace

std::size_t CharactersOf(const std::string& text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char c) { return (c & 0xC0) != 0x80; }));
}

CodeMap::CodeMap(std::string rule, std::string from, std::string to)
    : rule_(std::move(rule)), from_(std::move(from)), to_(std::move(to)) {
  CodeRuleArithmetic arithmetic;
  from_level_ = arithmetic.LevelOf(from_, rule_);
  to_level_ = arithmetic.LevelOf(to_, rule_);
  const bool levels_known = from_level_ > 0 && to_level_ > 0;
  if (host::TextLength(from_) == host::TextLength(to_) || !levels_known) return;
  const int below = Levels() - std::max(from_level_, to_level_);
  for (int i = 1; i <= below; ++i) {
    kept_ = kept_ && Digits(from_level_ + i) == Digits(to_level_ + i);
  }
}

int CodeMap::Digits(int level) const {
  return Length(level) - Length(level - 1);
}

int CodeMap::Length(int level) const {
  return CodeRuleArithmetic().LengthAtLevel(level, rule_);
}

CodeMap::Place CodeMap::PlaceOf(const std::string& code) const {
  return kept_ ? Kept(code) : Fitted(code);
}

CodeMap::Place CodeMap::Kept(const std::string& code) const {
  CodeRuleArithmetic arithmetic;
  Place place{.code = to_ + code.substr(from_.size())};
  place.level = arithmetic.LevelOf(place.code, rule_);
  if (place.level > 0 || host::TextLength(from_) == host::TextLength(to_)) return place;
  return {.refusal = arithmetic.LevelOf(code, rule_) > 0 ? kTooDeep : "编码不合编码规则"};
}

CodeMap::Place CodeMap::Fitted(const std::string& code) const {
  const int level = CodeRuleArithmetic().LevelOf(code, rule_);
  const std::u16string old = host::ToUtf16(code);
  if (level == 0 || HasSurrogates(old)) return {.refusal = "编码不合编码规则"};
  const int new_level = level + to_level_ - from_level_;
  if (new_level > Levels()) return {.refusal = kTooDeep};
  std::u16string made = host::ToUtf16(to_);
  for (const Step& step : StepsTo(level)) {
    const std::u16string part =
        old.substr(static_cast<std::size_t>(step.position), static_cast<std::size_t>(step.length));
    const auto gone = static_cast<std::size_t>(std::max(-step.more, 0));
    if (part.find_first_not_of(u'0') < gone) {
      return {.refusal = "“" + host::ToUtf8(part) + "”在新的级次只能有 " +
                         std::to_string(step.length + step.more) + " 位"};
    }
    made.append(static_cast<std::size_t>(std::max(step.more, 0)), u'0').append(part.substr(gone));
  }
  return {.code = host::ToUtf8(made), .level = new_level};
}

std::vector<CodeMap::Step> CodeMap::StepsTo(int level) const {
  std::vector<Step> steps;
  for (int each = from_level_ + 1; each <= level; ++each) {
    const int digits = Digits(each);
    steps.push_back({.position = Length(each - 1),
                     .length = digits,
                     .more = Digits(each + to_level_ - from_level_) - digits});
  }
  return steps;
}

std::vector<CodeMap::Part> CodeMap::Parts(const std::string& column) const {
  const auto tail = [&](std::size_t position, const std::string& length) {
    return "substr(" + column + "," + std::to_string(position + 1) + length + ")";
  };
  if (kept_) return {{.expression = "?||" + tail(CharactersOf(from_), ""), .condition = {}}};
  std::vector<Part> parts;
  for (int level = from_level_; level <= LastLevel(); ++level) {
    std::string expression = "?";
    for (const Step& step : StepsTo(level)) {
      const int gone = std::max(-step.more, 0);
      expression += "||'" + std::string(static_cast<std::size_t>(std::max(step.more, 0)), '0') +
                    "'||" +
                    tail(static_cast<std::size_t>(step.position + gone),
                         "," + std::to_string(step.length - gone));
    }
    parts.push_back({.expression = expression,
                     .condition = "length(" + column + ")=" + std::to_string(Length(level))});
  }
  return parts;
}

std::string CodeMap::LevelExpression() const {
  if (from_level_ == 0) return std::to_string(to_level_);  // an account without others below it
  std::string cases = "case length(ccode)";
  for (int level = from_level_; level <= LastLevel(); ++level) {
    cases += " when " + std::to_string(Length(level)) + " then " +
             std::to_string(level + to_level_ - from_level_);
  }
  return cases + " else igrade end";
}

}  // namespace desk::book
