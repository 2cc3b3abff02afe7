// What is seen: heights, widths, the top row and the left column.

#include <algorithm>

#include "viewkit/grid/flex_grid_state.h"

namespace tavrix::viewkit {

namespace {
/// Free space above and below a row's text.
constexpr int kRowPadding = 30;
}  // namespace

int FlexGrid::State::DefaultHeight() const {
  return measure->LineHeight() + 2 * kRowPadding;
}

int FlexGrid::State::Height(int any_row) const {
  const int set = heights.Get(static_cast<std::size_t>(any_row));
  return std::max(set == kDefaultHeightMark ? DefaultHeight() : set, row_height_min);
}

int FlexGrid::State::ShownWidth(int any_col) const {
  const Column& column = columns[static_cast<std::size_t>(any_col)];
  return column.hidden ? 0 : column.width;
}

int FlexGrid::State::BodyHeight() const {
  int height = viewport_height >= 0 ? viewport_height : grid.GetBounds().height;
  for (int fixed = 0; fixed < Fixed(); ++fixed) {
    if (!header[static_cast<std::size_t>(fixed)].hidden) height -= Height(fixed);
  }
  return height;
}

int FlexGrid::State::BodyWidth() const {
  int width = viewport_width >= 0 ? viewport_width : grid.GetBounds().width;
  for (int still = 0; still < FirstScrolledCol(); ++still) width -= ShownWidth(still);
  return width;
}

int FlexGrid::State::RowsThatFit(int position, int step) const {
  int space = BodyHeight();
  if (heights.IsBlank()) {  // all alike: asked after every change, so without a look at the rows
    const int rows = step < 0 ? position + 1 : outline.ShownCount() - position;
    const int height = std::max({DefaultHeight(), row_height_min, 1});
    return std::clamp(space / height, 0, std::max(rows, 0));
  }
  int rows = 0;
  for (; position >= 0 && position < outline.ShownCount(); position += step) {
    space -= Height(outline.ShownAt(position) + Fixed());
    if (space < 0) break;
    ++rows;
  }
  return rows;
}

int FlexGrid::State::TopFor(int any_row) const {
  return TopAt(outline.ShownBefore(std::clamp(any_row - Fixed(), 0, DataRows())));
}

int FlexGrid::State::TopAbove(int any_row) const {
  return TopAt(outline.ShownBefore(std::clamp(any_row - Fixed() + 1, 0, DataRows())) - 1);
}

int FlexGrid::State::TopAt(int position) const {
  const int shown = outline.ShownCount();
  const int last = shown - std::max(RowsThatFit(shown - 1, -1), 1);
  const int top_position = std::min(position, last);
  return top_position <= 0 ? Fixed() : outline.ShownAt(top_position) + Fixed();
}

int FlexGrid::State::LeftFor(int any_col) const {
  int last = Cols();
  int space = BodyWidth();
  for (int col_before = last - 1; col_before >= FirstScrolledCol(); --col_before) {
    const int width = ShownWidth(col_before);
    space -= width;
    if (space < 0 && last < Cols()) break;
    if (width > 0) last = col_before;
    if (space < 0) break;
  }
  int found = std::clamp(any_col, FirstScrolledCol(), std::max(last, FirstScrolledCol()));
  while (found < last && ShownWidth(found) == 0) ++found;
  return std::min(found, std::max(Cols() - 1, 0));
}

void FlexGrid::State::ScrollToShow(int any_row) {
  if (!IsData(any_row) || !outline.IsShown(any_row - Fixed())) return;
  const int position = outline.ShownBefore(any_row - Fixed());
  const int first = outline.ShownBefore(std::max(TopFor(top) - Fixed(), 0));
  const int rows = std::max(RowsThatFit(position, -1), 1);
  if (position < first) {
    top = TopFor(any_row);
  } else if (position - rows >= first) {
    top = TopFor(outline.ShownAt(position - rows + 1) + Fixed());
  }
}

int FlexGrid::TopRow() const {
  const State& s = *state_;
  const int top = s.TopFor(s.top);
  if (top > s.Fixed() || s.outline.ShownCount() == 0) return top;
  return RowAtShownPosition(0);
}

void FlexGrid::SetTopRow(int row) {
  if (!state_->SettlePeer()) return;
  const bool up = row < TopRow();
  Update([&](State& s) { s.top = up ? s.TopAbove(row) : s.TopFor(row); });
}

int FlexGrid::LeftCol() const {
  return state_->LeftFor(state_->left);
}

void FlexGrid::SetLeftCol(int col) {
  if (!state_->SettlePeer()) return;
  Update([col](State& s) { s.left = s.LeftFor(col); });
}

void FlexGrid::SettleScroll() {
  Update([](State& s) { s.Settle(); });
}

bool FlexGrid::IsInView(int row) const {
  const State& s = *state_;
  s.CheckRow(row);
  if (row < s.Fixed()) return !RowHidden(row);
  const int position = ShownPosition(row);
  const int first = position < 0 ? 0 : ShownPosition(TopRow());
  return position >= first && position < first + s.RowsThatFit(first, 1);
}

void FlexGrid::ShowRow(int row) {
  state_->CheckRow(row);
  if (!state_->SettlePeer()) return;
  Update([row](State& s) { s.ScrollToShow(row); });
}

void FlexGrid::SetViewport(int width, int height) {
  if (width == state_->viewport_width && height == state_->viewport_height) return;
  Update([&](State& s) {
    s.viewport_width = width;
    s.viewport_height = height;
    s.pending.settle = true;
  });
}

}  // namespace tavrix::viewkit
