#include "book/session.h"

#include <utility>

#include "book/sql_text.h"

namespace desk::book {

Session::Session(std::unique_ptr<Connection> connection)
    : connection_(std::move(connection)), driver_(connection_->Driver()) {}

std::string Session::Translated(const std::string& sql) const {
  if (driver_ != "jet") return sql;
  const Flavor flavor = connection_->Makes();
  return FromJet(sql, flavor == Flavor::kAccess || flavor == Flavor::kSqlServer);
}

std::unique_ptr<Rows> Session::Query(const std::string& sql) {
  return connection_->Query(Translated(sql), Origin::kCaller);
}

void Session::Execute(const std::string& sql) {
  KeepResults();
  const bool changed = connection_->Execute(Translated(sql), Origin::kCaller) > 0;
  ++changes_;
  if (changed) return;
  // MariaDB does not count a row that stays as it was.
  const std::string row = QueryForChangedRow(sql);
  if (row.empty() || connection_->Query(row, Origin::kCaller)->Next()) return;
  throw DatabaseError(Trouble::kMissing, "这条记录已被其他用户删除，没有保存");
}

void Session::KeepResults() noexcept {
  for (LiveResult* result : live_) result->Keep();
}

Transaction::Transaction(Session& session) : connection_(session.Own()) {
  // A result half read holds on to an older state of the book, from which no write can start.
  session.KeepResults();
  connection_.Begin();
}

Transaction::~Transaction() {
  if (open_) connection_.Rollback();
}

void Transaction::Commit() {
  connection_.Commit();
  open_ = false;
}

}  // namespace desk::book
