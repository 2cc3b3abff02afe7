#pragma once

#include <utility>
#include <vector>

#include "viewkit/grid/grid_model.h"
#include "viewkit/grid/grid_types.h"

namespace tavrix::viewkit {

/// Sorts a grid's data rows. Rows of totals stay, and no row passes one.
class GridSorting {
 public:
  explicit GridSorting(GridModel& model) : model_(model) {}

  /// By column `col` the rows `first` to `last`, which are data rows, or none.
  void Sort(int col, SortOrder order, int first, int last);
  /// All data rows by the current column, if there is one.
  void SetOrder(SortOrder order);
  [[nodiscard]] SortOrder Order() const { return order_; }

  /// Rows of totals are gone: sorts as was asked for while there were some.
  void SortPostponed();
  void DropPostponed() { postponed_.clear(); }
  /// The rows are others.
  void Forget();

 private:
  [[nodiscard]] std::vector<int> OrderBetweenTotals(int col, SortOrder order, int first_data,
                                                    int count) const;

  GridModel& model_;
  SortOrder order_ = SortOrder::kNone;
  std::vector<std::pair<int, SortOrder>> postponed_;  // columns and orders
};

}  // namespace tavrix::viewkit
