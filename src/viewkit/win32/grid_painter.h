#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "viewkit/grid/flex_grid.h"
#include "viewkit/win32/fonts.h"
#include "viewkit/win32/grid_layout.h"
#include "viewkit/win32/grid_outline.h"

namespace tavrix::viewkit::win32 {

/// Paints what of a grid is seen inside an area. Lives for one painting.
class GridPainter {
 public:
  GridPainter(const FlexGrid& grid, const GridLayout& layout, const FontSet& fonts, SIZE client,
              bool focused);

  void Paint(HDC dc, const RECT& area) const;

 private:
  struct Text {
    RECT place{};
    std::string content;
    UINT alignment = 0;  ///< flags of DrawText
    COLORREF color = 0;
    bool bold = false;
  };
  void PaintRow(HDC dc, const RECT& area, const Span& row) const;
  void PaintCell(HDC dc, const Span& row, const Span& column) const;
  void PaintTotalTexts(HDC dc, const Span& row) const;
  void PaintHeaderCell(HDC dc, const Span& row, const Span& column) const;
  void PaintMergedColumn(HDC dc, const RECT& area, const Span& column) const;
  void PaintEmptyParts(HDC dc) const;
  void PaintFrozenEdge(HDC dc) const;
  void PaintFocus(HDC dc) const;
  void PaintText(HDC dc, const Text& text) const;
  /// Its content, until the next call.
  [[nodiscard]] std::wstring& WideOf(const Text& text) const;
  [[nodiscard]] Text TextOf(const Span& row, const Span& column, bool selected) const;
  [[nodiscard]] COLORREF BackOf(int row, int col, bool selected) const;
  /// The row after the last one whose cell is one with that of `first`.
  using SpanIterator = std::vector<Span>::const_iterator;
  [[nodiscard]] SpanIterator EndOfMerged(SpanIterator first, int col) const;

  const FlexGrid& grid_;
  const GridLayout& layout_;
  const FontSet& fonts_;
  GridOutline outline_;
  SIZE client_;
  bool focused_;
  mutable std::wstring wide_;  // used again: a cell takes no memory
};

}  // namespace tavrix::viewkit::win32
