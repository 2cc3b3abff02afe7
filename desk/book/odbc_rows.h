#pragma once

#include <memory>
#include <string>
#include <vector>

#include "book/odbc_link.h"

namespace desk::book {

/// The rows of a statement that has been run. Each row is read whole, in the order of its columns,
/// because not every driver gives a cell twice or out of turn.
class OdbcRows : public Rows {
 public:
  OdbcRows(std::shared_ptr<OdbcLink> link, OdbcHandle statement);
  [[nodiscard]] bool Next() override;
  [[nodiscard]] int Columns() const override { return static_cast<int>(cells_.size()); }
  [[nodiscard]] std::string ColumnName(int column) const override { return CellAt(column).name; }
  [[nodiscard]] host::Value Get(int column) const override;
  void PassRest(CellSink& sink) override;

 private:
  enum class Kind { kWhole, kNumber, kDecimal, kText };
  /// A column and what the current row holds in it.
  struct Cell {
    std::string name;
    Kind kind = Kind::kText;
    bool null = true;
    bool whole = false;  ///< `number` counts, otherwise `real` or `text`
    std::int64_t number = 0;
    double real = 0;
    std::string text;
  };

  void Describe(int column);
  void Read(int column, Cell& cell);
  void ReadText(int column, Cell& cell);
  [[nodiscard]] const Cell& CellAt(int column) const {
    return cells_[static_cast<std::size_t>(column)];
  }

  std::shared_ptr<OdbcLink> link_;  // before the statement, which must go first
  OdbcHandle statement_;
  std::vector<Cell> cells_;
  std::u16string long_text_;
};

}  // namespace desk::book
