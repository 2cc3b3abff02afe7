#include "viewkit/grid/grid_rows.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace tavrix::viewkit {

void GridRows::CheckRow(int row) const {
  if (row < 0 || row >= Rows()) throw std::out_of_range("no such row in the grid");
}

void GridRows::CheckDataRow(int row) const {
  if (!IsData(row)) throw std::out_of_range("no such data row in the grid");
}

// --- rows that come, go, change places

void GridRows::Insert(int data, int count) {
  ForEachStore([=](auto& store) { store.Insert(data, count); });
}

void GridRows::Erase(int data, int count) {
  ForEachStore([=](auto& store) { store.Erase(data, count); });
}

void GridRows::InsertAt(RowSpan before) {
  ForEachStore([=](auto& store) { store.InsertAt(before); });
}

void GridRows::EraseAt(RowSpan gone) {
  ForEachStore([=](auto& store) { store.EraseAt(gone); });
}

void GridRows::Reorder(const RowOrder& order) {
  ForEachStore([&](auto& store) { store.Reorder(order); });
}

void GridRows::SetFixed(int rows) {
  while (Fixed() < rows) {
    HeaderRow row;
    for (int col = 0; col < Cols(); ++col) row.cells.push_back({std::string(DataText(0, col)), {}});
    Erase(0, 1);
    header_.push_back(std::move(row));
  }
  while (Fixed() > rows) {
    const HeaderRow row = std::move(header_.back());
    header_.pop_back();
    Insert(0, 1);
    for (int col = 0; col < Cols(); ++col) cells_.SetText(0, col, ItemAt(row.cells, col).text);
  }
}

void GridRows::SetCols(int cols) {
  for (HeaderRow& row : header_) row.cells.resize(SizeOf(cols));
  cells_.SetColumns(cols);
  styles_.SetColumns(cols);
}

void GridRows::Load(host::RowSet&& rows) {
  cells_.Take(std::move(rows), Cols());
  outline_.Reset(cells_.Rows());
  styles_.Reset(cells_.Rows());
  heights_.Reset(cells_.Rows());
}

// --- single rows and cells

void GridRows::SetText(int row, int col, std::string_view text) {
  if (row < Fixed()) {
    ItemAt(ItemAt(header_, row).cells, col).text = text;
  } else {
    cells_.SetText(row - Fixed(), col, text);
  }
}

bool GridRows::Hidden(int row) const {
  return row < Fixed() ? ItemAt(header_, row).hidden : outline_.IsHidden(row - Fixed());
}

void GridRows::SetHidden(int row, bool hidden) {
  if (row < Fixed()) {
    ItemAt(header_, row).hidden = hidden;
  } else {
    outline_.SetHidden(row - Fixed(), hidden);
  }
}

bool GridRows::IsShown(int row) const {
  return row < Fixed() ? !Hidden(row) : outline_.IsShown(row - Fixed());
}

bool GridRows::IsCollapsed(int row) const {
  return row >= Fixed() && outline_.IsCollapsed(row - Fixed());
}

bool GridRows::HasRowsBelow(int row) const {
  return row >= Fixed() && outline_.HasRowsBelow(row - Fixed());
}

int GridRows::Parent(int row) const {
  const int parent = row < Fixed() ? -1 : outline_.Parent(row - Fixed());
  return parent < 0 ? -1 : parent + Fixed();
}

int GridRows::LastOfNode(int row) const {
  return row < Fixed() ? row : outline_.LastOfNode(row - Fixed()) + Fixed();
}

int GridRows::ShownBefore(int row) const {
  return outline_.ShownBefore(std::clamp(row - Fixed(), 0, DataRows()));
}

int GridRows::NextShown(int row) const {
  const int position = ShownBefore(row + 1);
  return position < outline_.ShownCount() ? ShownAt(position) : -1;
}

int GridRows::PreviousShown(int row) const {
  const int position = ShownBefore(row) - 1;
  return position < 0 ? -1 : ShownAt(position);
}

const CellStyle& GridRows::Style(int row, int col) const {
  if (row < Fixed()) return ItemAt(ItemAt(header_, row).cells, col).style;
  return styles_.Get(row - Fixed(), col);
}

bool GridRows::SetStyle(int row, int col, const CellStyle& style) {
  if (row >= Fixed()) return styles_.Set(row - Fixed(), col, style);
  return std::exchange(ItemAt(ItemAt(header_, row).cells, col).style, style) != style;
}

void GridRows::SetStoredHeight(int row, std::uint16_t height) {
  if (row < Fixed()) {
    ItemAt(header_, row).height = height;
  } else {
    heights_.Set(row - Fixed(), height);
  }
}

void GridRows::SetDataHeights(std::uint16_t height) {
  std::ranges::fill(heights_.All(), height);
}

}  // namespace tavrix::viewkit
