#include "book/session/callers_commands.h"

#include <optional>
#include <string_view>
#include <vector>

#include "book/session/journal_command.h"
#include "book/sql/sql_text.h"
#include "host/text.h"

namespace desk::book {

namespace {

struct Sense {
  CommandKind kind = CommandKind::kOther;
  bool continues = false;  ///< the command before, if that was the callers' own
};

std::optional<Sense> SenseOf(const std::string& sql) {
  const std::vector<SqlToken> tokens = SqlTokens(sql);
  const auto is = [&](std::size_t at, std::string_view word) {
    return at < tokens.size() && tavrix::host::EqualNoCase(tokens[at].text, word);
  };
  if (is(0, "insert") && is(2, "gl_code")) return Sense{CommandKind::kAdd};
  if (is(0, "delete") && is(2, "gl_code")) return Sense{CommandKind::kDelete};
  if (!is(0, "update") || !is(1, "gl_code")) return {};
  return Sense{CommandKind::kEdit, is(3, "bend") && is(6, "where")};
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
  last_ = JournalCommand(session, sense.kind).Id();
}

}  // namespace desk::book
