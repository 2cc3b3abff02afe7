#include "viewkit/grid/grid_input.h"

#include <algorithm>

#include "host/text.h"

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

void GridInput::Move(int next, Modifiers modifiers) {
  if (!model_.rows.IsData(next)) return;
  const bool several = model_.selection.AllowsSeveral();
  const bool list = model_.selection.IsListBox();
  Pick pick = Pick::kOnly;
  if (modifiers.shift && several) {
    pick = modifiers.control && list ? Pick::kExtendMore : Pick::kExtend;
  } else if (modifiers.control && list) {
    pick = Pick::kFocus;
  }
  model_.selection.MakeCurrent(next, pick);
  model_.viewport.ShowRow(next);
}

/// Moves by shown rows; from nowhere down to the first. Without a row in its direction it stays.
void GridInput::MoveBy(int count, Modifiers modifiers) {
  const GridRows& rows = model_.rows;
  const int row = model_.selection.Row();
  const int shown = rows.Outline().ShownCount();
  if (shown == 0) return;
  const bool up = count < 0;
  int position = 0;
  if (OnDataRow()) {
    // From a row that is not shown the first step down leads to the one that takes its place.
    if (count > 0 && !rows.IsShown(row)) --count;
    position = std::clamp(rows.ShownBefore(row) + count, 0, shown - 1);
  }
  const int next = rows.ShownAt(position);
  if (up ? next <= row : next >= row) Move(next, modifiers);
}

void GridInput::MoveByPage(int direction, Modifiers modifiers) {
  const int from = OnDataRow() ? model_.rows.ShownBefore(model_.selection.Row()) : 0;
  MoveBy(direction * std::max(model_.viewport.RowsThatFit(from, direction) - 1, 1), modifiers);
}

void GridInput::Collapse(int node, bool collapsed) {
  if (!model_.rows.HasRowsBelow(node)) return;
  model_.SetCollapsed(node, collapsed);
  model_.changes.settle = true;
}

void GridInput::ExpandAllBelow(int node) {
  const int last = model_.rows.LastOfNode(node);
  bool changed = false;
  for (int below = node; below <= last; ++below) {
    const int data = below - model_.rows.Fixed();
    changed = model_.rows.Outline().SetCollapsed(data, false) || changed;
  }
  if (!changed) return;
  model_.changes.collapsed.push_back(node);
  model_.changes.Structure();
}

/// Left: collapse, or to the parent. Right: expand, or to the first row below.
void GridInput::MoveInTree(bool left_key, Modifiers modifiers) {
  const int row = model_.selection.Row();
  const bool below = model_.rows.HasRowsBelow(row);
  const bool open = below && !model_.rows.IsCollapsed(row);
  if (left_key && open) return Collapse(row, true);
  if (left_key) return Move(model_.rows.Parent(row), modifiers);
  if (!open && below) return Collapse(row, false);
  if (below) Move(model_.rows.NextShown(row), modifiers);
}

bool GridInput::HandleNodeKey(Key key) {
  const int row = model_.selection.Row();
  if (!OnDataRow() || !model_.rows.IsNode(row)) return false;
  switch (key) {
    case Key::kAdd:
      Collapse(row, false);
      return true;
    case Key::kSubtract:
      Collapse(row, true);
      return true;
    case Key::kMultiply:
      ExpandAllBelow(row);
      return true;
    default:
      return false;
  }
}

bool GridInput::HandleSpace(Modifiers modifiers) {
  if (!model_.selection.IsListBox() || !OnDataRow()) return false;
  const Pick plain = modifiers.control ? Pick::kToggle : Pick::kOnly;
  model_.selection.MakeCurrent(model_.selection.Row(), modifiers.shift ? Pick::kExtend : plain);
  return true;
}

/// Ctrl+A.
bool GridInput::HandleSelectAll(Key key, Modifiers modifiers) {
  if (key != Key::kA || !modifiers.control || modifiers.shift) return false;
  if (!model_.selection.AllowsSeveral()) return false;
  model_.selection.SelectShown();
  return true;
}

bool GridInput::HandleArrow(Key key, Modifiers modifiers) {
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
    case Key::kEnd: {
      const int shown = model_.rows.Outline().ShownCount();
      if (shown > 0) Move(model_.rows.ShownAt(key == Key::kHome ? 0 : shown - 1), modifiers);
      return true;
    }
    case Key::kLeft:
    case Key::kRight:
      if (model_.look.outline_bar != 0 && OnDataRow() && !modifiers.control) {
        MoveInTree(key == Key::kLeft, modifiers);
      } else {
        model_.viewport.ScrollSideways(key == Key::kLeft ? -1 : 1);
      }
      return true;
    default:
      return false;
  }
}

bool GridInput::HandleKey(Key key, Modifiers modifiers) {
  return HandleArrow(key, modifiers) || (key == Key::kSpace && HandleSpace(modifiers)) ||
         HandleSelectAll(key, modifiers) || (!modifiers.control && HandleNodeKey(key));
}

void GridInput::HandlePress(int row, int col, bool on_symbol, Modifiers modifiers) {
  if (on_symbol) return Collapse(row, !model_.rows.IsCollapsed(row));
  if (col >= 0 && col < model_.columns.Count()) model_.selection.SetCol(col);
  const bool toggles = modifiers.control && !modifiers.shift && model_.selection.IsListBox();
  if (!toggles) return Move(row, modifiers);
  model_.selection.MakeCurrent(row, Pick::kToggle);
  model_.viewport.ShowRow(row);
}

std::optional<int> GridInput::Seek(std::string_view character, std::int64_t now) {
  const GridRows& rows = model_.rows;
  const int col = model_.columns.Outline();
  if (character.empty() || col >= rows.Cols()) return std::nullopt;
  if (now - typed_at_ > kTypeAheadPause) typed_.clear();
  typed_at_ = now;
  // The same character again and again goes from one row to the next.
  const bool repeated = IsRepeated(typed_, character);
  typed_ += character;
  const host::CaselessText wanted(repeated ? character : std::string_view(typed_));
  const auto matches = [&](int row) {
    return !rows.IsTotal(row) && wanted.IsStartOf(model_.DisplayText(row, col));
  };

  const int shown = rows.Outline().ShownCount();
  const int current = OnDataRow() ? rows.ShownBefore(model_.selection.Row()) : -1;
  const int first = std::max(repeated ? current + 1 : current, 0);
  for (int step = 0; step < shown; ++step) {
    const int row = rows.ShownAt((first + step) % shown);
    if (matches(row)) return row;
  }
  for (int row = rows.Fixed(); row < rows.Rows(); ++row) {
    if (!rows.IsShown(row) && matches(row) && CanBeOpened(row)) return row;
  }
  return std::nullopt;
}

/// Whether the row is shown once the nodes above it are open.
bool GridInput::CanBeOpened(int row) const {
  for (int node = row; node >= 0; node = model_.rows.Parent(node)) {
    if (model_.rows.Hidden(node)) return false;
  }
  return true;
}

void GridInput::OpenAbove(int row) {
  for (int node = model_.rows.Parent(row); node >= 0; node = model_.rows.Parent(node)) {
    model_.SetCollapsed(node, false);
  }
  model_.changes.settle = true;
}

}  // namespace tavrix::viewkit
