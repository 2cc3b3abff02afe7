#include "viewkit/win32/grid_layout.h"

#include <algorithm>
#include <cstdlib>

#include "viewkit/grid/grid_metrics.h"

namespace tavrix::viewkit::win32 {
namespace {

constexpr int kDeepest = 100;
constexpr int kGrip = 4;  // pixels at 96 dpi on either side of a border

const Span* Find(const std::vector<Span>& spans, int index) {
  const auto found = std::find_if(spans.begin(), spans.end(),
                                  [index](const Span& span) { return span.index == index; });
  return found == spans.end() ? nullptr : &*found;
}

const Span* At(const std::vector<Span>& spans, int pixel) {
  const auto found = std::find_if(spans.begin(), spans.end(), [pixel](const Span& span) {
    return span.begin <= pixel && pixel < span.end;
  });
  return found == spans.end() ? nullptr : &*found;
}

/// The span that ends at about `pixel`; the last of several.
const Span* EndingAt(const std::vector<Span>& spans, int pixel, int grip) {
  const auto found = std::find_if(spans.rbegin(), spans.rend(), [&](const Span& span) {
    return std::abs(span.end - pixel) <= grip;
  });
  return found == spans.rend() ? nullptr : &*found;
}

}  // namespace

int RowPixels(const FlexGrid& grid, Scale scale, int row) {
  return grid.RowHeight(row) * scale.dpi / kTwipsPerInch;
}

GridLayout::GridLayout(const FlexGrid& grid, Scale scale, SIZE client)
    : grid_(grid), scale_(scale) {
  PlaceRows(static_cast<int>(client.cy));
  PlaceColumns(static_cast<int>(client.cx));
}

void GridLayout::PlaceRows(int height) {
  int y = 0;
  const auto place = [&](int row) {
    const int end = y + RowPixels(grid_, scale_, row);
    rows_.push_back({row, y, end});
    y = end;
  };
  for (int row = 0; row < grid_.FixedRows(); ++row) {
    if (!grid_.RowHidden(row)) place(row);
  }
  header_bottom_ = y;
  if (grid_.ShownRows() == 0) return;
  for (int row = grid_.TopRow(); row >= 0 && y < height; row = grid_.NextShownRow(row)) {
    if (grid_.IsShown(row)) place(row);
  }
}

void GridLayout::PlaceColumns(int width) {
  int x = 0;
  const auto place = [&](int col) {
    // A column without width is hidden too: its border would be its neighbour's.
    if (grid_.ColHidden(col) || grid_.ColWidth(col) == 0) return;
    const int end = x + scale_.ToPixels(grid_.ColWidth(col));
    columns_.push_back({col, x, end});
    x = end;
  };
  const int still = std::min(grid_.FixedCols() + grid_.FrozenCols(), grid_.Cols());
  for (int col = 0; col < still; ++col) place(col);
  fixed_right_ = x;
  for (int col = std::max(grid_.LeftCol(), still); col < grid_.Cols() && x < width; ++col) {
    place(col);
  }
}

bool GridLayout::HasLastRow() const {
  return !rows_.empty() && grid_.NextShownRow(rows_.back().index) < 0;
}

bool GridLayout::HasLastColumn() const {
  if (columns_.empty()) return false;
  int next = columns_.back().index + 1;
  while (next < grid_.Cols() && (grid_.ColHidden(next) || grid_.ColWidth(next) == 0)) ++next;
  return next == grid_.Cols();
}

const Span* GridLayout::RowOf(int row) const {
  return Find(rows_, row);
}

const Span* GridLayout::ColumnOf(int col) const {
  return Find(columns_, col);
}

RECT GridLayout::Cell(const Span& row, const Span& column) const {
  return {column.begin, row.begin, column.end, row.end};
}

Hit GridLayout::BorderAt(POINT point) const {
  const int x = static_cast<int>(point.x);
  const int y = static_cast<int>(point.y);
  const int grip = scale_.Design(kGrip);
  if (y < header_bottom_ && grid_.GetLook().resize_columns) {
    if (const Span* column = EndingAt(columns_, x, grip)) {
      return {HitPart::kColumnBorder, -1, column->index};
    }
  }
  // Rows are sized where nothing can be selected: in fixed columns, and the header itself.
  const Span* row = EndingAt(rows_, y, grip / 2);
  const Span* column = At(columns_, x);
  if (!grid_.GetLook().resize_rows || row == nullptr || column == nullptr) return {};
  if (column->index < grid_.FixedCols() || row->index < grid_.FixedRows()) {
    return {HitPart::kRowBorder, row->index, -1};
  }
  return {};
}

Hit GridLayout::HitTest(POINT point) const {
  if (const Hit border = BorderAt(point); border.part != HitPart::kNothing) return border;
  const Span* row = At(rows_, static_cast<int>(point.y));
  const Span* column = At(columns_, static_cast<int>(point.x));
  if (row == nullptr) return {};
  const int col = column == nullptr ? -1 : column->index;
  if (row->index < grid_.FixedRows()) return {HitPart::kHeader, row->index, col};
  // Right of the last column a row can still be picked.
  if (column == nullptr) return {HitPart::kCell, row->index, -1};
  if (InOutline(row->index, col) && HasSymbol(row->index)) {
    const RECT place = SymbolPlace(Cell(*row, *column), Level(row->index));
    if (PtInRect(&place, point)) return {HitPart::kSymbol, row->index, col};
  }
  return {HitPart::kCell, row->index, col};
}

bool GridLayout::HasSymbol(int row) const {
  return grid_.HasRowsBelow(row);
}

bool GridLayout::InOutline(int row, int col) const {
  return grid_.GetLook().outline_bar != 0 && col == grid_.OutlineCol() && grid_.IsNode(row);
}

RECT GridLayout::SymbolPlace(const RECT& cell, int level) const {
  const LONG left = cell.left + level * Indent();
  return {left, cell.top, left + Indent(), cell.bottom};
}

int GridLayout::TextLeft(const RECT& cell, int row, int col) const {
  const int left = static_cast<int>(cell.left) + Padding();
  return InOutline(row, col) ? left + (Level(row) + 1) * Indent() : left;
}

int GridLayout::Level(int row) const {
  return std::min(grid_.RowOutlineLevel(row), kDeepest);
}

int GridLayout::Padding() const {
  return scale_.ToPixels(grid_metrics::kCellPadding);
}

int GridLayout::Indent() const {
  return scale_.ToPixels(grid_metrics::kOutlineIndent);
}

}  // namespace tavrix::viewkit::win32
