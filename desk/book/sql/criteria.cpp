#include "book/sql/criteria.h"

#include <array>
#include <compare>
#include <utility>
#include <vector>

#include "book/sql/sql_text.h"
#include "host/error.h"
#include "host/text.h"

namespace desk::book {

namespace {

using Relation = Criteria::Relation;
using Kind = SqlToken::Kind;

[[noreturn]] void Refuse(std::string_view criteria) {
  throw host::HostError("查找条件不正确：" + std::string(criteria));
}

std::string Unquoted(const SqlToken& token, std::string_view criteria) {
  const char close = token.text.front() == '[' ? ']' : token.text.front();
  if (token.text.size() < 2 || token.text.back() != close) Refuse(criteria);
  std::string text(token.text.substr(1, token.text.size() - 2));
  const std::string doubled(2, close);
  for (std::size_t at = 0; (at = text.find(doubled, at)) != std::string::npos; ++at) {
    text.erase(at, 1);
  }
  return text;
}

/// The relation that the symbols of `tokens` from `at` on spell; moves behind it.
Relation TakeRelation(const std::vector<SqlToken>& tokens, std::size_t& at,
                      std::string_view criteria) {
  std::string spelling;
  while (at < tokens.size() && std::string_view("=<>").find(tokens[at].text) != std::string::npos) {
    spelling += tokens[at++].text;
  }
  constexpr std::array<std::pair<std::string_view, Relation>, 6> kSpellings = {
      {{"=", Relation::kEqual},
       {"<>", Relation::kNotEqual},
       {"<", Relation::kLess},
       {">", Relation::kGreater},
       {"<=", Relation::kLessOrEqual},
       {">=", Relation::kGreaterOrEqual}}};
  for (const auto& [text, relation] : kSpellings) {
    if (text == spelling) return relation;
  }
  Refuse(criteria);
}

bool Holds(std::partial_ordering order, Relation relation) {
  switch (relation) {
    case Relation::kEqual:
      return order == 0;
    case Relation::kNotEqual:
      return order != 0;
    case Relation::kLess:
      return order < 0;
    case Relation::kGreater:
      return order > 0;
    case Relation::kLessOrEqual:
      return order <= 0;
    case Relation::kGreaterOrEqual:
      return order >= 0;
  }
  return false;
}

}  // namespace

Criteria Criteria::Parse(std::string_view criteria) {
  const std::vector<SqlToken> tokens = SqlTokens(criteria);
  if (tokens.size() < 3) Refuse(criteria);
  Criteria parsed;
  const bool quoted = tokens[0].kind == Kind::kQuotedName;
  if (!quoted && tokens[0].kind != Kind::kWord) Refuse(criteria);
  parsed.column = quoted ? Unquoted(tokens[0], criteria) : std::string(tokens[0].text);
  std::size_t at = 1;
  parsed.relation = TakeRelation(tokens, at, criteria);
  if (at == tokens.size()) Refuse(criteria);
  parsed.is_text = tokens[at].kind == Kind::kText;
  if (parsed.is_text) {
    if (at + 1 != tokens.size()) Refuse(criteria);
    parsed.text = host::LowerCase(Unquoted(tokens[at], criteria));
    return parsed;
  }
  const std::string_view number = criteria.substr(tokens[at].start);
  if (number.find_first_of("0123456789") == std::string_view::npos) Refuse(criteria);
  parsed.number = host::LeadingNumber(number);
  return parsed;
}

bool Criteria::Meets(const host::Value& value) const {
  if (value.IsNull()) return false;
  if (!is_text) return Holds(value.ToNumber() <=> number, relation);
  return Holds(host::CompareText(host::LowerCase(value.ToText()), text) <=> 0, relation);
}

}  // namespace desk::book
