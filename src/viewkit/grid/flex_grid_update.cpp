// Change notices and events: collected during an update, sent and raised at its end.

#include <algorithm>
#include <array>
#include <utility>

#include "viewkit/grid/flex_grid_state.h"

namespace tavrix::viewkit {

void FlexGrid::BeginUpdate() {
  state_->Begin();
}

void FlexGrid::EndUpdate() {
  if (state_->updates > 0) state_->End();
}

void FlexGrid::State::RowChanged(int changed) {
  const bool first = pending.first_row < 0;
  pending.first_row = first ? changed : std::min(pending.first_row, changed);
  pending.last_row = std::max(pending.last_row, changed);
}

void FlexGrid::State::Begin() {
  if (updates++ > 0) return;
  pending.row = row;
  pending.col = col;
  pending.top = top;
  pending.left = left;
  pending.selection_version = selection_version;
}

void FlexGrid::State::End() {
  if (--updates == 0) Flush();
}

/// What is scrolled may have got shorter. Left undone after changes of single rows, which come in
/// long loops.
void FlexGrid::State::Settle() {
  if (top > Fixed()) top = TopFor(top);
  top = std::max(top, Fixed());
  left = LeftFor(left);
}

bool FlexGrid::State::SettlePeer() {
  const std::weak_ptr<State> alive = grid.state_;
  if (Peer* peer = grid.GetPeer()) peer->Settle();
  return !alive.expired();
}

void FlexGrid::State::Flush() {
  if (pending.settle) Settle();
  const std::weak_ptr<State> alive = grid.state_;
  const Pending done = std::exchange(pending, {});
  const bool cell_moved = done.row != row || done.col != col;
  const bool selected = done.selection_version != selection_version;
  const bool scrolled = done.top != top || done.left != left;

  FlexGrid& owner = grid;
  const auto tell = [&](bool due, const Change& change) {
    if (due && !alive.expired()) owner.Notify(change);
  };
  const auto raise = [&](bool due, const Event<>& event) {
    if (due && !alive.expired()) event.Raise();
  };
  const bool part = !done.content;
  tell(done.content, {Change::Kind::kContent});
  tell(part && done.columns, {Change::Kind::kColumns});
  if (done.settle && !alive.expired() && !SettlePeer()) return;
  tell(part && done.first_row >= 0, {Change::Kind::kRows, done.first_row, done.last_row});
  tell(part && scrolled, {Change::Kind::kScroll});
  tell(part && (selected || cell_moved), {Change::Kind::kSelection});

  for (const int node : done.collapsed) {
    if (!alive.expired()) owner.AfterCollapse.Raise(node);
  }
  raise(cell_moved, owner.RowColChange);
  raise(selected, owner.SelChange);
  raise(scrolled, owner.AfterScroll);
}

}  // namespace tavrix::viewkit
