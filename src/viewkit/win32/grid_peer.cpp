#include "viewkit/win32/grid_peer.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "host/flag_scope.h"
#include "host/utf.h"
#include "viewkit/indexing.h"
#include "viewkit/win32/accessibility.h"
#include "viewkit/win32/grid_painter.h"

namespace tavrix::viewkit::win32 {
namespace {

constexpr int kPasses = 3;  // a bar that appears can make the other one necessary

}  // namespace

void GridPeer::Open() {
  const std::wstring name = host::Wide(Model().AccessibleName());
  Create(ClassNamed(L"TavrixGrid", CS_DBLCLKS), {.text = name.c_str(),
                                                 .style = StateStyle(),
                                                 .place = PlaceOfModel(),
                                                 .parent = Context().window});
  Listen();
  tip_.emplace(Hwnd());
  OnFontChanged();
}

void GridPeer::OnDestroyed() {
  tip_.reset();
  Model().AfterCollapse.Remove(collapse_listener_);
  Model().SetTextMeasure(&PlainTextMeasure());
  ControlPeer::OnDestroyed();
}

void GridPeer::OnFontChanged() {
  Model().SetTextMeasure(Context().fonts.get());
  ApplyBounds();
  if (Alive()) Arrange();
  if (Alive()) InvalidateRect(Hwnd(), nullptr, FALSE);
}

void GridPeer::ApplyBounds() {
  ControlPeer::ApplyBounds();
  if (tip_) tip_->Set({}, {});
}

SIZE GridPeer::ClientSize() const {
  RECT client{};
  GetClientRect(Hwnd(), &client);
  return {client.right, client.bottom};
}

GridLayout GridPeer::Layout() const {
  return {Model(), Context().scale, ClientSize()};
}

void GridPeer::Paint(HDC dc, const RECT& area) {
  const GridLayout layout = Layout();
  GridPainter(Model(), layout, *Context().fonts, ClientSize(), Model().Focused()).Paint(dc, area);
}

void GridPeer::OnPaint() {
  Settle();
  if (!Alive()) return;
  const PaintScope paint(Hwnd());
  if (IsRectEmpty(&paint.Area())) return;
  Context().buffer.Paint(paint.Dc(), paint.Area(), [&](HDC dc) { Paint(dc, paint.Area()); });
}

void GridPeer::Arrange() {
  if (arranging_) return;
  const host::FlagScope arranging(arranging_);
  for (int pass = 0; pass < kPasses && Alive(); ++pass) {
    const SIZE before = ClientSize();
    const Scale& scale = Context().scale;
    Model().SetViewport(scale.ToTwips(static_cast<int>(before.cx)),
                        scale.ToTwips(static_cast<int>(before.cy)));
    SetBars();
    const SIZE after = ClientSize();
    if (before.cx == after.cx && before.cy == after.cy) break;
  }
}

void GridPeer::SetBars() {
  SetBar(SB_VERT, Model().ShownRows(), RowsOnLastPage(), TopPosition());
  const std::vector<int> columns = ScrolledColumns();
  const auto left = std::lower_bound(columns.begin(), columns.end(), Model().LeftCol());
  SetBar(SB_HORZ, CountOf(columns), ColumnsOnLastPage(columns),
         static_cast<int>(left - columns.begin()));
  shown_top_ = Model().TopRow();
  shown_left_ = Model().LeftCol();
}

int GridPeer::TopPosition() const {
  // Without rows there is no top row to ask for.
  return Model().ShownRows() == 0 ? 0 : std::max(0, Model().ShownPosition(Model().TopRow()));
}

void GridPeer::SetBar(int bar, int count, int page, int position) {
  SCROLLINFO info{};
  info.cbSize = sizeof info;
  info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
  info.nMax = std::max(0, count - 1);
  info.nPage = static_cast<UINT>(page);
  info.nPos = position;
  SetScrollInfo(Hwnd(), bar, &info, TRUE);
}

int GridPeer::RowsOnLastPage() const {
  int space = static_cast<int>(ClientSize().cy) - Layout().HeaderBottom();
  int rows = 0;
  for (int position = Model().ShownRows() - 1; position >= 0; --position) {
    space -= RowPixels(Model(), Context().scale, Model().RowAtShownPosition(position));
    if (space < 0) break;
    ++rows;
  }
  return std::max(1, rows);
}

bool GridPeer::Seen(int col) const {
  return !Model().ColHidden(col) && Model().ColWidth(col) > 0;
}

/// A column without width is passed over: it can never be the leftmost one that is seen.
std::vector<int> GridPeer::ScrolledColumns() const {
  std::vector<int> columns;
  for (int col = Model().FixedCols() + Model().FrozenCols(); col < Model().Cols(); ++col) {
    if (Seen(col)) columns.push_back(col);
  }
  return columns;
}

int GridPeer::ColumnsOnLastPage(const std::vector<int>& columns) const {
  int space = static_cast<int>(ClientSize().cx) - Layout().FixedRight();
  int shown = 0;
  for (auto col = columns.rbegin(); col != columns.rend(); ++col, ++shown) {
    space -= Context().scale.ToPixels(Model().ColWidth(*col));
    if (space < 0) break;
  }
  return std::max(1, shown);
}

/// A host may hide thousands of rows one by one: they are arranged once, when they are painted or
/// when the model must know what is seen.
void GridPeer::Settle() {
  if (!unsettled_) return;
  unsettled_ = false;
  Arrange();
  if (Alive()) marks_ = RowMarks();
  if (Alive()) Model().SettleScroll();
  if (Alive()) RaiseAccessibleEvent(Hwnd(), EVENT_OBJECT_REORDER, {});
}

void GridPeer::OnContent(const Change& change) {
  if (change.kind == Change::Kind::kContent || change.kind == Change::Kind::kColumns) {
    if (!std::exchange(unsettled_, true)) InvalidateRect(Hwnd(), nullptr, FALSE);
    return;
  }
  if (unsettled_) {
    if (change.kind == Change::Kind::kSelection) Announce();
    return;
  }
  // What the screen shows must be where the model says before single rows are repainted.
  FollowScroll();
  if (change.kind == Change::Kind::kRows) InvalidateRows(change.first, change.last);
  InvalidateSelection();
  if (change.kind == Change::Kind::kSelection) Announce();
}

/// Moves the picture as far as the top row has moved, and repaints what comes in. `marks_` still
/// say what the rows that have moved look like.
void GridPeer::FollowScroll() {
  const int top = Model().TopRow();
  if (top == shown_top_ && Model().LeftCol() == shown_left_) return;
  const bool vertical = Model().LeftCol() == shown_left_;
  const int old_top = shown_top_;
  Arrange();
  const SIZE client = ClientSize();
  const RECT body{0, Layout().HeaderBottom(), client.cx, client.cy};
  const int height = static_cast<int>(body.bottom - body.top);
  const int shift = !vertical || height <= 0
                        ? height
                        : PixelsBetween(std::min(top, old_top), std::max(top, old_top), height);
  if (shift >= height || HasMergedColumns())
    return static_cast<void>(InvalidateRect(Hwnd(), nullptr, FALSE));
  ScrollWindowEx(Hwnd(), 0, top > old_top ? -shift : shift, &body, &body, nullptr, nullptr,
                 SW_INVALIDATE);
}

int GridPeer::PixelsBetween(int upper, int lower, int limit) const {
  // The old top row may have gone from the grid or from view; then nothing fits together.
  if (upper < Model().FixedRows() || lower >= Model().Rows() || !Model().IsShown(upper))
    return limit;
  int pixels = 0;
  for (int row = upper; row >= 0 && row < lower && pixels < limit;) {
    pixels += RowPixels(Model(), Context().scale, row);
    row = Model().NextShownRow(row);
  }
  return pixels;
}

/// The text of a merged cell stands in the middle of what is seen of it: it moves by itself.
bool GridPeer::HasMergedColumns() const {
  const GridLayout layout = Layout();
  return std::any_of(layout.Columns().begin(), layout.Columns().end(),
                     [this](const Span& column) { return Model().MergeCol(column.index); });
}

void GridPeer::InvalidateRows(int first, int last) {
  if (HasMergedColumns()) return static_cast<void>(InvalidateRect(Hwnd(), nullptr, FALSE));
  const GridLayout layout = Layout();
  for (const Span& row : layout.Rows()) {
    if (row.index < first || row.index > last) continue;
    const RECT place{0, row.begin, ClientSize().cx, row.end};
    InvalidateRect(Hwnd(), &place, FALSE);
  }
}

std::vector<GridPeer::RowMark> GridPeer::RowMarks() const {
  std::vector<RowMark> marks;
  const GridLayout layout = Layout();
  for (const Span& row : layout.Rows()) {
    if (row.index < Model().FixedRows()) continue;
    marks.push_back({row.index, Model().IsSelected(row.index), row.index == Model().Row()});
  }
  return marks;
}

void GridPeer::InvalidateSelection() {
  std::vector<RowMark> now = RowMarks();
  if (now == marks_) return;
  std::vector<RowMark> changed;
  std::set_symmetric_difference(marks_.begin(), marks_.end(), now.begin(), now.end(),
                                std::back_inserter(changed));
  for (const RowMark& mark : changed) InvalidateRows(mark.row, mark.row);
  marks_ = std::move(now);
}

LRESULT GridPeer::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT:
      OnPaint();
      return 0;
    case WM_PRINTCLIENT: {
      const SIZE client = ClientSize();
      Paint(reinterpret_cast<HDC>(wparam), {0, 0, client.cx, client.cy});
      return 0;
    }
    case WM_SIZE:
      Arrange();
      if (Alive()) InvalidateRect(Hwnd(), nullptr, FALSE);
      return 0;
    case WM_SYSCOLORCHANGE:
      InvalidateRect(Hwnd(), nullptr, FALSE);
      return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS: {
      const LRESULT result = ControlPeer::OnMessage(message, wparam, lparam);
      if (Alive()) InvalidateRows(Model().Row(), Model().Row());
      if (Alive() && message == WM_SETFOCUS) AnnounceFocus();
      return result;
    }
    default:
      return OnInput(message, wparam, lparam);
  }
}

}  // namespace tavrix::viewkit::win32
