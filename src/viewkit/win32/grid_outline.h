#pragma once

#include <windows.h>

#include <vector>

#include "viewkit/win32/grid_layout.h"

namespace tavrix::viewkit::win32 {

/// The tree beside the texts of the outline column: lines, +/- boxes and leaf marks.
class GridOutline {
 public:
  /// Looks at the seen rows and at the ends of the nodes that hold them. What it paints into a row
  /// does not depend on which other rows are seen.
  GridOutline(const FlexGrid& grid, const GridLayout& layout);

  /// Paints the tree of one row into its cell of the outline column.
  void Paint(HDC dc, const RECT& cell, int row) const;

 private:
  struct Branch {
    int row = -1;
    bool above = false;         ///< a line comes from the row above
    bool total = false;         ///< no part of the tree
    std::vector<bool> goes_on;  ///< by level: a later node of this level hangs on the same line
  };
  /// The lines beside a row, but for its own: those of the nodes that hold it.
  [[nodiscard]] std::vector<bool> LinesAround(int row) const;
  [[nodiscard]] bool LineGoesOn(int node) const;
  void PaintLines(HDC dc, const RECT& cell, const Branch& branch, COLORREF color) const;
  void PaintBox(HDC dc, const RECT& place, bool collapsed, COLORREF color) const;
  void PaintLeaf(HDC dc, const RECT& place, COLORREF color) const;

  const FlexGrid& grid_;
  const GridLayout& layout_;
  std::vector<Branch> branches_;
};

}  // namespace tavrix::viewkit::win32
