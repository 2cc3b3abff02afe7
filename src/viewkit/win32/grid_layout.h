#pragma once

#include <windows.h>

#include <vector>

#include "viewkit/grid/flex_grid.h"
#include "viewkit/win32/scale.h"

namespace tavrix::viewkit::win32 {

/// A row or a column as it is seen: its index and the pixels from `begin` up to `end`.
struct Span {
  int index = -1;
  int begin = 0;
  int end = 0;
};

enum class HitPart { kNothing, kHeader, kColumnBorder, kRowBorder, kSymbol, kCell };

/// What lies under a point. On a border, `row` or `col` is the one before it.
struct Hit {
  HitPart part = HitPart::kNothing;
  int row = -1;
  int col = -1;
  friend bool operator==(const Hit&, const Hit&) = default;
};

/// Where the rows and columns that are seen lie, in pixels of the grid window. Made anew for each
/// use: its cost depends on the window's size, not on the number of rows.
class GridLayout {
 public:
  GridLayout(const FlexGrid& grid, Scale scale, SIZE client);

  /// Fixed rows, then data rows from the top row on; the last one may be cut off by the window.
  [[nodiscard]] const std::vector<Span>& Rows() const { return rows_; }
  /// Fixed and frozen columns, then the others from the left column on.
  [[nodiscard]] const std::vector<Span>& Columns() const { return columns_; }
  [[nodiscard]] int HeaderBottom() const { return header_bottom_; }
  /// Right edge of the columns that do not scroll.
  [[nodiscard]] int FixedRight() const { return fixed_right_; }
  [[nodiscard]] int SheetRight() const { return columns_.empty() ? 0 : columns_.back().end; }
  [[nodiscard]] int SheetBottom() const { return rows_.empty() ? 0 : rows_.back().end; }
  /// Nothing goes on below, or to the right of, what is seen: there the sheet has its edges.
  [[nodiscard]] bool HasLastRow() const;
  [[nodiscard]] bool HasLastColumn() const;

  [[nodiscard]] const Span* RowOf(int row) const;
  [[nodiscard]] const Span* ColumnOf(int col) const;
  [[nodiscard]] RECT Cell(const Span& row, const Span& column) const;
  [[nodiscard]] Hit HitTest(POINT point) const;

  /// The row has a +/- box: it is a node and something hangs below it.
  [[nodiscard]] bool HasSymbol(int row) const;
  /// The square, one indent wide, that holds the symbol of an outline row of this level.
  [[nodiscard]] RECT SymbolPlace(const RECT& cell, int level) const;
  /// Left edge of a cell's text, the outline's indent included.
  [[nodiscard]] int TextLeft(const RECT& cell, int row, int col) const;
  [[nodiscard]] int Padding() const;
  [[nodiscard]] int Indent() const;
  /// Outline level of a node as far as it is drawn: bounded, levels may come from bad data.
  [[nodiscard]] int Level(int row) const;
  /// The column carries the outline and the row is a node of it.
  [[nodiscard]] bool InOutline(int row, int col) const;
  [[nodiscard]] const Scale& GetScale() const { return scale_; }

 private:
  void PlaceRows(int height);
  void PlaceColumns(int width);
  [[nodiscard]] Hit BorderAt(POINT point) const;

  const FlexGrid& grid_;
  Scale scale_;
  std::vector<Span> rows_;
  std::vector<Span> columns_;
  int header_bottom_ = 0;
  int fixed_right_ = 0;
};

/// Height of a row in pixels, never above what the model reckons with: a row that is in view for
/// the model is so on the screen.
[[nodiscard]] int RowPixels(const FlexGrid& grid, Scale scale, int row);

}  // namespace tavrix::viewkit::win32
