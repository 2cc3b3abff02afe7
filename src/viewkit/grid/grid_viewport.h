#pragma once

#include <algorithm>

#include "viewkit/control.h"
#include "viewkit/grid/grid_columns.h"
#include "viewkit/grid/grid_rows.h"
#include "viewkit/grid/row_place.h"
#include "viewkit/ports.h"

namespace tavrix::viewkit {

/// What of a grid is seen: heights, widths, the top row and the left column. Lengths are twips.
class GridViewport {
 public:
  /// `grid` gives its bounds, which count until a size is set.
  GridViewport(const Control& grid, const GridRows& rows, const GridColumns& columns)
      : grid_(grid), rows_(rows), columns_(columns) {}

  [[nodiscard]] const TextMeasure& Measure() const { return *measure_; }
  /// Null for the plain measure. True when it is the first font that the grid gets.
  bool SetMeasure(const TextMeasure* measure);
  [[nodiscard]] int RowHeightMin() const { return row_height_min_; }
  void SetRowHeightMin(int height) { row_height_min_ = height; }
  [[nodiscard]] int RowHeight(int row) const;

  [[nodiscard]] bool HasSize(int width, int height) const {
    return width == width_ && height == height_;
  }
  void SetSize(int width, int height) {
    width_ = width;
    height_ = height;
  }

  // --- rows
  /// As set last; what is seen is `TopFor` of it. The first data row means: not scrolled.
  [[nodiscard]] int Top() const { return top_; }
  void SetTop(int row) { top_ = row; }
  /// The nearest shown row at or below `row` that can be the top row; `Fixed` for the first one and
  /// when there is none.
  [[nodiscard]] int TopFor(int row) const { return TopAt(rows_.ShownBefore(row)); }
  /// As `TopFor`, for a row above: the nearest shown row at or above it.
  [[nodiscard]] int TopAbove(int row) const { return TopAt(rows_.ShownBefore(row + 1) - 1); }
  /// Shown rows from `position` on, stepwise by 1 or -1, that fit below the header.
  [[nodiscard]] int RowsThatFit(int position, int step) const;
  /// Scrolls as little as is needed; not for a row that is not shown.
  void ShowRow(int row);

  // --- columns
  /// As set last; what is seen is `LeftFor` of it.
  [[nodiscard]] int Left() const { return left_; }
  void SetLeft(int col) { left_ = col; }
  [[nodiscard]] int LeftFor(int col) const;
  /// One column that has a width to the right (1) or to the left (-1).
  void ScrollSideways(int step);
  /// Changes which columns scroll. Those that scroll again shall not begin out of sight.
  template <class Body>
  void ChangeScrolledCols(const Body& body) {
    const bool scrolled = left_ > columns_.FirstScrolled();
    body();
    if (!scrolled) left_ = 0;
  }

  /// To where both can be now: what is scrolled may have got shorter.
  void Settle();
  /// `where` gives the `RowPlace` of a row.
  template <class Where>
  void Follow(const Where& where) {
    if (top_ > rows_.Fixed()) top_ = where(top_).row;
  }
  /// Not scrolled down.
  void ForgetRows() { top_ = rows_.Fixed(); }

 private:
  [[nodiscard]] int DefaultHeight() const;
  /// Height and width of the part that scrolls.
  [[nodiscard]] int BodyHeight() const;
  [[nodiscard]] int BodyWidth() const;
  [[nodiscard]] int TopAt(int position) const;

  const Control& grid_;
  const GridRows& rows_;
  const GridColumns& columns_;
  const TextMeasure* measure_ = &PlainTextMeasure();
  int row_height_min_ = 0;
  int top_ = 1;
  int left_ = 0;
  int width_ = -1;  // -1: not set
  int height_ = -1;
};

}  // namespace tavrix::viewkit
