#pragma once

#include <algorithm>
#include <utility>
#include <vector>

#include "viewkit/grid/row_place.h"
#include "viewkit/indexing.h"

namespace tavrix::viewkit {

/// The selected rows of a grid, in ascending order. Rows count as the grid's own do.
class RowSelection {
 public:
  [[nodiscard]] int Count() const { return CountOf(rows_); }
  [[nodiscard]] int At(int n) const { return ItemAt(rows_, n); }
  [[nodiscard]] bool Contains(int row) const;
  [[nodiscard]] const std::vector<int>& Rows() const { return rows_; }

  // Each gives true when this changed anything.
  bool Clear();
  bool SelectOnly(int row);
  bool Set(int row, bool selected);
  /// `rows` ascending.
  bool Assign(std::vector<int> rows);
  bool Add(const std::vector<int>& rows);
  /// `where` gives the `RowPlace` of a row.
  template <class Where>
  bool Follow(const Where& where) {
    std::vector<int> rows;
    rows.reserve(rows_.size());
    for (const int row : rows_) {
      const RowPlace place = where(row);
      if (!place.gone) rows.push_back(place.row);
    }
    if (!std::is_sorted(rows.begin(), rows.end())) std::sort(rows.begin(), rows.end());
    return Assign(std::move(rows));
  }

 private:
  std::vector<int> rows_;
};

}  // namespace tavrix::viewkit
