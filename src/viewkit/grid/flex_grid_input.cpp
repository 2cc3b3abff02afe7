// What the user does, as the peer hands it in.

#include "viewkit/grid/flex_grid_state.h"

namespace tavrix::viewkit {

bool FlexGrid::HandleKey(Key key, Modifiers modifiers) {
  if (modifiers.alt || !Enabled() || !state_->SettlePeer()) return false;
  bool used = false;
  Update([&](State& s) { used = s.input.HandleKey(key, modifiers); });
  return used;
}

bool FlexGrid::HandleTypeAhead(std::string_view character, std::int64_t now) {
  if (!Enabled()) return false;
  const auto found = state_->input.Seek(character, now);
  if (!found) return false;
  const std::weak_ptr<State> alive = state_;
  if (!IsShown(*found)) {
    Update([&](State& s) { s.input.OpenAbove(*found); });
  }
  if (alive.expired() || !state_->SettlePeer()) return true;
  Update([&](State& s) { s.input.Move(*found, {}); });
  return true;
}

void FlexGrid::HandlePress(int row, int col, bool on_symbol, Modifiers modifiers) {
  if (!state_->rows.IsData(row) || !Enabled() || !state_->SettlePeer()) return;
  Update([&](State& s) { s.input.HandlePress(row, col, on_symbol, modifiers); });
}

void FlexGrid::HandleDrag(int row) {
  if (!state_->rows.IsData(row) || !Enabled() || !CanSelectSeveral()) return;
  if (!state_->SettlePeer()) return;
  Update([&](State& s) { s.input.Move(row, {.shift = true}); });
}

void FlexGrid::HandleDoubleClick(int row) {
  if (state_->rows.IsData(row) && Enabled()) DoubleClick.Raise();
}

}  // namespace tavrix::viewkit
