// The current cell, the selected rows.

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "viewkit/grid/flex_grid_state.h"

namespace tavrix::viewkit {

int FlexGrid::Row() const {
  return state_->selection.Row();
}

void FlexGrid::SetRow(int row) {
  if (row < -1 || row >= Rows()) throw std::out_of_range("no such row in the grid");
  Update([row](State& s) { s.selection.MakeCurrent(row, Pick::kOnly); });
}

int FlexGrid::Col() const {
  return state_->selection.Col();
}

void FlexGrid::SetCol(int col) {
  state_->columns.Check(col);
  Update([col](State& s) { s.selection.SetCol(col); });
}

SelectionMode FlexGrid::SelectionMode() const {
  return state_->selection.Mode();
}

void FlexGrid::SetSelectionMode(viewkit::SelectionMode mode) {
  if (mode == SelectionMode()) return;
  Update([mode](State& s) { s.selection.SetMode(mode); });
}

void FlexGrid::SetAllowSelection(bool allow) {
  if (allow == state_->selection.AllowsSelection()) return;
  Update([allow](State& s) { s.selection.SetAllowSelection(allow); });
}

bool FlexGrid::CanSelectSeveral() const {
  return state_->selection.AllowsSeveral();
}

int FlexGrid::SelectedRows() const {
  return state_->selection.Selected().Count();
}

int FlexGrid::SelectedRow(int n) const {
  if (n < 0 || n >= SelectedRows()) throw std::out_of_range("no such selected row");
  return state_->selection.Selected().At(n);
}

bool FlexGrid::IsSelected(int row) const {
  state_->rows.CheckRow(row);
  return state_->selection.Selected().Contains(row);
}

void FlexGrid::SetSelected(int row, bool selected) {
  state_->rows.CheckDataRow(row);
  if (IsSelected(row) == selected) return;
  Update([&](State& s) { s.selection.SetSelected(row, selected); });
}

std::string FlexGrid::ClipText() const {
  const State& s = *state_;
  const auto append = [](std::string& line, std::string cell) {
    std::replace_if(
        cell.begin(), cell.end(), [](char c) { return c == '\t' || c == '\r' || c == '\n'; }, ' ');
    line += cell;
  };
  std::string text;
  for (const int row : s.selection.Selected().Rows()) {
    std::string line;
    bool first = true;
    for (int col = 0; col < Cols(); ++col) {
      if (s.columns.ShownWidth(col) == 0) continue;
      if (!std::exchange(first, false)) line += '\t';
      append(line, s.DisplayText(row, col));
    }
    text += line + "\r\n";
  }
  return text;
}

}  // namespace tavrix::viewkit
