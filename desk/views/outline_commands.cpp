#include "views/outline_commands.h"

#include "host/grid_update.h"

namespace desk::views {

namespace {

using tavrix::host::Grid;

/// Nodes of these levels and deeper close, those above them open. Nodes with nothing below them are
/// let alone: each change is work for the grid.
void SetOpenTo(Grid& grid, int levels) {
  int level_below = 0;
  for (int row = grid.Rows() - 1; row >= grid.FixedRows(); --row) {
    const int level = grid.IsSubtotal(row) ? grid.RowOutlineLevel(row) : 0;
    const bool parent = level_below > level;
    level_below = level;
    const bool close = level >= levels;
    if (parent && grid.IsCollapsed(row) != close) grid.SetCollapsed(row, close);
  }
}

void KeepRowInView(Grid& grid) {
  int row = grid.Row();
  if (row < grid.FixedRows() || row >= grid.Rows()) return;
  while (row > grid.FixedRows() && !grid.IsShown(row)) --row;
  if (!grid.IsShown(row)) return;
  if (row != grid.Row()) grid.SetRow(row);
  if (!grid.IsInView(row)) grid.SetTopRow(row);
}

}  // namespace

void ExpandToLevel(Grid& grid, int level) {
  if (grid.Rows() <= grid.FixedRows()) return;
  const tavrix::host::GridUpdate update(grid);
  const int top = grid.TopRow();
  grid.SetTopRow(grid.FixedRows());  // else each change would look for another top row
  SetOpenTo(grid, level - 1);
  grid.SetTopRow(top);
  KeepRowInView(grid);
}

}  // namespace desk::views
