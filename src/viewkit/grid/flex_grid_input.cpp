// What the user does, as plain keys, characters and rows.

#include <algorithm>

#include "host/text.h"
#include "viewkit/grid/flex_grid_state.h"

namespace tavrix::viewkit {

namespace {

/// Characters that come later than this, in milliseconds, begin a new search.
constexpr std::int64_t kTypeAheadPause = 1000;

bool IsRepeated(std::string_view typed, std::string_view character) {
  for (; typed.starts_with(character); typed.remove_prefix(character.size())) {
  }
  return typed.empty();
}

}  // namespace

void FlexGrid::State::Move(int next, Modifiers modifiers) {
  if (!IsData(next)) return;
  const bool several = SeveralRows();
  const bool list = mode == viewkit::SelectionMode::kListBox;
  Pick pick = Pick::kOnly;
  if (modifiers.shift && several) {
    pick = modifiers.control && list ? Pick::kExtendMore : Pick::kExtend;
  } else if (modifiers.control && list) {
    pick = Pick::kFocus;
  }
  MakeCurrent(next, pick);
  ScrollToShow(next);
}

/// Moves by shown rows; from nowhere down to the first. Without a row in its direction it stays.
void FlexGrid::State::MoveBy(int rows, Modifiers modifiers) {
  const int shown = outline.ShownCount();
  if (shown == 0) return;
  const bool up = rows < 0;
  int position = 0;
  if (IsData(row)) {
    // From a row that is not shown the first step down leads to the one that takes its place.
    if (rows > 0 && !outline.IsShown(row - Fixed())) --rows;
    position = std::clamp(outline.ShownBefore(row - Fixed()) + rows, 0, shown - 1);
  }
  const int next = outline.ShownAt(position) + Fixed();
  if (up ? next <= row : next >= row) Move(next, modifiers);
}

void FlexGrid::State::MoveByPage(int direction, Modifiers modifiers) {
  const int from = IsData(row) ? outline.ShownBefore(row - Fixed()) : 0;
  MoveBy(direction * std::max(RowsThatFit(from, direction) - 1, 1), modifiers);
}

void FlexGrid::State::UserCollapses(int node, bool collapsed) {
  if (!grid.HasRowsBelow(node)) return;
  grid.SetCollapsed(node, collapsed);
  pending.settle = true;
}

void FlexGrid::State::ExpandAllBelow(int node) {
  const int last = grid.LastRowOfNode(node);
  bool changed = false;
  for (int below = node; below <= last; ++below) {
    changed = outline.SetCollapsed(below - Fixed(), false) || changed;
  }
  if (!changed) return;
  pending.collapsed.push_back(node);
  StructureChanged();
}

/// Left: collapse, or to the parent. Right: expand, or to the first row below.
void FlexGrid::State::MoveInTree(bool left_key, Modifiers modifiers) {
  const bool below = grid.HasRowsBelow(row);
  const bool open = below && !grid.IsCollapsed(row);
  if (left_key && open) return UserCollapses(row, true);
  if (left_key) return Move(grid.ParentRow(row), modifiers);
  if (!open && below) return UserCollapses(row, false);
  if (below) Move(grid.NextShownRow(row), modifiers);
}

void FlexGrid::State::ScrollSideways(int step) {
  int next = LeftFor(left) + step;
  while (next > FirstScrolledCol() && next < Cols() && ShownWidth(next) == 0) next += step;
  left = LeftFor(next);
}

bool FlexGrid::State::HandleNodeKey(Key key) {
  if (!IsData(row) || !outline.IsNode(row - Fixed())) return false;
  switch (key) {
    case Key::kAdd:
      UserCollapses(row, false);
      return true;
    case Key::kSubtract:
      UserCollapses(row, true);
      return true;
    case Key::kMultiply:
      ExpandAllBelow(row);
      return true;
    default:
      return false;
  }
}

bool FlexGrid::State::HandleSpace(Modifiers modifiers) {
  if (mode != viewkit::SelectionMode::kListBox || !IsData(row)) return false;
  const Pick plain = modifiers.control ? Pick::kToggle : Pick::kOnly;
  MakeCurrent(row, modifiers.shift ? Pick::kExtend : plain);
  return true;
}

/// Ctrl+A: all shown rows; the current one stays.
bool FlexGrid::State::HandleSelectAll(Key key, Modifiers modifiers) {
  if (key != Key::kA || !modifiers.control || modifiers.shift || !SeveralRows()) return false;
  if (DataRows() == 0) return true;
  SelectionChanged(selection.Assign(ShownBetween(Fixed(), Rows() - 1)));
  return true;
}

bool FlexGrid::State::HandleArrow(Key key, Modifiers modifiers) {
  switch (key) {
    case Key::kUp:
      MoveBy(-1, modifiers);
      return true;
    case Key::kDown:
      MoveBy(1, modifiers);
      return true;
    case Key::kPageUp:
      MoveByPage(-1, modifiers);
      return true;
    case Key::kPageDown:
      MoveByPage(1, modifiers);
      return true;
    case Key::kHome:
    case Key::kEnd:
      if (outline.ShownCount() == 0) return true;
      Move(outline.ShownAt(key == Key::kHome ? 0 : outline.ShownCount() - 1) + Fixed(), modifiers);
      return true;
    case Key::kLeft:
    case Key::kRight:
      if (look.outline_bar != 0 && IsData(row) && !modifiers.control) {
        MoveInTree(key == Key::kLeft, modifiers);
      } else {
        ScrollSideways(key == Key::kLeft ? -1 : 1);
      }
      return true;
    default:
      return false;
  }
}

bool FlexGrid::HandleKey(Key key, Modifiers modifiers) {
  if (modifiers.alt || !Enabled() || !state_->SettlePeer()) return false;
  bool used = false;
  Update([&](State& s) {
    used = s.HandleArrow(key, modifiers) || (key == Key::kSpace && s.HandleSpace(modifiers)) ||
           s.HandleSelectAll(key, modifiers) || (!modifiers.control && s.HandleNodeKey(key));
  });
  return used;
}

bool FlexGrid::HandleTypeAhead(std::string_view character, std::int64_t now) {
  State& s = *state_;
  if (!Enabled() || character.empty() || s.outline_col >= s.Cols()) return false;
  if (now - s.typed_at > kTypeAheadPause) s.typed.clear();
  s.typed_at = now;
  // The same character again and again goes from one row to the next.
  const bool repeated = IsRepeated(s.typed, character);
  s.typed += character;
  const host::CaselessText wanted(repeated ? character : std::string_view(s.typed));

  const int shown = ShownRows();
  const int current = s.IsData(s.row) ? s.outline.ShownBefore(s.row - s.Fixed()) : -1;
  const int first = std::max(repeated ? current + 1 : current, 0);
  const auto matches = [&](int row) {
    return !IsTotalRow(row) && wanted.IsStartOf(DisplayText(row, s.outline_col));
  };
  const auto take = [&](int row) {
    if (s.SettlePeer()) Update([row](State& state) { state.Move(row, {}); });
    return true;
  };
  for (int step = 0; step < shown; ++step) {
    const int row = RowAtShownPosition((first + step) % shown);
    if (matches(row)) return take(row);
  }
  for (int row = s.Fixed(); row < s.Rows(); ++row) {
    if (IsShown(row) || !matches(row) || !CanBeOpened(row)) continue;
    const std::weak_ptr<State> alive = state_;
    OpenAbove(row);
    return alive.expired() || take(row);
  }
  return false;
}

bool FlexGrid::CanBeOpened(int row) const {
  bool hidden = RowHidden(row);
  for (int node = ParentRow(row); node >= 0; node = ParentRow(node)) hidden |= RowHidden(node);
  return !hidden;
}

void FlexGrid::OpenAbove(int row) {
  Update([&](State& s) {
    for (int node = ParentRow(row); node >= 0; node = ParentRow(node)) SetCollapsed(node, false);
    s.pending.settle = true;
  });
}

void FlexGrid::HandlePress(int row, int col, bool on_symbol, Modifiers modifiers) {
  if (!state_->IsData(row) || !Enabled() || !state_->SettlePeer()) return;
  Update([&](State& s) {
    if (on_symbol) return s.UserCollapses(row, !IsCollapsed(row));
    if (col >= 0 && col < s.Cols()) s.col = col;
    const bool toggles =
        modifiers.control && !modifiers.shift && s.mode == viewkit::SelectionMode::kListBox;
    if (!toggles) return s.Move(row, modifiers);
    s.MakeCurrent(row, State::Pick::kToggle);
    s.ScrollToShow(row);
  });
}

void FlexGrid::HandleDrag(int row) {
  if (!state_->IsData(row) || !Enabled() || !state_->SeveralRows()) return;
  if (!state_->SettlePeer()) return;
  Update([&](State& s) { s.Move(row, {.shift = true}); });
}

void FlexGrid::HandleDoubleClick(int row) {
  if (state_->IsData(row) && Enabled()) DoubleClick.Raise();
}

}  // namespace tavrix::viewkit
