// Sorting, searching, summing.

#include <algorithm>
#include <stdexcept>

#include "host/text.h"
#include "viewkit/grid/flex_grid_state.h"

namespace tavrix::viewkit {

namespace {

/// Rows and columns, both ends included.
struct Block {
  int top;
  int left;
  int bottom;
  int right;
};

/// Over the cells of a block that are not empty, rows of totals left out.
NumberTotals TotalsOf(const GridRows& rows, const Block& block) {
  NumberTotals totals;
  for (int col = block.left; col <= block.right; ++col) {
    for (int row = block.top; row <= block.bottom; ++row) {
      if (rows.IsTotal(row)) continue;
      const std::string_view text = rows.Text(row, col);
      if (!text.empty()) totals.Add(ReadDecimal(text));
    }
  }
  return totals;
}

}  // namespace

void FlexGrid::SortRows(int col, SortOrder order, int first, int last) {
  state_->columns.Check(col);
  if (last < first) return;
  state_->rows.CheckDataRow(first);
  state_->rows.CheckDataRow(last);
  Update([&](State& s) { s.sorting.Sort(col, order, first, last); });
}

SortOrder FlexGrid::Sort() const {
  return state_->sorting.Order();
}

void FlexGrid::SetSort(SortOrder order) {
  if (order < SortOrder::kNone || order > SortOrder::kStringDescending) {
    throw std::out_of_range("no such order of rows");
  }
  Update([&](State& s) { s.sorting.SetOrder(order); });
}

int FlexGrid::FindRow(std::string_view text, int start, int col, bool case_sensitive,
                      bool full_match) const {
  state_->columns.Check(col);
  const GridRows& rows = state_->rows;
  const host::CaselessText caseless(text);
  const auto matches = [&](std::string_view cell) {
    if (case_sensitive) return full_match ? cell == text : cell.starts_with(text);
    return full_match ? host::EqualNoCase(cell, text) : caseless.IsStartOf(cell);
  };
  const int end = Rows();
  for (int row = start < 0 ? FixedRows() : start; row < end; ++row) {
    if (!rows.IsTotal(row) && matches(rows.Text(row, col))) return row;
  }
  return -1;
}

double FlexGrid::Aggregate(SubtotalFunction function, int row1, int col1, int row2,
                           int col2) const {
  for (const int row : {row1, row2}) state_->rows.CheckRow(row);
  for (const int col : {col1, col2}) state_->columns.Check(col);
  const Block block{std::min(row1, row2), std::min(col1, col2), std::max(row1, row2),
                    std::max(col1, col2)};
  Decimal whole;
  if (function == SubtotalFunction::kPercent) {
    whole = TotalsOf(state_->rows, {FixedRows(), block.left, Rows() - 1, block.right}).Sum();
  }
  return TotalsOf(state_->rows, block).Result(function, whole).Value();
}

}  // namespace tavrix::viewkit
