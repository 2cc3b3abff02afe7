#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "input.h"
#include "sql_statements.h"

namespace tavrix::fuzz {

inline Tokens Split(std::string_view list) {
  Tokens tokens;
  for (std::size_t at = 0; at <= list.size();) {
    const std::size_t end = std::min(list.find('|', at), list.size());
    tokens.emplace_back(list.substr(at, end - at));
    at = end + 1;
  }
  return tokens;
}

/// Spoils a statement: other tokens, and pieces of those attacks that a guard must know.
inline void Spoil(Tokens& tokens, Input& input) {
  static const Tokens kHostile = Split(
      "hr.pay|pay|desk_identifier|pg_authid|sqlite_master|hr|.|,|(|)|;|'|--|/*|*/"
      "|set|from|into|join|"
      "using|as|on|select|union|table|values|current_user|row_to_json|pg_sleep(1)|version()|rowid|"
      "ctid|tableoid|name|returning|with|lateral|only|order by|limit|top 1|distinct "
      "on|natural|cross|"
      "straight_join|drop|exec|checkpoint|1from|1.|::text|$$|\"pay\"|`pay`|[pay]|E'\\'|a|gl_code|"
      "gl_accsum|over()|randomblob(9)|indexed by|collate");
  for (int change = input.Number(3); change > 0 && !tokens.empty(); --change) {
    const auto at = [&] { return static_cast<std::size_t>(input.Number(255)) % tokens.size(); };
    const auto place = tokens.begin() + static_cast<std::ptrdiff_t>(at());
    const std::string& hostile =
        kHostile[static_cast<std::size_t>(input.Number(255)) % kHostile.size()];
    switch (input.Number(5)) {
      case 0:
        tokens.erase(place);
        break;
      case 1:
        *place = hostile;
        break;
      case 2:
        tokens.insert(place, tokens[at()]);
        break;
      case 3:
        std::swap(*place, tokens[at()]);
        break;
      case 4:
        *place += hostile;
        break;
      default:
        tokens.insert(place, hostile);
    }
  }
}

}  // namespace tavrix::fuzz
