#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "book/database/tables.h"
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

/// Spoils a statement as an input says: by attacks that put something forbidden where something of
/// its kind stood, so that the rest stays good, and by tokens thrown about.
class Spoiler {
 public:
  Spoiler(Tokens& tokens, Input& input) : tokens_(tokens), input_(input) {}

  void Run() {
    for (int change = 1 + input_.Number(2); change > 0 && !tokens_.empty(); --change) {
      switch (input_.Number(6)) {
        case 0:
          Aim(kTables_, [this](std::size_t i) { return IsTable(i); });
          break;
        case 1:
          Aim(kMembers_, [this](std::size_t i) { return i > 0 && tokens_[i - 1] == "."; });
          break;
        case 2:
          Aim(kColumns_, [this](std::size_t i) { return IsColumn(i); });
          break;
        case 3:
          Aim(kFunctions_, [this](std::size_t i) { return IsFunction(i); });
          break;
        case 4:
          Aim(kAliases_, [this](std::size_t i) { return i > 0 && tokens_[i - 1] == "as"; });
          break;
        case 5:
          tokens_.push_back(AnyOf(kEnds_));
          break;
        default:
          Scatter();
      }
    }
  }

 private:
  [[nodiscard]] std::size_t Place() {
    return static_cast<std::size_t>(input_.Number(255)) % tokens_.size();
  }
  const std::string& AnyOf(const Tokens& list) {
    return list[static_cast<std::size_t>(input_.Number(255)) % list.size()];
  }

  /// Puts one of `attacks` for the first token of a kind from some place on.
  void Aim(const Tokens& attacks, const std::function<bool(std::size_t)>& is_kind) {
    const std::size_t start = Place();
    for (std::size_t step = 0; step < tokens_.size(); ++step) {
      const std::size_t at = (start + step) % tokens_.size();
      if (!is_kind(at)) continue;
      tokens_[at] = AnyOf(attacks);
      return;
    }
  }

  [[nodiscard]] bool IsTable(std::size_t at) const {
    const bool member = at + 1 < tokens_.size() && tokens_[at + 1] == ".";
    return !member && desk::book::FindSchemaTable(tokens_[at]) != nullptr;
  }
  [[nodiscard]] bool IsColumn(std::size_t at) const {
    if (at > 0 && tokens_[at - 1] == ".") return false;
    return std::ranges::any_of(desk::book::SchemaTables(), [&](const auto& table) {
      return std::ranges::any_of(table.columns,
                                 [&](const auto& column) { return column.name == tokens_[at]; });
    });
  }
  [[nodiscard]] bool IsFunction(std::size_t at) const {
    static const Tokens kKnown =
        Split("count|max|min|sum|avg|len|abs|upper|lower|left|coalesce|round");
    return std::ranges::find(kKnown, tokens_[at]) != kKnown.end();
  }

  void Scatter() {
    const auto place = tokens_.begin() + static_cast<std::ptrdiff_t>(Place());
    switch (input_.Number(5)) {
      case 0:
        tokens_.erase(place);
        break;
      case 1:
        *place = AnyOf(kTokens_);
        break;
      case 2:
        tokens_.insert(place, std::string(tokens_[Place()]));
        break;
      case 3:
        std::swap(*place, tokens_[Place()]);
        break;
      case 4:
        *place += AnyOf(kTokens_);
        break;
      default:
        tokens_.insert(place, AnyOf(kTokens_));
    }
  }

  Tokens& tokens_;
  Input& input_;
  const Tokens kTables_ = Split(
      "pay|hr.pay|hr . pay|desk_identifier|sqlite_master|pg_class|pg_authid|a|gl_code,pay|"
      "gl_code as set,hr.pay s|gl_code set,pay s|gl_code as x9,pay|gl_code join pay on 1=1|"
      "pragma_table_info('gl_code')|pg_ls_dir('.') x|(select salary from pay) x|(values(1)) x");
  const Tokens kMembers_ =
      Split("salary|row_to_json|concat|pg_column_size|num_nulls|name|tableoid|ctid|rowid");
  const Tokens kColumns_ = Split(
      "salary|current_user|ctid|rowid|tableoid|version()|sqlite_version()|gl_code|session_user|"
      "(select max(salary) from pay)|(select 1 from "
      "hr.pay)|localtime|random()|pay.salary|a.salary");
  const Tokens kFunctions_ =
      Split("hex|typeof|sqlite_version|randomblob|pg_typeof|pg_sleep|to_json|quote_literal|total");
  const Tokens kAliases_ = Split("set|from|where|into|having|current_user|a,(select 1)|x,pay y");
  const Tokens kEnds_ = Split(
      "; delete from gl_code|;drop table gl_code|union select salary from pay|for update|into x9|"
      "returning (select max(salary) from pay)|limit (select max(salary) from pay)|;;|/* x */|"
      "-- x|limit 1 offset (select 1 from pay)|and exists(select 1 from pay)|drop table gl_code|"
      "order by (select max(salary) from pay)|where ccode in(select ccode from pay)");
  const Tokens kTokens_ = Split(
      ".|,|(|)|;|'|--|/*|*/"
      "|set|from|into|join|using|as|on|select|union|table|values|returning|with|"
      "lateral|only|order by|limit|top 1|distinct on|natural|cross|straight_join|drop|exec|"
      "checkpoint|1from|1.|::text|$$|\"pay\"|`pay`|[pay]|E'\\'|a|x|gl_code|gl_accsum|over()|"
      "indexed by|collate|not|null");
};

}  // namespace tavrix::fuzz
