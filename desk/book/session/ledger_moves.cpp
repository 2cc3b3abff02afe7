#include "book/session/ledger_moves.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "book/sql/sql_text.h"
#include "host/text.h"

namespace desk::book {

namespace {

constexpr std::array<std::string_view, 3> kLedgers = {"gl_accvouch", "gl_accass", "gl_accsum"};
// The shape of the statement; empty where a name or a text stands.
constexpr std::array<std::string_view, 10> kShape = {"update", "",      "set",   "ccode", "=",
                                                     "",       "where", "ccode", "=",     ""};

bool IsMove(const std::vector<SqlToken>& tokens) {
  if (tokens.size() != kShape.size()) return false;
  for (std::size_t i = 0; i < kShape.size(); ++i) {
    if (!kShape[i].empty() && !tavrix::host::EqualNoCase(tokens[i].text, kShape[i])) return false;
  }
  const bool ledger = std::ranges::any_of(kLedgers, [&](std::string_view name) {
    return tavrix::host::EqualNoCase(tokens[1].text, name);
  });
  return ledger && tokens[5].kind == SqlToken::Kind::kText &&
         tokens[9].kind == SqlToken::Kind::kText;
}

}  // namespace

std::string LeavingLeavesAlone(const std::string& sql) {
  const std::vector<SqlToken> tokens = SqlTokens(sql);
  if (!IsMove(tokens)) return sql;
  return sql + " and not exists(select 1 from gl_code where ccode=" + std::string(tokens[9].text) +
         " and bend<>0)";
}

}  // namespace desk::book
