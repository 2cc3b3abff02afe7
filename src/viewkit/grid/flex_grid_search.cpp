// Sorting, searching, summing.

#include <algorithm>
#include <numeric>
#include <stdexcept>
#include <utility>

#include "host/text.h"
#include "viewkit/grid/flex_grid_state.h"
#include "viewkit/grid/row_sort.h"

namespace tavrix::viewkit {

namespace {

/// Rows and columns, both ends included.
struct Block {
  int top;
  int left;
  int bottom;
  int right;
};

}  // namespace

/// Follows the cycles of the permutation, with one row more as the place to hold a row aside: no
/// second copy of the rows is needed, and rows that stay where they are cost nothing.
void FlexGrid::State::MoveRows(std::vector<std::uint32_t> order, int data_first) {
  const int spare = DataRows();
  const auto spare_place = static_cast<std::size_t>(spare);
  cells.Insert(spare_place, 1);
  outline.Insert(spare, 1);
  styles.Insert(header.size() + spare_place, 1);
  heights.Insert(header.size() + spare_place, 1);

  std::vector<int> moved_to(order.size());
  for (std::uint32_t place = 0; place < order.size(); ++place) {
    moved_to[order[place]] = static_cast<int>(place);
  }
  for (std::uint32_t start = 0; start < order.size(); ++start) {
    if (order[start] == start) continue;
    const auto row_at = [&](std::uint32_t place) { return data_first + static_cast<int>(place); };
    CopyRow(row_at(start), spare);
    std::uint32_t place = start;
    while (order[place] != start) {
      CopyRow(row_at(order[place]), row_at(place));
      place = std::exchange(order[place], place);
    }
    order[place] = place;
    CopyRow(spare, row_at(place));
  }

  cells.DropCopy(spare_place);
  outline.Erase(spare, 1);
  styles.Erase(header.size() + spare_place, 1);
  heights.Erase(header.size() + spare_place, 1);

  const int first = data_first + Fixed();
  const auto follow = [&](int any_row) {
    const bool inside = any_row >= first && any_row - first < static_cast<int>(moved_to.size());
    return inside ? first + moved_to[static_cast<std::size_t>(any_row - first)] : any_row;
  };
  row = follow(row);
  anchor = follow(anchor);
  std::vector<int> selected = selection.Rows();
  for (int& any_row : selected) any_row = follow(any_row);
  std::sort(selected.begin(), selected.end());
  SelectionChanged(selection.Assign(std::move(selected)));
  StructureChanged();
}

/// Rows of totals stay, and the rows between two of them are sorted for themselves.
std::vector<std::uint32_t> FlexGrid::State::OrderBetweenTotals(int any_col, SortOrder order,
                                                               int data_first, int count) const {
  const auto column = static_cast<std::size_t>(any_col);
  const ColumnType type = columns[column].type;
  const auto first = static_cast<std::size_t>(data_first);
  const auto end = static_cast<std::size_t>(data_first + count);
  const auto marks = outline.Totals();
  if (marks.empty()) return SortedOrder(cells, column, order, first, end - first, type);
  std::vector<std::uint32_t> all(end - first);
  std::iota(all.begin(), all.end(), 0U);
  bool moves = false;
  for (std::size_t from = first; from < end;) {
    std::size_t to = from;
    while (to < end && marks[to] == 0) ++to;
    const auto part = SortedOrder(cells, column, order, from, to - from, type);
    const auto offset = static_cast<std::uint32_t>(from - first);
    for (std::size_t i = 0; i < part.size(); ++i) all[offset + i] = offset + part[i];
    moves = moves || !part.empty();
    from = to + 1;
  }
  if (!moves) all.clear();
  return all;
}

void FlexGrid::SortRows(int col, SortOrder order, int first, int last) {
  state_->CheckCol(col);
  if (last < first) return;
  state_->CheckDataRow(first);
  state_->CheckDataRow(last);
  state_->sort = SortOrder::kNone;
  const int data_first = first - FixedRows();
  auto moves = state_->OrderBetweenTotals(col, order, data_first, last - first + 1);
  if (moves.empty()) return;
  Update([&](State& s) { s.MoveRows(std::move(moves), data_first); });
}

SortOrder FlexGrid::Sort() const {
  return state_->sort;
}

void FlexGrid::SetSort(SortOrder order) {
  if (order < SortOrder::kNone || order > SortOrder::kStringDescending) {
    throw std::out_of_range("no such order of rows");
  }
  Update([&](State& s) {
    const bool sorts = order != SortOrder::kNone && s.col >= 0;
    if (sorts && !s.HasTotals()) {
      s.postponed_sorts.clear();
    } else if (sorts) {
      s.postponed_sorts.emplace_back(s.col, order);
    }
    if (sorts) SortRows(s.col, order, s.Fixed(), s.Rows() - 1);
    s.sort = order;
  });
}

int FlexGrid::FindRow(std::string_view text, int start, int col, bool case_sensitive,
                      bool full_match) const {
  state_->CheckCol(col);
  const host::CaselessText caseless(text);
  const auto matches = [&](std::string_view cell) {
    if (case_sensitive) return full_match ? cell == text : cell.starts_with(text);
    return full_match ? host::EqualNoCase(cell, text) : caseless.IsStartOf(cell);
  };
  const int fixed = FixedRows();
  const int first = start < 0 ? fixed : start;
  for (int row = first; row < fixed; ++row) {
    if (matches(TextMatrix(row, col))) return row;
  }
  const int rows = Rows();
  for (int row = std::max(first, fixed); row < rows; ++row) {
    const int data = row - fixed;
    if (state_->outline.Total(data) == 0 && matches(state_->DataText(data, col))) return row;
  }
  return -1;
}

double FlexGrid::Aggregate(SubtotalFunction function, int row1, int col1, int row2,
                           int col2) const {
  for (const int row : {row1, row2}) state_->CheckRow(row);
  for (const int col : {col1, col2}) state_->CheckCol(col);
  const Block block{std::min(row1, row2), std::min(col1, col2), std::max(row1, row2),
                    std::max(col1, col2)};
  const auto totals_of = [this](const Block& cells) {
    const State& s = *state_;
    NumberTotals totals;
    const auto add = [&](std::string_view text) {
      if (!text.empty()) totals.Add(ReadDecimal(text));
    };
    for (int col = cells.left; col <= cells.right; ++col) {
      int row = cells.top;
      for (; row <= cells.bottom && row < s.Fixed(); ++row) add(TextMatrix(row, col));
      for (int data = row - s.Fixed(); data <= cells.bottom - s.Fixed(); ++data) {
        if (s.outline.Total(data) == 0) add(s.DataText(data, col));
      }
    }
    return totals;
  };
  Decimal whole;
  if (function == SubtotalFunction::kPercent) {
    whole = totals_of({FixedRows(), block.left, Rows() - 1, block.right}).Sum();
  }
  return totals_of(block).Result(function, whole).Value();
}

}  // namespace tavrix::viewkit
