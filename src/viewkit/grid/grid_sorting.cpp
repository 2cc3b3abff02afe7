#include "viewkit/grid/grid_sorting.h"

#include <numeric>

#include "viewkit/grid/row_sort.h"

namespace tavrix::viewkit {

/// As `SortedOrder`: the rows between two rows of totals are sorted for themselves.
std::vector<int> GridSorting::OrderBetweenTotals(int col, SortOrder order, int first_data,
                                                 int count) const {
  const CellStore& cells = model_.rows.Cells();
  const ColumnType type = model_.columns.At(col).type;
  const auto totals = model_.rows.Outline().Totals();
  if (totals.empty()) return SortedOrder(cells, col, order, first_data, count, type);
  std::vector<int> all(SizeOf(count));
  std::iota(all.begin(), all.end(), 0);
  bool moves = false;
  for (int from = 0; from < count;) {
    int to = from;
    while (to < count && ItemAt(totals, first_data + to) == 0) ++to;
    const auto part = SortedOrder(cells, col, order, first_data + from, to - from, type);
    for (int i = 0; i < CountOf(part); ++i) ItemAt(all, from + i) = from + ItemAt(part, i);
    moves = moves || !part.empty();
    from = to + 1;
  }
  if (!moves) all.clear();
  return all;
}

void GridSorting::Sort(int col, SortOrder order, int first, int last) {
  if (last < first) return;
  order_ = SortOrder::kNone;
  const int first_data = first - model_.rows.Fixed();
  const auto moves = OrderBetweenTotals(col, order, first_data, last - first + 1);
  if (!moves.empty()) model_.ReorderRows(RowOrder(moves, first_data));
}

void GridSorting::SetOrder(SortOrder order) {
  const int col = model_.selection.Col();
  if (order != SortOrder::kNone && col >= 0) {
    if (model_.rows.Outline().HasTotals()) {
      postponed_.emplace_back(col, order);
    } else {
      postponed_.clear();
    }
    Sort(col, order, model_.rows.Fixed(), model_.rows.Rows() - 1);
  }
  order_ = order;
}

void GridSorting::SortPostponed() {
  const SortOrder stands = order_;
  for (const auto& [col, order] : std::exchange(postponed_, {})) {
    if (col < model_.columns.Count()) {
      Sort(col, order, model_.rows.Fixed(), model_.rows.Rows() - 1);
    }
  }
  order_ = stands;
}

void GridSorting::Forget() {
  postponed_.clear();
  order_ = SortOrder::kNone;
}

}  // namespace tavrix::viewkit
