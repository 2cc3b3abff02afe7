// What is seen: the top row, the left column, the viewport.

#include <stdexcept>

#include "viewkit/grid/flex_grid_state.h"

namespace tavrix::viewkit {

int FlexGrid::TopRow() const {
  const State& s = *state_;
  const int top = s.viewport.TopFor(s.viewport.Top());
  return top > FixedRows() || ShownRows() == 0 ? top : RowAtShownPosition(0);
}

void FlexGrid::SetTopRow(int row) {
  if (!state_->SettlePeer()) return;
  const bool up = row < TopRow();
  Update(
      [&](State& s) { s.viewport.SetTop(up ? s.viewport.TopAbove(row) : s.viewport.TopFor(row)); });
}

int FlexGrid::LeftCol() const {
  return state_->viewport.LeftFor(state_->viewport.Left());
}

void FlexGrid::SetLeftCol(int col) {
  if (!state_->SettlePeer()) return;
  Update([col](State& s) { s.viewport.SetLeft(s.viewport.LeftFor(col)); });
}

void FlexGrid::SettleScroll() {
  Update([](State& s) { s.viewport.Settle(); });
}

bool FlexGrid::IsInView(int row) const {
  state_->rows.CheckRow(row);
  if (row < FixedRows()) return !RowHidden(row);
  const int position = ShownPosition(row);
  const int first = position < 0 ? 0 : ShownPosition(TopRow());
  return position >= first && position < first + state_->viewport.RowsThatFit(first, 1);
}

void FlexGrid::ShowRow(int row) {
  state_->rows.CheckRow(row);
  if (!state_->SettlePeer()) return;
  Update([row](State& s) { s.viewport.ShowRow(row); });
}

void FlexGrid::SetViewport(int width, int height) {
  if (state_->viewport.HasSize(width, height)) return;
  Update([&](State& s) {
    s.viewport.SetSize(width, height);
    s.changes.settle = true;
  });
}

}  // namespace tavrix::viewkit
