#include "viewkit/grid/grid_viewport.h"

#include <utility>

namespace tavrix::viewkit {

namespace {
/// Free space above and below a row's text.
constexpr int kRowPadding = 30;
}  // namespace

bool GridViewport::SetMeasure(const TextMeasure* measure) {
  const TextMeasure* plain = &PlainTextMeasure();
  const TextMeasure* before = std::exchange(measure_, measure == nullptr ? plain : measure);
  return before == plain && measure_ != plain;
}

int GridViewport::DefaultHeight() const {
  return measure_->LineHeight() + 2 * kRowPadding;
}

int GridViewport::RowHeight(int row) const {
  const int set = rows_.StoredHeight(row);
  return std::max(set == GridRows::kDefaultHeight ? DefaultHeight() : set, row_height_min_);
}

int GridViewport::BodyHeight() const {
  int height = height_ >= 0 ? height_ : grid_.GetBounds().height;
  for (int fixed = 0; fixed < rows_.Fixed(); ++fixed) {
    if (!rows_.Hidden(fixed)) height -= RowHeight(fixed);
  }
  return height;
}

int GridViewport::BodyWidth() const {
  int width = width_ >= 0 ? width_ : grid_.GetBounds().width;
  for (int col = 0; col < columns_.FirstScrolled(); ++col) width -= columns_.ShownWidth(col);
  return width;
}

int GridViewport::RowsThatFit(int position, int step) const {
  const int shown = rows_.Outline().ShownCount();
  int space = BodyHeight();
  if (rows_.HasDefaultHeights()) {  // asked after every change, so without a look at the rows
    const int rows = step < 0 ? position + 1 : shown - position;
    const int height = std::max({DefaultHeight(), row_height_min_, 1});
    return std::clamp(space / height, 0, std::max(rows, 0));
  }
  int rows = 0;
  for (; position >= 0 && position < shown; position += step) {
    space -= RowHeight(rows_.ShownAt(position));
    if (space < 0) break;
    ++rows;
  }
  return rows;
}

int GridViewport::TopAt(int position) const {
  const int shown = rows_.Outline().ShownCount();
  const int last = shown - std::max(RowsThatFit(shown - 1, -1), 1);
  const int top_position = std::min(position, last);
  return top_position <= 0 ? rows_.Fixed() : rows_.ShownAt(top_position);
}

void GridViewport::ShowRow(int row) {
  if (!rows_.IsData(row) || !rows_.IsShown(row)) return;
  const int position = rows_.ShownBefore(row);
  const int first = rows_.ShownBefore(TopFor(top_));
  const int rows = std::max(RowsThatFit(position, -1), 1);
  if (position < first) {
    top_ = TopFor(row);
  } else if (position - rows >= first) {
    top_ = TopFor(rows_.ShownAt(position - rows + 1));
  }
}

int GridViewport::LeftFor(int col) const {
  const int first = columns_.FirstScrolled();
  int last = columns_.Count();
  int space = BodyWidth();
  for (int before = last - 1; before >= first; --before) {
    const int width = columns_.ShownWidth(before);
    space -= width;
    if (space < 0 && last < columns_.Count()) break;
    if (width > 0) last = before;
    if (space < 0) break;
  }
  int found = std::clamp(col, first, std::max(last, first));
  while (found < last && columns_.ShownWidth(found) == 0) ++found;
  return std::min(found, std::max(columns_.Count() - 1, 0));
}

void GridViewport::ScrollSideways(int step) {
  int next = LeftFor(left_) + step;
  while (next > columns_.FirstScrolled() && next < columns_.Count() &&
         columns_.ShownWidth(next) == 0) {
    next += step;
  }
  left_ = LeftFor(next);
}

void GridViewport::Settle() {
  if (top_ > rows_.Fixed()) top_ = TopFor(top_);
  top_ = std::max(top_, rows_.Fixed());
  left_ = LeftFor(left_);
}

}  // namespace tavrix::viewkit
