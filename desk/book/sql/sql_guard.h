#pragma once

#include <set>
#include <string>
#include <string_view>

#include "book/database/database.h"
#include "book/sql/sql_names.h"

/// Which statements of callers reach a database.
namespace desk::book {

enum class StatementKind { kQuery, kChange };

/// Refuses, with a `DatabaseError` that names the place, all but one SELECT, INSERT, UPDATE or
/// DELETE of the grammar that docs/books.md gives: on the tables of the schema, with their columns,
/// names that the statement itself declares, and the functions of a list. A semicolon may follow.
/// The verdict is the same on every engine.
StatementKind CheckCallerStatement(std::string_view sql, const ColumnQuestion& question = {});

/// `CheckCallerStatement` for one connection, whose database may have columns of its own in the
/// tables of the schema.
class StatementGuard {
 public:
  /// `connection` must outlive it.
  explicit StatementGuard(Connection& connection) : connection_(connection) {}
  StatementKind Check(std::string_view sql);

 private:
  [[nodiscard]] bool HasColumn(std::string_view table, std::string_view column);

  Connection& connection_;
  std::set<std::string> known_;    ///< columns that were found, each behind its table
  std::set<std::string> unknown_;  ///< those that the statement being checked asked for in vain
};

}  // namespace desk::book
