#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>
#include <string_view>

#include "book/database/database.h"

namespace desk::book {

struct SqliteFinalizer {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using SqliteStatement = std::unique_ptr<sqlite3_stmt, SqliteFinalizer>;

/// As long as the value is left alone; empty for a null.
[[nodiscard]] std::string_view TextOf(sqlite3_value* value);

/// The rows of a prepared statement, straight from the engine.
class SqliteRows : public Rows {
 public:
  explicit SqliteRows(SqliteStatement statement) : statement_(std::move(statement)) {}
  [[nodiscard]] bool Next() override;
  [[nodiscard]] int Columns() const override { return sqlite3_column_count(statement_.get()); }
  [[nodiscard]] std::string ColumnName(int column) const override;
  [[nodiscard]] host::Value Get(int column) const override;
  void ReadAll(CellSink& sink) override;

 private:
  template <class Sink>
  void PassAll(Sink& sink);
  [[nodiscard]] sqlite3_value* CellAt(int column) const;

  SqliteStatement statement_;
};

}  // namespace desk::book
