// Rows: heights, hidden rows, the outline.

#include <algorithm>
#include <stdexcept>

#include "viewkit/grid/flex_grid_state.h"
#include "viewkit/grid/number_format.h"

namespace tavrix::viewkit {

namespace {

std::uint16_t StoredHeight(int height) {
  constexpr int kMaxHeight = 32'000;
  return static_cast<std::uint16_t>(std::clamp(height, 0, kMaxHeight));
}

}  // namespace

int FlexGrid::RowHeight(int row) const {
  state_->rows.CheckRow(row);
  return state_->viewport.RowHeight(row);
}

void FlexGrid::SetRowHeight(int row, int height) {
  state_->rows.CheckRow(row);
  const std::uint16_t set = StoredHeight(height);
  if (state_->rows.StoredHeight(row) == set) return;
  Update([&](State& s) {
    s.rows.SetStoredHeight(row, set);
    s.changes.Content();
  });
}

void FlexGrid::SetDataRowHeights(int height) {
  if (Rows() == FixedRows()) return;
  const bool alike = state_->rows.HasDefaultHeights();
  const std::uint16_t set = StoredHeight(height);
  if (alike && (set == GridRows::kDefaultHeight || set == RowHeight(FixedRows()))) return;
  Update([&](State& s) {
    s.rows.SetDataHeights(set);
    s.changes.Structure();
  });
}

int FlexGrid::RowHeightMin() const {
  return state_->viewport.RowHeightMin();
}

void FlexGrid::SetRowHeightMin(int height) {
  height = std::max(height, 0);
  if (height == RowHeightMin()) return;
  Update([height](State& s) {
    s.viewport.SetRowHeightMin(height);
    s.changes.Structure();
  });
}

bool FlexGrid::RowHidden(int row) const {
  state_->rows.CheckRow(row);
  return state_->rows.Hidden(row);
}

void FlexGrid::SetRowHidden(int row, bool hidden) {
  if (RowHidden(row) == hidden) return;
  Update([&](State& s) {
    s.rows.SetHidden(row, hidden);
    s.changes.Content();
  });
}

bool FlexGrid::IsSubtotal(int row) const {
  return IsNode(row) || IsTotalRow(row);
}

bool FlexGrid::IsNode(int row) const {
  state_->rows.CheckRow(row);
  return state_->rows.IsNode(row);
}

void FlexGrid::SetIsSubtotal(int row, bool node) {
  state_->rows.CheckDataRow(row);
  const bool ends_total = !node && IsTotalRow(row);
  if (IsNode(row) == node && !ends_total) return;
  Update([&](State& s) {
    const int data = row - s.rows.Fixed();
    s.rows.Outline().SetNode(data, node);
    if (ends_total) s.totals.MakePlain(data);
    s.changes.Content();
  });
}

int FlexGrid::RowOutlineLevel(int row) const {
  state_->rows.CheckRow(row);
  return row < FixedRows() ? 0 : state_->rows.Outline().Level(row - FixedRows());
}

void FlexGrid::SetRowOutlineLevel(int row, int level) {
  state_->rows.CheckDataRow(row);
  Update([&](State& s) {
    if (s.rows.Outline().SetLevel(row - s.rows.Fixed(), level)) s.changes.Content();
  });
}

void FlexGrid::ClearOutline() {
  Update([](State& s) {
    s.rows.Outline().Clear();
    s.changes.Structure();
  });
}

int FlexGrid::SetOutlineFromColumn(int col) {
  state_->columns.Check(col);
  int deepest = -1;
  Update([&](State& s) {
    OutlineRows& outline = s.rows.Outline();
    outline.MakeNodes([&](int data) {
      if (outline.Total(data) != 0) return 0;
      const double number = CellNumber(s.rows.DataText(data, col)) - 1;
      const int level = static_cast<int>(std::clamp<double>(number, 0, OutlineRows::kDeepest));
      deepest = std::max(deepest, level);
      return level;
    });
    outline.FitTotals(false);
    s.changes.Structure();
  });
  return deepest;
}

bool FlexGrid::IsCollapsed(int row) const {
  state_->rows.CheckRow(row);
  return state_->rows.IsCollapsed(row);
}

void FlexGrid::SetCollapsed(int row, bool collapsed) {
  state_->rows.CheckRow(row);
  if (row < FixedRows()) return;
  Update([&](State& s) { s.SetCollapsed(row, collapsed); });
}

void FlexGrid::Outline(int level) {
  Update([level](State& s) {
    if (!s.rows.Outline().CollapseTo(level)) return;
    std::vector<int>& collapsed = s.changes.collapsed;
    if (collapsed.empty() || collapsed.back() != -1) collapsed.push_back(-1);
    s.changes.Structure();
  });
}

int FlexGrid::OutlineCol() const {
  return state_->columns.Outline();
}

void FlexGrid::SetOutlineCol(int col) {
  state_->columns.Check(col);
  if (col == OutlineCol()) return;
  Update([col](State& s) {
    s.columns.SetOutline(col);
    s.changes.Content();
  });
}

int FlexGrid::ParentRow(int row) const {
  state_->rows.CheckRow(row);
  return state_->rows.Parent(row);
}

int FlexGrid::FirstChildRow(int row) const {
  state_->rows.CheckRow(row);
  const int fixed = FixedRows();
  const int child = row < fixed ? -1 : state_->rows.Outline().FirstChild(row - fixed);
  return child < 0 ? -1 : child + fixed;
}

int FlexGrid::LastRowOfNode(int row) const {
  state_->rows.CheckRow(row);
  return state_->rows.LastOfNode(row);
}

int FlexGrid::ChildCount(int row) const {
  state_->rows.CheckRow(row);
  return row < FixedRows() ? 0 : state_->rows.Outline().ChildCount(row - FixedRows());
}

bool FlexGrid::HasRowsBelow(int row) const {
  state_->rows.CheckRow(row);
  return state_->rows.HasRowsBelow(row);
}

void FlexGrid::RemoveNode(int row) {
  state_->rows.CheckDataRow(row);
  const int last = LastRowOfNode(row);
  Update([&](State& s) { s.EraseRows(row - s.rows.Fixed(), last - row + 1); });
}

bool FlexGrid::IsShown(int row) const {
  state_->rows.CheckRow(row);
  return state_->rows.IsShown(row);
}

int FlexGrid::ShownRows() const {
  return state_->rows.Outline().ShownCount();
}

int FlexGrid::ShownPosition(int row) const {
  const bool shown = IsShown(row) && row >= FixedRows();
  return shown ? state_->rows.ShownBefore(row) : -1;
}

int FlexGrid::RowAtShownPosition(int position) const {
  if (position < 0 || position >= ShownRows()) throw std::out_of_range("no such shown row");
  return state_->rows.ShownAt(position);
}

int FlexGrid::NextShownRow(int row) const {
  return state_->rows.NextShown(row);
}

int FlexGrid::PreviousShownRow(int row) const {
  return state_->rows.PreviousShown(row);
}

}  // namespace tavrix::viewkit
