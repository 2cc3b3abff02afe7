#include "book/session/session.h"

#include <algorithm>
#include <utility>

#include "book/session/journal_rules.h"
#include "book/session/ledger_moves.h"
#include "book/sql/sql_text.h"

namespace desk::book {

Session::Session(std::unique_ptr<Connection> connection)
    : connection_(std::move(connection)), driver_(connection_->Driver()) {}

std::string Session::Translated(const std::string& sql) const {
  if (driver_ != "jet") return sql;
  const SqlDialect dialect = connection_->Dialect();
  return FromJet(sql, dialect == SqlDialect::kAccess || dialect == SqlDialect::kSqlServer);
}

std::unique_ptr<Rows> Session::Query(const std::string& sql) {
  deletions_.Note(*connection_, sql);
  return connection_->Query(Translated(sql), Origin::kCaller);
}

void Session::Execute(const std::string& sql) {
  KeepResults();
  const bool changed = Change(sql) > 0;
  ++changes_;
  if (changed) return;
  // MariaDB does not count a row that stays as it was.
  const std::string row = QueryForChangedRow(sql);
  if (row.empty() || connection_->Query(row, Origin::kCaller)->Next()) return;
  throw DatabaseError(ErrorKind::kMissing, "这条记录已被其他用户删除，没有保存");
}

std::int64_t Session::Change(const std::string& sql) {
  const std::string translated = LeavingLeavesAlone(Translated(sql));
  const bool check = deletions_.IsNoted(sql);
  const bool note = CallersCommands::Concern(sql) && KeepsHistory();
  if (!check && !note) return connection_->Execute(translated, Origin::kCaller);
  Transaction transaction(*this);
  if (check) deletions_.Check(*connection_, sql);
  if (note) callers_.Begin(*this, sql);
  const std::int64_t rows = connection_->Execute(translated, Origin::kCaller);
  transaction.Commit();
  return rows;
}

bool Session::KeepsHistory() {
  // Another desk may give a history to a book that had none.
  keeps_history_ = keeps_history_ || (book::KeepsHistory(connection_->Dialect()) &&
                                      connection_->HasTable(kCommandTableName));
  return keeps_history_;
}

void Session::BeginCommand(std::int64_t id) {
  const std::string text = std::to_string(id);
  if (connection_->Dialect() == SqlDialect::kPostgres) {
    connection_->Execute("select set_config('desk.command','" + text + "',true)", Origin::kDesk);
  } else {
    connection_->Execute(
        "replace into desk_identifier(table_name,last_id)values('journal_command'," + text + ")",
        Origin::kDesk);
  }
  running_command_ = id;
}

void Session::BeforeCommit() {
  if (rules_pause_) throw DatabaseError(ErrorKind::kOther, "账簿的规则还没有恢复");
  if (running_command_ == 0 || connection_->Dialect() == SqlDialect::kPostgres) return;
  connection_->Execute("delete from desk_identifier where table_name='journal_command'",
                       Origin::kDesk);
}

void Session::AfterTransaction(bool committed) noexcept {
  if (committed && running_command_ != 0) last_command_ = running_command_;
  running_command_ = 0;
  rules_pause_ = false;
}

void Session::Reserve(const std::string& sql, host::RowSet& rows) const {
  const auto last = sizes_.find(sql);
  if (last == sizes_.end()) return;
  constexpr std::size_t kSpare = 64;  // one part of so many, for what has come since
  rows.Reserve(last->second.rows + last->second.rows / kSpare + kSpare,
               last->second.bytes + last->second.bytes / kSpare + kSpare);
}

void Session::NoteSize(const std::string& sql, const host::RowSet& rows) {
  constexpr std::size_t kLarge = 1000;
  constexpr std::size_t kMaxQueries = 32;
  if (rows.Rows() < kLarge) {
    sizes_.erase(sql);
    return;
  }
  if (sizes_.size() >= kMaxQueries) sizes_.clear();
  sizes_[sql] = {.rows = rows.Rows(), .bytes = rows.TextBytes()};
}

void Session::KeepResults() noexcept {
  for (LiveResult* result : live_) result->Keep();
}

Transaction::Transaction(Session& session) : session_(session) {
  // A result half read holds on to an older state of the book, from which no write can start.
  session.KeepResults();
  session.Own().Begin();
}

Transaction::~Transaction() {
  if (!open_) return;
  session_.Own().Rollback();
  session_.AfterTransaction(false);
}

void Transaction::Commit() {
  session_.BeforeCommit();
  session_.Own().Commit();
  open_ = false;
  session_.AfterTransaction(true);
}

LongWork::LongWork(Session& session)
    : connection_(session.Own()), before_(connection_.TimeLimit()) {
  constexpr std::chrono::minutes kLong(10);
  if (before_.count() > 0)
    connection_.SetTimeLimit(std::max<std::chrono::milliseconds>(before_, kLong));
}

LongWork::~LongWork() {
  try {
    connection_.SetTimeLimit(before_);
  } catch (const DatabaseError&) {  // the connection is gone; the next one has this limit
  }
}

}  // namespace desk::book
