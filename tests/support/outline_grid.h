#pragma once

#include <initializer_list>
#include <utility>
#include <vector>

#include "viewkit/grid/flex_grid.h"

namespace tavrix::test {

/// Makes nodes of rows by their outline levels, all but the first ones closed.
inline void MakeOutline(viewkit::FlexGrid& grid,
                        std::initializer_list<std::pair<int, int>> levels) {
  for (const auto& [row, level] : levels) {
    grid.SetIsSubtotal(row, true);
    grid.SetRowOutlineLevel(row, level);
  }
  grid.Outline(0);
}

/// The rows below the header that are not hidden or folded away.
[[nodiscard]] inline std::vector<int> ShownRows(const viewkit::FlexGrid& grid) {
  std::vector<int> rows;
  for (int row = 1; row < grid.Rows(); ++row) {
    if (grid.IsShown(row)) rows.push_back(row);
  }
  return rows;
}

}  // namespace tavrix::test
