#include "views/grid_print.h"

#include <utility>

namespace desk::views {

namespace {

using tavrix::viewkit::Alignment;
using tavrix::viewkit::FlexGrid;
using tavrix::viewkit::IsNumeric;

// A column of texts that is wider (twips) may be made narrower.
constexpr int kWideColumn = 1400;

PrintAlign AlignOf(const FlexGrid& grid, int col) {
  const Alignment alignment = grid.ColAlignment(col);
  const bool number = IsNumeric(grid.ColDataType(col));
  if (alignment == Alignment::kGeneral) return number ? PrintAlign::kRight : PrintAlign::kLeft;
  constexpr int kOfEach = 3;
  const int side = static_cast<int>(alignment) / kOfEach;
  return side == 0 ? PrintAlign::kLeft : side == 1 ? PrintAlign::kCenter : PrintAlign::kRight;
}

std::vector<int> ShownColumns(const FlexGrid& grid) {
  std::vector<int> columns;
  for (int col = 0; col < grid.Cols(); ++col) {
    if (!grid.ColHidden(col) && grid.ColWidth(col) > 0) columns.push_back(col);
  }
  return columns;
}

bool HasOutline(const FlexGrid& grid) {
  for (int row = grid.FixedRows(); row < grid.Rows(); ++row) {
    if (grid.RowOutlineLevel(row) > 0) return true;
  }
  return false;
}

}  // namespace

PrintTable TableOfGrid(const FlexGrid& grid) {
  PrintTable table;
  const std::vector<int> columns = ShownColumns(grid);
  const bool outline = HasOutline(grid);
  for (const int col : columns) {
    const bool number = IsNumeric(grid.ColDataType(col));
    table.columns.push_back(
        {.caption = grid.FixedRows() > 0 ? grid.DisplayText(grid.FixedRows() - 1, col) : "",
         .align = AlignOf(grid, col),
         .wraps = !number && grid.ColWidth(col) > kWideColumn,
         .indented = outline && col == grid.OutlineCol(),
         .amount = number,
         .merged = grid.MergeCol(col)});
  }
  for (int row = grid.FixedRows(); row < grid.Rows(); ++row) {
    if (!grid.IsShown(row)) continue;
    PrintRow& printed = table.rows.emplace_back();
    printed.level = outline ? grid.RowOutlineLevel(row) : 0;
    const bool below = grid.SubtotalPosition() == tavrix::viewkit::SubtotalPosition::kBelow;
    const bool total = grid.IsTotalRow(row);
    printed.keep_with_previous = total && below;
    printed.keep_with_next = total && !below;
    for (const int col : columns) {
      printed.cells.push_back(grid.DisplayText(row, col));
      printed.bold = printed.bold || grid.CellFontBold(row, col);
    }
  }
  return table;
}

}  // namespace desk::views
