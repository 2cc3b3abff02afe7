// Loads row sets of any content into a grid and works on it in any order.

#include <string>
#include <utility>

#include "input.h"
#include "viewkit/grid/flex_grid.h"

namespace tavrix::fuzz {
namespace {

using viewkit::FlexGrid;

host::RowSet RowsOf(Input& input) {
  const int columns = input.Number(5);
  host::RowSet rows(static_cast<std::size_t>(columns));
  // The last row may lack cells: a set counts its complete ones.
  for (int cells = input.Number(120); cells > 0 && columns > 0; --cells) {
    const int kind = input.Number(9);
    if (kind == 0) {
      rows.AppendNull();
    } else if (kind < 4) {
      rows.AppendInteger(kind);
    } else {
      rows.AppendText(input.Line());
    }
  }
  return rows;
}

void Step(FlexGrid& grid, Input& input) {
  const int col = input.Number(7);
  const int row = input.Number(40);
  viewkit::SubtotalOptions options;
  switch (input.Number(13)) {
    case 0:
      return grid.LoadRows(RowsOf(input));
    case 1:
      return grid.SetCols(col);
    case 2:
      return (void)grid.SetOutlineFromColumn(col);
    case 3:
      return grid.Outline(col - 1);
    case 4:
      return grid.SetCollapsed(row, col % 2 == 0);
    case 5:
      return grid.SortRows(col, static_cast<viewkit::SortOrder>(input.Number(8)), 1,
                           grid.Rows() - 1);
    case 6:
      return grid.SetRowHidden(row, col % 2 == 0);
    case 7:
      return grid.RemoveNode(row);
    case 8:
      return grid.SetTextMatrix(row, col, input.Line());
    case 9:
      options.group_on = col - 1;
      options.total_on = input.Number(6);
      return grid.Subtotal(static_cast<viewkit::SubtotalFunction>(input.Number(7)), options);
    case 10:
      return grid.SetColFormat(col, input.Line());
    case 11:
      return grid.SetTopRow(row);
    case 12:
      return grid.SetSelected(row, true);
    default:
      return grid.AutoSize(col);
  }
}

void CheckShown(const FlexGrid& grid) {
  int position = 0;
  for (int row = grid.FixedRows(); row < grid.Rows(); ++row) {
    if (!grid.IsShown(row)) continue;
    Require(grid.ShownPosition(row) == position);
    Require(grid.RowAtShownPosition(position) == row);
    ++position;
  }
  Require(grid.ShownRows() == position);
  Require(grid.Row() < grid.Rows());
  for (int row = 0; row < grid.Rows(); ++row) {
    for (int col = 0; col < grid.Cols(); ++col) (void)grid.DisplayText(row, col);
  }
}

void Run(Input input) {
  FlexGrid grid("Vs");
  grid.SetFixedRows(1);
  grid.SetBounds({0, 0, 3000, 2000});
  grid.LoadRows(RowsOf(input));
  for (int steps = 0; steps < 40 && !input.Ended(); ++steps) {
    try {
      Step(grid, input);
    } catch (const std::out_of_range&) {  // a row or column that is not there is refused
    }
  }
  CheckShown(grid);
}

}  // namespace
}  // namespace tavrix::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavrix::fuzz::Run({data, size});
  return 0;
}
