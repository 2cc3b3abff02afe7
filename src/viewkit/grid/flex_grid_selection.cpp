// The current cell and the selected rows.

#include <algorithm>
#include <utility>

#include "viewkit/grid/flex_grid_state.h"

namespace tavrix::viewkit {

std::vector<int> FlexGrid::State::ShownBetween(int any_row, int other) const {
  const int first = outline.ShownBefore(std::min(any_row, other) - Fixed());
  const int end = outline.ShownBefore(std::max(any_row, other) - Fixed() + 1);
  std::vector<int> rows;
  rows.reserve(static_cast<std::size_t>(end - first));
  for (int position = first; position < end; ++position) {
    rows.push_back(outline.ShownAt(position) + Fixed());
  }
  return rows;
}

void FlexGrid::State::MakeCurrent(int next, Pick pick) {
  const bool data = IsData(next);
  const int from = IsData(anchor) ? anchor : IsData(row) ? row : next;
  row = next;
  if (!data) {
    anchor = -1;
    return SelectionChanged(selection.Clear());
  }
  switch (pick) {
    case Pick::kOnly:
      anchor = next;
      return SelectionChanged(selection.SelectOnly(next));
    case Pick::kToggle:
      anchor = next;
      return SelectionChanged(selection.Set(next, !selection.Contains(next)));
    case Pick::kExtend:
      anchor = from;
      return SelectionChanged(selection.Assign(ShownBetween(from, next)));
    case Pick::kExtendMore:
      anchor = from;
      return SelectionChanged(selection.Add(ShownBetween(from, next)));
    case Pick::kFocus:
      return;
  }
}

int FlexGrid::Row() const {
  return state_->row;
}

void FlexGrid::SetRow(int row) {
  if (row < -1 || row >= Rows()) throw std::out_of_range("no such row in the grid");
  Update([row](State& s) { s.MakeCurrent(row, State::Pick::kOnly); });
}

int FlexGrid::Col() const {
  return state_->col;
}

void FlexGrid::SetCol(int col) {
  state_->CheckCol(col);
  Update([col](State& s) { s.col = col; });
}

SelectionMode FlexGrid::SelectionMode() const {
  return state_->mode;
}

void FlexGrid::SetSelectionMode(viewkit::SelectionMode mode) {
  if (mode == state_->mode) return;
  Update([mode](State& s) {
    s.mode = mode;
    if (mode == viewkit::SelectionMode::kListBox) return;
    s.MakeCurrent(s.row, State::Pick::kOnly);
  });
}

void FlexGrid::SetAllowSelection(bool allow) {
  if (allow == state_->allow_selection) return;
  Update([allow](State& s) {
    s.allow_selection = allow;
    if (!s.SeveralRows()) s.MakeCurrent(s.row, State::Pick::kOnly);
  });
}

bool FlexGrid::CanSelectSeveral() const {
  return state_->SeveralRows();
}

int FlexGrid::SelectedRows() const {
  return state_->selection.Count();
}

int FlexGrid::SelectedRow(int n) const {
  if (n < 0 || n >= SelectedRows()) throw std::out_of_range("no such selected row");
  return state_->selection.At(n);
}

bool FlexGrid::IsSelected(int row) const {
  state_->CheckRow(row);
  return state_->selection.Contains(row);
}

void FlexGrid::SetSelected(int row, bool selected) {
  state_->CheckDataRow(row);
  if (IsSelected(row) == selected) return;
  Update([&](State& s) {
    if (s.mode == viewkit::SelectionMode::kListBox) {
      return s.SelectionChanged(s.selection.Set(row, selected));
    }
    s.MakeCurrent(selected ? row : s.Fixed() - 1, State::Pick::kOnly);
  });
}

std::string FlexGrid::ClipText() const {
  const State& s = *state_;
  const auto append = [](std::string& line, std::string cell) {
    std::replace_if(
        cell.begin(), cell.end(), [](char c) { return c == '\t' || c == '\r' || c == '\n'; }, ' ');
    line += cell;
  };
  std::string text;
  for (const int row : s.selection.Rows()) {
    std::string line;
    bool first = true;
    for (int col = 0; col < Cols(); ++col) {
      if (s.ShownWidth(col) == 0) continue;
      if (!std::exchange(first, false)) line += '\t';
      append(line, DisplayText(row, col));
    }
    text += line + "\r\n";
  }
  return text;
}

}  // namespace tavrix::viewkit
