#include "book/session/journal_command.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "book/session/journal_rules.h"
#include "book/session/ledger_portions.h"
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

std::int64_t JournalCommand::MovePostings(const std::string& from, const std::string& to,
                                          const Progress& progress) {
  Connection& connection = session_.Own();
  LockLedgers(connection);
  const host::Value from_code(from);
  std::array<std::int64_t, kLedgerTables.size()> rows{};
  WorkState state{.step = "正在修改凭证"};
  for (std::size_t i = 0; i < rows.size(); ++i) {
    rows[i] = NumberIn(connection,
                       "select count(*) from " + std::string(kLedgerTables[i]) + " where ccode=?",
                       {&from_code, 1});
    state.all += rows[i];
  }
  for (std::size_t i = 0; i < rows.size(); ++i) {
    Tell(progress, state);
    if (id_ != 0) {
      connection.Execute(NoteOfMove(connection.Dialect(), MoveKind::kHandedDown, kLedgerTables[i],
                                    Literal(from), Literal(to)),
                         Origin::kDesk);
    }
    MoveIn(std::string(kLedgerTables[i]), rows[i], from_code, host::Value(to),
           [&](std::int64_t moved) {
             state.done += moved;
             Tell(progress, state);
           });
  }
  return state.done;
}

void JournalCommand::MoveIn(const std::string& ledger, std::int64_t rows, const host::Value& from,
                            const host::Value& to, const std::function<void(std::int64_t)>& moved) {
  Connection& connection = session_.Own();
  const SqlDialect dialect = connection.Dialect();
  const std::string update = "update " + ledger + " set ccode=?";
  const LedgerRange range = RangeOfLedger(connection, ledger);
  if (!range.IsReadFor(rows, dialect)) {
    const host::Value values[] = {to, from};
    return moved(connection.Execute(update + " where ccode=?", Origin::kDesk, values));
  }
  const std::string where =
      std::string(LedgerRange::kPart) + LedgerRange::CodeAsRead(dialect) + "=?";
  range.InParts([&](std::int64_t first, std::int64_t end) {
    const host::Value values[] = {to, first, end, from};
    moved(connection.Execute(update + where, Origin::kDesk, values));
  });
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
