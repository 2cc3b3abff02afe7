#pragma once

#include <memory>
#include <string>
#include <vector>

#include "book/database/database.h"
#include "book/database/tables.h"

namespace desk::book {

/// A table of a book and those of its columns that get values.
struct LoadPlan {
  std::string table;
  std::vector<Column> columns;  ///< the first one names a row in messages
};

/// Puts rows into a table, cell by cell in the order of the columns. Rows may be sent later, at the
/// latest by `Finish`. `DatabaseError`, which names the row, when one is refused: nothing that the
/// transaction has done can stay then.
class RowLoader : public CellSink {
 public:
  virtual void Finish() = 0;
};

/// The fastest way to load rows that `connection` has, which must outlive it and be in a
/// transaction: on PostgreSQL some thousand rows with each statement, elsewhere one by one.
[[nodiscard]] std::unique_ptr<RowLoader> NewRowLoader(Connection& connection, LoadPlan plan);

}  // namespace desk::book
