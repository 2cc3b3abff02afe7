#include "viewkit/win32/grid_painter.h"

#include <algorithm>

#include "host/utf.h"
#include "viewkit/win32/colors.h"
#include "viewkit/win32/line_text.h"

namespace tavrix::viewkit::win32 {
namespace {

UINT DrawFlags(Alignment alignment, ColumnType type) {
  if (alignment == Alignment::kGeneral) {
    return DT_VCENTER | (IsNumeric(type) ? DT_RIGHT : DT_LEFT);
  }
  constexpr UINT kAcross[] = {DT_LEFT, DT_CENTER, DT_RIGHT};
  constexpr UINT kDown[] = {DT_TOP, DT_VCENTER, DT_BOTTOM};
  const int number = static_cast<int>(alignment);
  return kAcross[number / 3] | kDown[number % 3];
}

COLORREF LineColor() {
  return Blend(GetSysColor(COLOR_GRAYTEXT), GetSysColor(COLOR_WINDOW), 30);
}

COLORREF HeaderColor() {
  return Blend(GetSysColor(COLOR_BTNFACE), GetSysColor(COLOR_WINDOW), 70);
}

bool Meets(const RECT& one, const RECT& other) {
  RECT common{};
  return IntersectRect(&common, &one, &other) != 0;
}

}  // namespace

GridPainter::GridPainter(const FlexGrid& grid, const GridLayout& layout, const FontSet& fonts,
                         SIZE client, bool focused)
    : grid_(grid),
      layout_(layout),
      fonts_(fonts),
      outline_(grid, layout),
      client_(client),
      focused_(focused) {}

void GridPainter::Paint(HDC dc, const RECT& area) const {
  const SavedDc saved(dc);
  SetBkMode(dc, TRANSPARENT);
  for (const Span& row : layout_.Rows()) {
    if (row.end > area.top && row.begin < area.bottom) PaintRow(dc, area, row);
  }
  for (const Span& column : layout_.Columns()) {
    if (grid_.MergeCol(column.index)) PaintMergedColumn(dc, area, column);
  }
  PaintEmptyParts(dc);
  PaintFrozenEdge(dc);
  if (focused_) PaintFocus(dc);
}

void GridPainter::PaintRow(HDC dc, const RECT& area, const Span& row) const {
  for (const Span& column : layout_.Columns()) {
    const RECT cell = layout_.Cell(row, column);
    if (!Meets(cell, area)) continue;
    if (row.index < grid_.FixedRows()) {
      PaintHeaderCell(dc, row, column);
    } else {
      PaintCell(dc, row, column);
    }
  }
  if (grid_.IsTotalRow(row.index)) PaintTotalTexts(dc, row);
}

COLORREF GridPainter::BackOf(int row, int col, bool selected) const {
  if (col < grid_.FixedCols()) return HeaderColor();
  if (selected) return ToColorRef(grid_.GetLook().select_back, color::kHighlight);
  return ToColorRef(grid_.CellBackColor(row, col), grid_.GetLook().back);
}

GridPainter::Text GridPainter::TextOf(const Span& row, const Span& column, bool selected) const {
  const FlexGrid::Look& look = grid_.GetLook();
  RECT place = layout_.Cell(row, column);
  place.left = layout_.TextLeft(place, row.index, column.index);
  place.right -= layout_.Padding();
  const COLORREF wanted = selected
                              ? ToColorRef(look.select_fore, color::kHighlightText)
                              : ToColorRef(grid_.CellForeColor(row.index, column.index), look.fore);
  const COLORREF ink = grid_.Enabled() ? TextOn(BackOf(row.index, column.index, selected), wanted)
                                       : GetSysColor(COLOR_GRAYTEXT);
  const UINT alignment =
      DrawFlags(grid_.ColAlignment(column.index), grid_.ColDataType(column.index));
  return {place, grid_.DisplayText(row.index, column.index), alignment, ink,
          grid_.CellFontBold(row.index, column.index)};
}

void GridPainter::PaintCell(HDC dc, const Span& row, const Span& column) const {
  const RECT cell = layout_.Cell(row, column);
  const bool selected = grid_.IsSelected(row.index);
  Fill(dc, cell, BackOf(row.index, column.index, selected));
  if (layout_.InOutline(row.index, column.index)) outline_.Paint(dc, cell, row.index);
  const bool later = grid_.MergeCol(column.index) || grid_.IsTotalRow(row.index);
  if (!later) PaintText(dc, TextOf(row, column, selected));
  if (!grid_.GetLook().grid_lines) return;
  Fill(dc, {cell.right - 1, cell.top, cell.right, cell.bottom}, LineColor());
  Fill(dc, {cell.left, cell.bottom - 1, cell.right, cell.bottom}, LineColor());
}

/// What a total is of must be readable in a narrow column too: its text runs on over the empty
/// cells beside it.
void GridPainter::PaintTotalTexts(HDC dc, const Span& row) const {
  const bool selected = grid_.IsSelected(row.index);
  const auto& columns = layout_.Columns();
  for (auto column = columns.begin(); column != columns.end();) {
    Text text = TextOf(row, *column, selected);
    const int width = fonts_.Pixels(WideOf(text), text.bold);
    const bool left_aligned = (text.alignment & (DT_CENTER | DT_RIGHT)) == 0;
    const LONG line = grid_.GetLook().grid_lines ? 1 : 0;
    for (++column; column != columns.end() && left_aligned; ++column) {
      const bool fits = text.place.left + width <= text.place.right;
      if (fits || !grid_.TextMatrix(row.index, column->index).empty()) break;
      const RECT border{column->begin - line, row.begin, column->begin, row.end - line};
      Fill(dc, border, BackOf(row.index, column->index, selected));
      text.place.right = column->end - layout_.Padding();
    }
    PaintText(dc, text);
  }
}

void GridPainter::PaintHeaderCell(HDC dc, const Span& row, const Span& column) const {
  const RECT cell = layout_.Cell(row, column);
  const COLORREF line = Blend(GetSysColor(COLOR_BTNSHADOW), HeaderColor(), 60);
  Fill(dc, cell, HeaderColor());
  Fill(dc, {cell.left, cell.bottom - 1, cell.right, cell.bottom}, line);
  const LONG inset = layout_.GetScale().Design(4);
  Fill(dc, {cell.right - 1, cell.top + inset, cell.right, cell.bottom - inset}, line);
  Text text{cell, grid_.DisplayText(row.index, column.index),
            DrawFlags(grid_.FixedAlignment(column.index), ColumnType::kString),
            TextOn(HeaderColor(), GetSysColor(COLOR_BTNTEXT)),
            grid_.CellFontBold(row.index, column.index)};
  InflateRect(&text.place, -layout_.Padding(), 0);
  PaintText(dc, text);
}

GridPainter::SpanIterator GridPainter::EndOfMerged(SpanIterator first, int col) const {
  const auto stands_alone = [&](int row) {
    return grid_.IsTotalRow(row) || layout_.InOutline(row, col);
  };
  const std::string text = grid_.DisplayText(first->index, col);
  const auto after = first + 1;
  if (text.empty() || stands_alone(first->index)) return after;
  return std::find_if(after, layout_.Rows().end(), [&](const Span& row) {
    return stands_alone(row.index) || grid_.DisplayText(row.index, col) != text;
  });
}

/// Equal texts in neighbouring rows stand once, in the middle of these rows as far as they are
/// seen. Such a cell is shown as selected when all of its rows are.
void GridPainter::PaintMergedColumn(HDC dc, const RECT& area, const Span& column) const {
  const auto& rows = layout_.Rows();
  const int line = grid_.GetLook().grid_lines ? 1 : 0;
  auto row = std::find_if(rows.begin(), rows.end(),
                          [this](const Span& span) { return span.index >= grid_.FixedRows(); });
  while (row != rows.end()) {
    const auto end = EndOfMerged(row, column.index);
    const bool selected =
        std::all_of(row, end, [this](const Span& span) { return grid_.IsSelected(span.index); });
    Text text = TextOf(*row, column, selected);
    text.place.bottom = (end - 1)->end;
    if (Meets(text.place, area) && !grid_.IsTotalRow(row->index)) {
      const RECT inner{column.begin, text.place.top, column.end - line, text.place.bottom - line};
      if (end - row > 1) Fill(dc, inner, BackOf(row->index, column.index, selected));
      PaintText(dc, text);
    }
    row = end;
  }
}

void GridPainter::PaintEmptyParts(HDC dc) const {
  const FlexGrid::Look& look = grid_.GetLook();
  const LONG right = layout_.SheetRight();
  const LONG bottom = layout_.SheetBottom();
  const LONG header = layout_.HeaderBottom();
  const COLORREF empty = ToColorRef(look.back_empty, look.back);
  Fill(dc, {right, header, client_.cx, client_.cy}, empty);
  Fill(dc, {0, bottom, std::min(right, client_.cx), client_.cy}, empty);
  // The header band runs on to the edge of the window.
  Fill(dc, {right, 0, client_.cx, header}, HeaderColor());
  Fill(dc, {right, header - 1, client_.cx, header},
       Blend(GetSysColor(COLOR_BTNSHADOW), HeaderColor(), 60));
  if (look.sheet_border == look.back_empty) return;
  const COLORREF border = ToColorRef(look.sheet_border);
  if (layout_.HasLastColumn()) Fill(dc, {right - 1, header, right, bottom}, border);
  if (layout_.HasLastRow()) Fill(dc, {0, bottom - 1, right, bottom}, border);
}

void GridPainter::PaintFrozenEdge(HDC dc) const {
  if (grid_.FrozenCols() == 0) return;
  const LONG x = layout_.FixedRight();
  const COLORREF edge = Blend(GetSysColor(COLOR_GRAYTEXT), GetSysColor(COLOR_WINDOW), 85);
  Fill(dc, {x - 1, 0, x, layout_.SheetBottom()}, edge);
}

void GridPainter::PaintFocus(HDC dc) const {
  const Span* row = layout_.RowOf(grid_.Row());
  if (row == nullptr || row->index < grid_.FixedRows()) return;
  const RECT place{0, row->begin, layout_.SheetRight(), row->end};
  SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
  SetBkColor(dc, GetSysColor(COLOR_WINDOW));
  DrawFocusRect(dc, &place);
}

void GridPainter::PaintText(HDC dc, const Text& text) const {
  if (text.content.empty() || text.place.right <= text.place.left) return;
  const Selected font(dc, fonts_.Get(text.bold));
  SetTextColor(dc, text.color);
  DrawLine(dc, WideOf(text), text.place, text.alignment);
}

std::wstring& GridPainter::WideOf(const Text& text) const {
  wide_.clear();
  host::AppendWide(wide_, text.content);
  return wide_;
}

}  // namespace tavrix::viewkit::win32
