#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "book/database/database.h"
#include "book/database/tables.h"

namespace desk::book {

enum class LoadKind {
  kAdd,
  kChange,  ///< rows that are there, by the first column; null leaves what a cell holds
};

/// A table of a book and those of its columns that get values.
struct LoadPlan {
  std::string table;
  std::vector<Column> columns;  ///< the first one names a row in messages
  LoadKind kind = LoadKind::kAdd;
};

/// One row of those that a `RowLoader` has been given is refused.
class RowError : public DatabaseError {
 public:
  RowError(ErrorKind kind, const std::string& text, std::size_t row, std::string reason)
      : DatabaseError(kind, text), row_(row), reason_(std::move(reason)) {}
  /// Which one it is, from 0.
  [[nodiscard]] std::size_t Row() const { return row_; }
  /// What the engine says, without the row's name.
  [[nodiscard]] const std::string& Reason() const { return reason_; }

 private:
  std::size_t row_;
  std::string reason_;
};

/// Writes rows of a table, cell by cell in the order of the columns. Rows may be sent later, at the
/// latest by `Finish`. `RowError` when one is refused, or another `DatabaseError`: nothing that the
/// transaction has done can stay then.
class RowLoader : public CellSink {
 public:
  virtual void Finish() = 0;
};

/// The fastest way to write rows that `connection` has, which must outlive it and be in a
/// transaction: on PostgreSQL some thousand rows with each statement, elsewhere one by one, where
/// changes of the same columns are best given one after the other.
[[nodiscard]] std::unique_ptr<RowLoader> NewRowLoader(Connection& connection, LoadPlan plan);

/// One more text in the inside of an array, as PostgreSQL reads one: `{"a","b"}` without its
/// braces.
void AppendToArray(std::string& array, std::string_view text);

}  // namespace desk::book
