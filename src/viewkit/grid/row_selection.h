#pragma once

#include <vector>

namespace tavrix::viewkit {

/// The selected rows of a grid, in ascending order. Rows count as the grid's own do.
class RowSelection {
 public:
  [[nodiscard]] int Count() const { return static_cast<int>(rows_.size()); }
  [[nodiscard]] int At(int n) const { return rows_.at(static_cast<std::size_t>(n)); }
  [[nodiscard]] bool Contains(int row) const;
  [[nodiscard]] const std::vector<int>& Rows() const { return rows_; }

  // Each gives true when this changed anything.
  bool Clear();
  bool SelectOnly(int row);
  bool Set(int row, bool selected);
  /// `rows` ascending.
  bool Assign(std::vector<int> rows);
  bool Add(const std::vector<int>& rows);
  /// `count` rows at `at` are gone, or have come.
  bool RowsErased(int at, int count);
  bool RowsInserted(int at, int count);

 private:
  std::vector<int> rows_;
};

}  // namespace tavrix::viewkit
