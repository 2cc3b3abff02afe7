// Rows: heights, hidden rows, the outline.

#include <algorithm>

#include "viewkit/grid/flex_grid_state.h"
#include "viewkit/grid/number_format.h"

namespace tavrix::viewkit {

int FlexGrid::RowHeight(int row) const {
  state_->CheckRow(row);
  return state_->Height(row);
}

namespace {

std::uint16_t StoredHeight(int height) {
  constexpr int kHighest = 32'000;
  return static_cast<std::uint16_t>(std::clamp(height, 0, kHighest));
}

}  // namespace

void FlexGrid::SetRowHeight(int row, int height) {
  state_->CheckRow(row);
  const auto place = static_cast<std::size_t>(row);
  const std::uint16_t set = StoredHeight(height);
  if (state_->heights.Get(place) == set) return;
  Update([&](State& s) {
    s.heights.Set(place, set);
    s.ContentChanged();
  });
}

void FlexGrid::SetDataRowHeights(int height) {
  if (Rows() == FixedRows()) return;
  const bool alike = state_->heights.IsBlank();
  const std::uint16_t set = StoredHeight(height);
  if (alike && (set == State::kDefaultHeightMark || set == RowHeight(FixedRows()))) return;
  Update([&](State& s) {
    std::ranges::fill(s.heights.All().subspan(s.header.size()), set);
    s.StructureChanged();
  });
}

int FlexGrid::RowHeightMin() const {
  return state_->row_height_min;
}

void FlexGrid::SetRowHeightMin(int height) {
  height = std::max(height, 0);
  if (height == RowHeightMin()) return;
  Update([height](State& s) {
    s.row_height_min = height;
    s.StructureChanged();
  });
}

bool FlexGrid::RowHidden(int row) const {
  const State& s = *state_;
  s.CheckRow(row);
  if (row < s.Fixed()) return s.header[static_cast<std::size_t>(row)].hidden;
  return s.outline.IsHidden(row - s.Fixed());
}

void FlexGrid::SetRowHidden(int row, bool hidden) {
  if (RowHidden(row) == hidden) return;
  Update([&](State& s) {
    if (row < s.Fixed()) {
      s.header[static_cast<std::size_t>(row)].hidden = hidden;
    } else {
      s.outline.SetHidden(row - s.Fixed(), hidden);
    }
    s.ContentChanged();
  });
}

bool FlexGrid::IsSubtotal(int row) const {
  return IsNode(row) || IsTotalRow(row);
}

bool FlexGrid::IsNode(int row) const {
  state_->CheckRow(row);
  return row >= state_->Fixed() && state_->outline.IsNode(row - state_->Fixed());
}

void FlexGrid::SetIsSubtotal(int row, bool node) {
  state_->CheckDataRow(row);
  const bool ends_total = !node && IsTotalRow(row);
  if (IsNode(row) == node && !ends_total) return;
  Update([&](State& s) {
    s.outline.SetNode(row - s.Fixed(), node);
    if (ends_total) {
      s.outline.SetTotal(row - s.Fixed(), 0);
      s.totals.RowsRedefined();
    }
    s.ContentChanged();
  });
}

int FlexGrid::RowOutlineLevel(int row) const {
  state_->CheckRow(row);
  return row < state_->Fixed() ? 0 : state_->outline.Level(row - state_->Fixed());
}

void FlexGrid::SetRowOutlineLevel(int row, int level) {
  state_->CheckDataRow(row);
  Update([&](State& s) {
    if (s.outline.SetLevel(row - s.Fixed(), level)) s.ContentChanged();
  });
}

void FlexGrid::ClearOutline() {
  Update([](State& s) {
    s.outline.Clear();
    s.StructureChanged();
  });
}

int FlexGrid::SetOutlineFromColumn(int col) {
  state_->CheckCol(col);
  int deepest = -1;
  Update([&](State& s) {
    const auto column = static_cast<std::size_t>(col);
    s.outline.MakeNodes([&](std::size_t row) {
      if (s.outline.Total(static_cast<int>(row)) != 0) return 0;
      const double number = CellNumber(s.cells.Text(row, column)) - 1;
      const int level = static_cast<int>(std::clamp<double>(number, 0, OutlineRows::kDeepest));
      deepest = std::max(deepest, level);
      return level;
    });
    s.outline.FitTotals(false);
    s.StructureChanged();
  });
  return deepest;
}

bool FlexGrid::IsCollapsed(int row) const {
  state_->CheckRow(row);
  return row >= state_->Fixed() && state_->outline.IsCollapsed(row - state_->Fixed());
}

void FlexGrid::SetCollapsed(int row, bool collapsed) {
  state_->CheckRow(row);
  if (row < state_->Fixed()) return;
  Update([&](State& s) {
    if (!s.outline.SetCollapsed(row - s.Fixed(), collapsed)) return;
    if (collapsed && s.row > row && s.row <= LastRowOfNode(row)) {
      s.MakeCurrent(row, State::Pick::kOnly);
    }
    s.pending.collapsed.push_back(row);
    s.RowsCameOrWent();
  });
}

void FlexGrid::Outline(int level) {
  Update([level](State& s) {
    if (!s.outline.CollapseTo(level)) return;
    if (s.pending.collapsed.empty() || s.pending.collapsed.back() != -1) {
      s.pending.collapsed.push_back(-1);
    }
    s.StructureChanged();
  });
}

int FlexGrid::OutlineCol() const {
  return state_->outline_col;
}

void FlexGrid::SetOutlineCol(int col) {
  state_->CheckCol(col);
  if (col == OutlineCol()) return;
  Update([col](State& s) {
    s.outline_col = col;
    s.ContentChanged();
  });
}

int FlexGrid::ParentRow(int row) const {
  const State& s = *state_;
  s.CheckRow(row);
  if (row < s.Fixed()) return -1;
  const int parent = s.outline.Parent(row - s.Fixed());
  return parent < 0 ? -1 : parent + s.Fixed();
}

int FlexGrid::FirstChildRow(int row) const {
  const State& s = *state_;
  s.CheckRow(row);
  if (row < s.Fixed()) return -1;
  const int child = s.outline.FirstChild(row - s.Fixed());
  return child < 0 ? -1 : child + s.Fixed();
}

int FlexGrid::LastRowOfNode(int row) const {
  const State& s = *state_;
  s.CheckRow(row);
  return row < s.Fixed() ? row : s.outline.LastOfNode(row - s.Fixed()) + s.Fixed();
}

int FlexGrid::ChildCount(int row) const {
  state_->CheckRow(row);
  return row < state_->Fixed() ? 0 : state_->outline.ChildCount(row - state_->Fixed());
}

bool FlexGrid::HasRowsBelow(int row) const {
  state_->CheckRow(row);
  return row >= state_->Fixed() && state_->outline.HasRowsBelow(row - state_->Fixed());
}

void FlexGrid::RemoveNode(int row) {
  state_->CheckDataRow(row);
  const int last = LastRowOfNode(row);
  Update([&](State& s) { s.EraseRows(row - s.Fixed(), last - row + 1); });
}

bool FlexGrid::IsShown(int row) const {
  const State& s = *state_;
  s.CheckRow(row);
  return row < s.Fixed() ? !RowHidden(row) : s.outline.IsShown(row - s.Fixed());
}

int FlexGrid::ShownRows() const {
  return state_->outline.ShownCount();
}

int FlexGrid::ShownPosition(int row) const {
  const State& s = *state_;
  s.CheckRow(row);
  if (row < s.Fixed() || !IsShown(row)) return -1;
  return s.outline.ShownBefore(row - s.Fixed());
}

int FlexGrid::RowAtShownPosition(int position) const {
  const State& s = *state_;
  if (position < 0 || position >= ShownRows()) throw std::out_of_range("no such shown row");
  return s.outline.ShownAt(position) + s.Fixed();
}

int FlexGrid::NextShownRow(int row) const {
  const State& s = *state_;
  const int from = std::clamp(row + 1 - s.Fixed(), 0, s.DataRows());
  const int position = s.outline.ShownBefore(from);
  return position < ShownRows() ? RowAtShownPosition(position) : -1;
}

int FlexGrid::PreviousShownRow(int row) const {
  const State& s = *state_;
  const int to = std::clamp(row - s.Fixed(), 0, s.DataRows());
  const int position = s.outline.ShownBefore(to) - 1;
  return position < 0 ? -1 : RowAtShownPosition(position);
}

}  // namespace tavrix::viewkit
