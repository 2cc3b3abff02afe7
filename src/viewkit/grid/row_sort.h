#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "viewkit/grid/cell_store.h"
#include "viewkit/grid/flex_grid.h"

namespace tavrix::viewkit {

/// The stable order of the rows from `first` on, `count` of them, by column `col`: element i is the
/// row, counted from `first`, that belongs at place i. The generic orders take texts and dates for
/// what the column's `type` says. Empty when the rows stand in order already,
/// which costs one pass.
[[nodiscard]] std::vector<std::uint32_t> SortedOrder(const CellStore& cells, std::size_t col,
                                                     SortOrder order, std::size_t first,
                                                     std::size_t count, ColumnType type);

}  // namespace tavrix::viewkit
