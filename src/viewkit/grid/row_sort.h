#pragma once

#include "viewkit/grid/cell_store.h"
#include "viewkit/grid/grid_types.h"

namespace tavrix::viewkit {

/// The stable order of the rows from `first` on, `count` of them, by column `col`: element i is the
/// row, counted from `first`, that belongs at place i. The generic orders take texts and dates for
/// what the column's `type` says. Empty when the rows stand in order already, which costs one pass.
[[nodiscard]] std::vector<int> SortedOrder(const CellStore& cells, int col, SortOrder order,
                                           int first, int count, ColumnType type);

}  // namespace tavrix::viewkit
