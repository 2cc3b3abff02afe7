#include "book/session/callers_commands.h"

#include <optional>
#include <string_view>
#include <vector>

#include "book/session/journal_command.h"
#include "book/sql/sql_text.h"
#include "host/text.h"

namespace desk::book {

namespace {

using Tokens = std::vector<SqlToken>;

struct Sense {
  CommandKind kind = CommandKind::kOther;
  bool continues = false;  ///< the command before, if that was the callers' own
  std::string title = {};
};

/// "delete from gl_code where ccode like '1002%'" takes an account with all below it. The first row
/// that goes need not be the one above the others.
std::string TitleOfDeletion(const Tokens& tokens) {
  constexpr std::size_t kPattern = 6;
  if (tokens.size() != kPattern + 1) return {};
  const std::string_view pattern = tokens[kPattern].text;
  const bool prefix = pattern.starts_with('\'') && pattern.ends_with("%'");
  if (!prefix || pattern.size() < 4) return {};
  return "删除科目 " + std::string(pattern.substr(1, pattern.size() - 3));
}

std::optional<Sense> SenseOf(const std::string& sql) {
  const Tokens tokens = SqlTokens(sql);
  const auto is = [&](std::size_t at, std::string_view word) {
    return at < tokens.size() && tavrix::host::EqualNoCase(tokens[at].text, word);
  };
  if (is(0, "insert") && is(2, "gl_code")) return Sense{.kind = CommandKind::kAdd};
  if (is(0, "delete") && is(2, "gl_code")) {
    return Sense{.kind = CommandKind::kDelete, .title = TitleOfDeletion(tokens)};
  }
  if (!is(0, "update") || !is(1, "gl_code")) return {};
  return Sense{.kind = CommandKind::kEdit, .continues = is(3, "bend") && is(6, "where")};
}

}  // namespace

bool CallersCommands::Concern(const std::string& sql) {
  return SenseOf(sql).has_value();
}

void CallersCommands::Begin(Session& session, const std::string& sql) {
  const Sense sense = SenseOf(sql).value_or(Sense{});
  if (sense.continues && last_ != 0 && last_ == session.LastCommand()) {
    return session.BeginCommand(last_);
  }
  last_ = JournalCommand(session, sense.kind, sense.title).Id();
}

}  // namespace desk::book
