#include "book/session/journal_command.h"

#include <algorithm>
#include <string_view>

#include "book/session/journal_rules.h"
#include "book/session/settings.h"
#include "book/session/trigger_script.h"
#include "host/account.h"

namespace desk::book {

namespace {

/// Of the history: so many commands, and changes of accounts, but always the last command.
constexpr std::int64_t kKeptCommands = 1000;
constexpr std::int64_t kKeptChanges = 200000;

std::int64_t NumberIn(Connection& connection, const std::string& query, Values parameters = {}) {
  const auto rows = connection.Query(query, Origin::kDesk, parameters);
  const std::int64_t number = rows->Next() ? IntegerAt(*rows, 0) : 0;
  while (rows->Next()) {  // a statement that also changes something runs to its end
  }
  return number;
}

}  // namespace

JournalCommand::JournalCommand(Session& session, CommandKind kind, const std::string& title,
                               CommandTurn turn)
    : session_(session) {
  if (!session.KeepsHistory()) return;
  Connection& connection = session.Own();
  const SqlDialect dialect = connection.Dialect();
  const bool server = dialect == SqlDialect::kPostgres;
  const host::Value values[] = {static_cast<int>(kind), turn.turn, turn.target, title,
                                session.User()};
  id_ = NumberIn(connection,
                 "insert into desk_command(kind,turn,target,title,who,made_at)values(?,?,?,?," +
                     std::string(server ? "coalesce(nullif(?,''),session_user)," : "?,") +
                     std::string(TimeNow(dialect)) + ")returning id",
                 values);
  session.BeginCommand(id_);
}

std::int64_t JournalCommand::MovePostings(const std::string& from, const std::string& to) {
  Connection& connection = session_.Own();
  std::int64_t moved = 0;
  for (const std::string_view ledger : kLedgerTables) {
    if (id_ != 0) {
      connection.Execute(NoteOfMove(connection.Dialect(), MoveKind::kHandedDown, ledger,
                                    Literal(from), Literal(to)),
                         Origin::kDesk);
    }
    const host::Value codes[] = {to, from};
    moved += connection.Execute("update " + std::string(ledger) + " set ccode=? where ccode=?",
                                Origin::kDesk, codes);
  }
  return moved;
}

void JournalCommand::NoteFollowed(std::string_view ledger, std::int64_t postings) {
  if (id_ == 0 || postings == 0) return;
  const host::Value values[] = {id_, ledger, postings};
  session_.Own().Execute(
      "insert into desk_moved(command_id,ledger,row_count,id_sum,follows)values(?,?,?,0,1)",
      Origin::kDesk, values);
}

void JournalCommand::PutCodeRule(const std::string& rule) {
  const std::string before = ReadCodeRule(session_);
  PutSetting(session_.Own(), std::string(host::kSystemSection), std::string(host::kCodeRuleSetting),
             rule);
  if (id_ == 0) return;
  const host::Value values[] = {id_, kSettingsName, before, rule};
  session_.Own().Execute(
      "insert into desk_moved(command_id,ledger,from_code,to_code,row_count,id_sum,follows)"
      "values(?,?,?,?,0,0,1)",
      Origin::kDesk, values);
}

void TrimHistory(Session& session) {
  if (!session.KeepsHistory() || session.Own().ReadOnly()) return;
  Connection& connection = session.Own();
  const std::int64_t last = NumberIn(connection, "select max(id) from desk_command");
  const std::int64_t too_old =
      NumberIn(connection,
               "select command_id from desk_change where id<=(select max(id) from desk_change)-" +
                   std::to_string(kKeptChanges) + " order by id desc limit 1");
  const std::int64_t first = std::min(last, std::max(last - kKeptCommands, too_old) + 1);
  if (NumberIn(connection, "select min(id) from desk_command") >= first) return;
  Transaction transaction(session);
  const std::string before = std::to_string(first);
  connection.Execute("delete from desk_change where command_id<" + before, Origin::kDesk);
  connection.Execute("delete from desk_moved where command_id<" + before, Origin::kDesk);
  connection.Execute("delete from desk_command where id<" + before, Origin::kDesk);
  transaction.Commit();
}

void ForgetHistory(Session& session) {
  if (!session.KeepsHistory()) return;
  for (const std::string_view table : {kChangeTableName, kMovedTableName, kCommandTableName}) {
    session.Own().Execute("delete from " + std::string(table), Origin::kDesk);
  }
}

}  // namespace desk::book
