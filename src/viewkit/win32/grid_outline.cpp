#include "viewkit/win32/grid_outline.h"

#include <algorithm>

#include "viewkit/win32/colors.h"
#include "viewkit/win32/handles.h"

namespace tavrix::viewkit::win32 {
namespace {

constexpr int kBox = 9;
constexpr int kLeaf = 3;

/// Of an odd size around the middle of `place`, so that the cross in it is even on both sides.
RECT Centered(const RECT& place, int size) {
  const LONG half = size / 2;
  const LONG x = (place.left + place.right) / 2;
  const LONG y = (place.top + place.bottom) / 2;
  return {x - half, y - half, x + half + 1, y + half + 1};
}

/// Whether a line of this level goes on. A row on it ends the lines of all deeper levels.
void Set(std::vector<bool>& levels, int level, bool value) {
  const auto place = static_cast<std::size_t>(level);
  levels.resize(place + 1, false);
  levels[place] = value;
}

bool Has(const std::vector<bool>& levels, int level) {
  const auto place = static_cast<std::size_t>(level);
  return place < levels.size() && levels[place];
}

}  // namespace

GridOutline::GridOutline(const FlexGrid& grid, const GridLayout& layout)
    : grid_(grid), layout_(layout) {
  std::vector<bool> lines;
  for (const Span& row : layout.Rows()) {
    if (row.index < grid.FixedRows() || !grid.IsNode(row.index)) continue;
    if (branches_.empty()) lines = LinesAround(row.index);
    Set(lines, layout.Level(row.index), LineGoesOn(row.index));
    // A row of totals has no line of its own; those of the nodes around it go on through it.
    const bool total = grid.IsTotalRow(row.index) && !grid.HasRowsBelow(row.index);
    branches_.push_back({row.index, grid.PreviousShownRow(row.index) >= 0, total, lines});
  }
}

std::vector<bool> GridOutline::LinesAround(int row) const {
  std::vector<int> nodes;
  while (layout_.Level(row) > 0 && (row = grid_.ParentRow(row)) >= 0) nodes.push_back(row);
  std::vector<bool> lines;
  for (auto node = nodes.rbegin(); node != nodes.rend(); ++node) {
    // No line begins at a hidden row.
    Set(lines, layout_.Level(*node), grid_.IsShown(*node) && LineGoesOn(*node));
  }
  return lines;
}

bool GridOutline::LineGoesOn(int node) const {
  int next = grid_.NextShownRow(grid_.LastRowOfNode(node));
  while (next >= 0 && grid_.IsTotalRow(next)) next = grid_.NextShownRow(next);
  return next >= 0 && grid_.IsNode(next) && layout_.Level(next) == layout_.Level(node);
}

void GridOutline::Paint(HDC dc, const RECT& cell, int row) const {
  const auto branch = std::find_if(branches_.begin(), branches_.end(),
                                   [row](const Branch& other) { return other.row == row; });
  if (branch == branches_.end()) return;
  const COLORREF line = Blend(GetSysColor(COLOR_GRAYTEXT), GetSysColor(COLOR_WINDOW), 60);
  const SavedDc saved(dc);
  IntersectClipRect(dc, cell.left, cell.top, cell.right, cell.bottom);
  PaintLines(dc, cell, *branch, line);
  if (branch->total) return;
  const RECT place = layout_.SymbolPlace(cell, layout_.Level(row));
  if (layout_.HasSymbol(row)) {
    PaintBox(dc, place, grid_.IsCollapsed(row), line);
  } else {
    PaintLeaf(dc, place, line);
  }
}

void GridOutline::PaintLines(HDC dc, const RECT& cell, const Branch& branch, COLORREF color) const {
  const int own = layout_.Level(branch.row);
  for (int level = 0; level <= own; ++level) {
    const bool below = Has(branch.goes_on, level);
    if (!below && (level < own || branch.total)) continue;
    const RECT middle = Centered(layout_.SymbolPlace(cell, level), 1);
    const LONG top = level == own && !branch.above ? middle.top : cell.top;
    const LONG bottom = below ? cell.bottom : middle.bottom;
    Fill(dc, {middle.left, top, middle.right, bottom}, color);
  }
  if (branch.total) return;
  const RECT place = layout_.SymbolPlace(cell, own);
  const RECT middle = Centered(place, 1);
  Fill(dc, {middle.left, middle.top, place.right, middle.bottom}, color);
}

void GridOutline::PaintBox(HDC dc, const RECT& place, bool collapsed, COLORREF color) const {
  const RECT box = Centered(place, layout_.GetScale().Design(kBox) | 1);
  Fill(dc, box, Blend(GetSysColor(COLOR_WINDOWTEXT), color, 25));
  RECT inside = box;
  InflateRect(&inside, -1, -1);
  Fill(dc, inside, GetSysColor(COLOR_WINDOW));
  const COLORREF sign = GetSysColor(COLOR_WINDOWTEXT);
  const RECT middle = Centered(place, 1);
  const LONG gap = std::max(2, layout_.GetScale().Design(2));
  Fill(dc, {box.left + gap, middle.top, box.right - gap, middle.bottom}, sign);
  if (collapsed) Fill(dc, {middle.left, box.top + gap, middle.right, box.bottom - gap}, sign);
}

void GridOutline::PaintLeaf(HDC dc, const RECT& place, COLORREF color) const {
  const int size = layout_.GetScale().Design(kLeaf) | 1;
  RECT mark = Centered(place, size);
  OffsetRect(&mark, place.right - mark.right, 0);
  Fill(dc, mark, color);
}

}  // namespace tavrix::viewkit::win32
