// Sorting, searching, summing.

#include <algorithm>
#include <limits>
#include <utility>

#include "host/text.h"
#include "viewkit/flex_grid_state.h"
#include "viewkit/number_format.h"
#include "viewkit/row_sort.h"

namespace tavrix::viewkit {

namespace {

struct Totals {
  double sum = 0;
  double least = std::numeric_limits<double>::infinity();
  double most = -std::numeric_limits<double>::infinity();
  std::int64_t count = 0;

  void Add(double number) {
    sum += number;
    least = std::min(least, number);
    most = std::max(most, number);
    ++count;
  }
};

/// Rows and columns, both ends included.
struct Block {
  int top;
  int left;
  int bottom;
  int right;
};

/// `text_of` gives the text at a row and column.
template <class TextOf>
void AddBlock(Totals& totals, const Block& block, const TextOf& text_of) {
  for (int col = block.left; col <= block.right; ++col) {
    for (int row = block.top; row <= block.bottom; ++row) {
      const std::string_view text = text_of(row, col);
      if (!text.empty()) totals.Add(CellNumber(text));
    }
  }
}

double Share(double part, double whole) {
  return whole == 0 ? 0 : part / whole * 100;
}

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

void FlexGrid::SortRows(int col, SortOrder order, int first, int last) {
  state_->CheckCol(col);
  if (last < first) return;
  state_->CheckDataRow(first);
  state_->CheckDataRow(last);
  const int data_first = first - FixedRows();
  std::vector<std::uint32_t> moves =
      SortedOrder(state_->cells, static_cast<std::size_t>(col), order,
                  static_cast<std::size_t>(data_first), static_cast<std::size_t>(last - first + 1));
  if (moves.empty()) return;
  Update([&](State& s) { s.MoveRows(std::move(moves), data_first); });
}

SortOrder FlexGrid::Sort() const {
  return state_->sort;
}

void FlexGrid::SetSort(SortOrder order) {
  state_->sort = order;
  if (order != SortOrder::kNone && Col() >= 0) SortRows(Col(), order, FixedRows(), Rows() - 1);
}

int FlexGrid::FindRow(std::string_view text, int start, int col, bool case_sensitive,
                      bool full_match) const {
  state_->CheckCol(col);
  const std::string wanted = case_sensitive ? std::string(text) : host::LowerCase(text);
  const auto matches = [&](std::string_view cell) {
    if (case_sensitive) return full_match ? cell == wanted : cell.starts_with(wanted);
    if (full_match) return host::CompareNoCase(cell, wanted) == 0;
    return host::LowerCase(cell).starts_with(wanted);
  };
  const int fixed = FixedRows();
  const int first = start < 0 ? fixed : start;
  for (int row = first; row < fixed; ++row) {
    if (matches(TextMatrix(row, col))) return row;
  }
  const int rows = Rows();
  for (int row = std::max(first, fixed); row < rows; ++row) {
    if (matches(state_->DataText(row - fixed, col))) return row;
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
    Totals totals;
    const int fixed = FixedRows();
    AddBlock(totals, {cells.top, cells.left, std::min(cells.bottom, fixed - 1), cells.right},
             [this](int row, int col) { return TextMatrix(row, col); });
    AddBlock(totals, {std::max(cells.top, fixed), cells.left, cells.bottom, cells.right},
             [this, fixed](int row, int col) { return state_->DataText(row - fixed, col); });
    return totals;
  };
  const Totals totals = totals_of(block);
  if (totals.count == 0) return 0;
  switch (function) {
    case SubtotalFunction::kSum:
      return totals.sum;
    case SubtotalFunction::kPercent:
      return Share(totals.sum, totals_of({FixedRows(), block.left, Rows() - 1, block.right}).sum);
    case SubtotalFunction::kCount:
      return static_cast<double>(totals.count);
    case SubtotalFunction::kAverage:
      return totals.sum / static_cast<double>(totals.count);
    case SubtotalFunction::kMax:
      return totals.most;
    case SubtotalFunction::kMin:
      return totals.least;
    case SubtotalFunction::kNone:
    case SubtotalFunction::kClear:
      break;
  }
  return 0;
}

}  // namespace tavrix::viewkit
