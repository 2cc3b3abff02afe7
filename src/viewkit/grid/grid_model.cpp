#include "viewkit/grid/grid_model.h"

#include <utility>

#include "viewkit/grid/cell_display.h"

namespace tavrix::viewkit {

std::string GridModel::DisplayText(int row, int col) const {
  const std::string_view text = rows.Text(row, col);
  if (row < rows.Fixed()) return std::string(text);
  const GridColumns::Column& column = columns.At(col);
  return DisplayOf(text, column.type, column.format);
}

template <class Where>
void GridModel::RowsMoved(const Where& where) {
  viewport.Follow(where);
  selection.Follow(where);
  changes.Structure();
}

void GridModel::InsertRows(int data, int count) {
  if (count == 0) return;
  if (data == rows.DataRows()) {  // no other row moves
    rows.Insert(data, count);
    return changes.Structure();
  }
  rows.Insert(data, count);
  const int first = data + rows.Fixed();
  RowsMoved([&](int row) { return RowPlace{row >= first ? row + count : row}; });
}

void GridModel::EraseRows(int data, int count) {
  if (count == 0) return;
  rows.Erase(data, count);
  const int first = data + rows.Fixed();
  RowsMoved([&](int row) {
    if (row >= first + count) return RowPlace{row - count};
    return row >= first ? RowPlace{first, true} : RowPlace{row};
  });
}

void GridModel::InsertRowsAt(RowSpan before) {
  if (before.empty()) return;
  const int count = rows.DataRows();
  const int fixed = rows.Fixed();
  rows.InsertAt(before);
  RowsMoved([&](int row) {
    const int data = row - fixed;
    if (data < 0 || data >= count) return RowPlace{row};
    const auto in_front = std::upper_bound(before.begin(), before.end(), data) - before.begin();
    return RowPlace{row + static_cast<int>(in_front)};
  });
}

void GridModel::EraseRowsAt(RowSpan gone) {
  if (gone.empty()) return;
  const int fixed = rows.Fixed();
  rows.EraseAt(gone);
  RowsMoved([&](int row) {
    const auto place = std::lower_bound(gone.begin(), gone.end(), row - fixed);
    const auto above = static_cast<int>(place - gone.begin());
    return RowPlace{row - above, place != gone.end() && *place == row - fixed};
  });
}

void GridModel::ReorderRows(const RowOrder& order) {
  rows.Reorder(order);
  // The view stays where it is; what is selected goes with its row.
  const int fixed = rows.Fixed();
  selection.Follow(
      [&](int row) { return RowPlace{row < fixed ? row : order.PlaceOf(row - fixed) + fixed}; });
  changes.Structure();
}

void GridModel::SetFixedRows(int count) {
  rows.SetFixed(count);
  ForgetRows();
  changes.Structure();
}

void GridModel::SetCols(int count) {
  columns.SetCount(count);
  rows.SetCols(count);
  selection.SetCol(count == 0 ? -1 : std::clamp(selection.Col(), 0, count - 1));
  changes.Structure();
}

void GridModel::LoadRows(host::RowSet&& loaded) {
  rows.Load(std::move(loaded));
  ForgetRows();
  changes.Structure();
}

void GridModel::ForgetRows() {
  selection.ForgetRows();
  viewport.ForgetRows();
}

void GridModel::SetCollapsed(int row, bool collapsed) {
  if (!rows.Outline().SetCollapsed(row - rows.Fixed(), collapsed)) return;
  const int current = selection.Row();
  if (collapsed && current > row && current <= rows.LastOfNode(row)) {
    selection.MakeCurrent(row, Pick::kOnly);
  }
  changes.collapsed.push_back(row);
  changes.Content();
  // One of many changes, maybe: a window settles what is seen when it paints.
  if (grid.GetPeer() == nullptr) changes.settle = true;
}

}  // namespace tavrix::viewkit
