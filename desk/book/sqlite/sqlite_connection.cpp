#include "book/sqlite/sqlite_connection.h"

#include <string_view>
#include <utility>

#include "book/sqlite/sqlite_error.h"
#include "book/sqlite/sqlite_functions.h"

namespace desk::book {

SqliteConnection::SqliteConnection(SqliteHandle database, const Place& place, Use use)
    : database_(std::move(database)), for_reading_(place.access == Access::kReadOnly) {
  sqlite3_extended_result_codes(database_.get(), 1);
  sqlite3_busy_timeout(database_.get(), static_cast<int>(place.patience.count()));
  guard_.Install(database_.get());
  AddSqliteFunctions(database_.get());
  SetUp(place, use);
}

void SqliteConnection::SetUp(const Place& place, Use use) {
  const auto set = [this](const char* pragma) { Execute(pragma, Origin::kDesk, {}); };
  set("pragma cache_size=-32000");
  if (place.access == Access::kReadOnly) set("pragma query_only=on");
  set("pragma synchronous=full");
  if (use == Use::kMake || SchemaVersion() > 0) {
    // The rules of a book hold for rows that a REPLACE takes away too, and one of them is a key.
    set("pragma recursive_triggers=on");
    set("pragma foreign_keys=on");
  }
  if (use == Use::kMake) return set("pragma journal_mode=memory");
  if (place.access == Access::kReadOnly || ReadOnly()) return;
  try {
    set("pragma journal_mode=wal");
  } catch (const DatabaseError& error) {
    // Somebody else has the book open in another mode: it serves, and changes another time.
    if (error.Kind() != ErrorKind::kLocked) throw;
  }
}

SqliteStatement SqliteConnection::Prepare(const std::string& sql, Origin origin,
                                          Values parameters) {
  if (origin == Origin::kCaller) statements_.Check(sql);
  const SqliteGuard::Watch watch(guard_, origin == Origin::kCaller);
  sqlite3_stmt* raw = nullptr;
  const int result = sqlite3_prepare_v3(database_.get(), sql.data(), static_cast<int>(sql.size()),
                                        0, &raw, nullptr);
  SqliteStatement statement(raw);
  if (result != SQLITE_OK) {
    if (guard_.Objection().empty()) throw SqliteError(database_.get());
    throw DatabaseError(ErrorKind::kRefused, guard_.Objection());
  }
  BindAll(statement.get(), parameters);
  return statement;
}

void SqliteConnection::BindAll(sqlite3_stmt* statement, Values parameters) {
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    Bind(statement, static_cast<int>(i) + 1, parameters[i]);
  }
}

void SqliteConnection::Bind(sqlite3_stmt* statement, int position, const host::Value& value) {
  int result = SQLITE_OK;
  if (const auto* whole = std::get_if<std::int64_t>(&value.Raw())) {
    result = sqlite3_bind_int64(statement, position, *whole);
  } else if (const auto* flag = std::get_if<bool>(&value.Raw())) {
    result = sqlite3_bind_int(statement, position, *flag ? 1 : 0);
  } else if (const auto* real = std::get_if<double>(&value.Raw())) {
    result = sqlite3_bind_double(statement, position, *real);
  } else if (!value.IsNull()) {
    const std::string text = value.ToText();
    result = sqlite3_bind_text64(statement, position, text.data(), text.size(), SQLITE_TRANSIENT,
                                 SQLITE_UTF8);
  }
  if (result != SQLITE_OK) throw SqliteError(database_.get());
}

std::unique_ptr<Rows> SqliteConnection::Query(const std::string& sql, Origin origin,
                                              Values parameters) {
  SqliteStatement statement = Prepare(sql, origin, parameters);
  // A statement that changes rows would do so halfway when its rows are read halfway.
  const bool reads =
      sqlite3_stmt_readonly(statement.get()) != 0 && sqlite3_column_count(statement.get()) > 0;
  if (origin == Origin::kCaller && !reads) {
    throw DatabaseError(ErrorKind::kRefused, "这条语句不是查询");
  }
  return std::make_unique<SqliteRows>(std::move(statement));
}

std::int64_t SqliteConnection::Execute(const std::string& sql, Origin origin, Values parameters) {
  if (origin == Origin::kDesk && !parameters.empty()) return ExecuteRepeated(sql, parameters);
  SqliteRows rows(Prepare(sql, origin, parameters));
  while (rows.Next()) {
  }
  return sqlite3_changes64(database_.get());
}

std::int64_t SqliteConnection::ExecuteRepeated(const std::string& sql, Values parameters) {
  if (repeated_ == nullptr || sql != repeated_sql_) {
    repeated_ = Prepare(sql, Origin::kDesk, {});
    repeated_sql_ = sql;
  }
  sqlite3_stmt* const statement = repeated_.get();
  const auto ended = [](sqlite3_stmt* run) { sqlite3_reset(run); };
  const std::unique_ptr<sqlite3_stmt, decltype(ended)> run(statement, ended);
  sqlite3_clear_bindings(statement);  // a null is what nothing is bound to
  BindAll(statement, parameters);
  for (int result = SQLITE_ROW; result != SQLITE_DONE;) {
    result = sqlite3_step(statement);
    if (result != SQLITE_ROW && result != SQLITE_DONE) throw SqliteError(database_.get());
  }
  return sqlite3_changes64(database_.get());
}

void SqliteConnection::Begin() {
  Execute("begin immediate", Origin::kDesk, {});
}

void SqliteConnection::Commit() {
  Execute("commit", Origin::kDesk, {});
}

void SqliteConnection::Rollback() noexcept {
  // Some failures have rolled back already.
  if (sqlite3_get_autocommit(database_.get()) != 0) return;
  sqlite3_exec(database_.get(), "rollback", nullptr, nullptr, nullptr);
}

bool SqliteConnection::ReadOnly() const {
  return for_reading_ || sqlite3_db_readonly(database_.get(), "main") == 1;
}

bool SqliteConnection::HasTable(std::string_view table) {
  const host::Value name(table);
  const auto rows =
      Query("select 1 from sqlite_master where type in('table','view') and name=? collate nocase",
            Origin::kDesk, {&name, 1});
  return rows->Next();
}

bool SqliteConnection::HasColumn(std::string_view table, std::string_view column) {
  const host::Value names[] = {table, column};
  const auto rows =
      Query("select 1 from pragma_table_info(?) where name=? collate nocase", Origin::kDesk, names);
  return rows->Next();
}

int SqliteConnection::SchemaVersion() {
  const auto rows = Query("pragma user_version", Origin::kDesk, {});
  return rows->Next() ? rows->Get(0).ToLong() : 0;
}

void SqliteConnection::SetSchemaVersion(int version) {
  Execute("pragma user_version=" + std::to_string(version), Origin::kDesk, {});
}

}  // namespace desk::book
