#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>

#include "book/sql/sql_guard.h"
#include "book/sqlite/sqlite_guard.h"
#include "book/sqlite/sqlite_rows.h"

namespace desk::book {

struct SqliteCloser {
  void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
};
using SqliteHandle = std::unique_ptr<sqlite3, SqliteCloser>;

class SqliteConnection : public Connection {
 public:
  /// A file that is being made has no log beside it: nothing of it is kept unless it is finished.
  enum class Use { kWork, kMake };
  /// Takes an open database and sets it up: functions, waiting, durability, rules.
  SqliteConnection(SqliteHandle database, const Place& place, Use use = Use::kWork);

  [[nodiscard]] std::unique_ptr<Rows> Query(const std::string& sql, Origin origin,
                                            Values parameters) override;
  std::int64_t Execute(const std::string& sql, Origin origin, Values parameters) override;
  void Begin() override;
  void Commit() override;
  void Rollback() noexcept override;
  [[nodiscard]] std::string Driver() const override { return "sqlite"; }
  [[nodiscard]] SqlDialect Dialect() const override { return SqlDialect::kSqlite; }
  [[nodiscard]] bool ReadOnly() const override;
  [[nodiscard]] bool HasTable(std::string_view table) override;
  [[nodiscard]] bool HasColumn(std::string_view table, std::string_view column) override;
  [[nodiscard]] int SchemaVersion() override;
  void SetSchemaVersion(int version) override;

 private:
  void SetUp(const Place& place, Use use);
  [[nodiscard]] SqliteStatement Prepare(const std::string& sql, Origin origin, Values parameters);
  void Bind(sqlite3_stmt* statement, int position, const host::Value& value);
  void BindAll(sqlite3_stmt* statement, Values parameters);
  /// A statement of the desk with parameters, which is likely to come again.
  std::int64_t ExecuteRepeated(const std::string& sql, Values parameters);

  SqliteGuard guard_;  // before the handle: closing it may still ask the guard
  SqliteHandle database_;
  std::string repeated_sql_;  ///< of `repeated_`
  SqliteStatement repeated_;  ///< the last one, with which rows are copied
  bool for_reading_;
  StatementGuard statements_{*this};
};

}  // namespace desk::book
