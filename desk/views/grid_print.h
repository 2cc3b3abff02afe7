#pragma once

#include "viewkit/grid/flex_grid.h"
#include "views/print_table.h"

namespace desk::views {

/// Columns and rows of a grid as they are shown, without the texts around them. Rows in closed
/// nodes do not show.
[[nodiscard]] PrintTable TableOfGrid(const tavrix::viewkit::FlexGrid& grid);

}  // namespace desk::views
