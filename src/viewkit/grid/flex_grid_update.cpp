// Change notices and events: collected during an update, sent and raised at its end.

#include <utility>

#include "viewkit/grid/flex_grid_state.h"

namespace tavrix::viewkit {

void FlexGrid::BeginUpdate() {
  state_->Begin();
}

void FlexGrid::EndUpdate() {
  if (state_->updates > 0) state_->End();
}

void FlexGrid::State::Begin() {
  if (updates++ == 0) before = Now();
}

void FlexGrid::State::End() {
  if (--updates == 0) Flush();
}

bool FlexGrid::State::SettlePeer() {
  const std::weak_ptr<State> alive = owner.state_;
  if (Peer* peer = owner.GetPeer()) peer->Settle();
  return !alive.expired();
}

void FlexGrid::State::Flush() {
  if (changes.settle) viewport.Settle();
  const std::weak_ptr<State> alive = owner.state_;
  const GridChanges done = std::exchange(changes, {});
  const Before now = Now();
  const bool cell_moved = before.row != now.row || before.col != now.col;
  const bool selected = before.selection_version != now.selection_version;
  const bool scrolled = before.top != now.top || before.left != now.left;

  FlexGrid& sender = owner;
  const auto tell = [&](bool due, const Change& change) {
    if (due && !alive.expired()) sender.Notify(change);
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
    if (!alive.expired()) sender.AfterCollapse.Raise(node);
  }
  raise(cell_moved, sender.RowColChange);
  raise(selected, sender.SelChange);
  raise(scrolled, sender.AfterScroll);
}

}  // namespace tavrix::viewkit
