// The mouse on a grid's window: translated here, decided on by the model.

#include <windowsx.h>

#include <algorithm>
#include <utility>

#include "host/utf.h"
#include "viewkit/win32/grid_peer.h"

namespace tavrix::viewkit::win32 {
namespace {

constexpr UINT_PTR kDragTimer = 1;
constexpr UINT kDragInterval = 50;   // milliseconds between two rows while dragging outside
constexpr int kNarrowestColumn = 8;  // pixels at 96 dpi

POINT PointOf(LPARAM lparam) {
  return {GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)};
}

}  // namespace

LRESULT GridPeer::OnMouse(UINT message, WPARAM wparam, LPARAM lparam) {
  // The tip must know the place under the pointer before it hears that the pointer is there.
  if (message == WM_MOUSEMOVE) OnMouseMove(PointOf(lparam));
  if (tip_) tip_->Relay(message, wparam, lparam);
  switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      OnButtonDown(PointOf(lparam), message == WM_LBUTTONDBLCLK);
      return 0;
    case WM_RBUTTONDOWN:
      OnRightDown(PointOf(lparam));
      return 0;
    case WM_MOUSEMOVE:
      return 0;
    case WM_LBUTTONUP:
    case WM_CAPTURECHANGED:
      OnButtonUp();
      return 0;
    case WM_TIMER:
      if (hold_ == Hold::kSelecting) Drag(last_point_);
      return 0;
    case WM_SETCURSOR:
      if (LOWORD(lparam) == HTCLIENT && OnSetCursor()) return TRUE;
      break;
    default:
      break;
  }
  return ControlPeer::OnMessage(message, wparam, lparam);
}

void GridPeer::OnButtonDown(POINT point, bool double_click) {
  TakeFocus();
  if (!Alive()) return;
  tip_->Set({}, {});
  last_point_ = point;
  const Hit hit = Layout().HitTest(point);
  switch (hit.part) {
    case HitPart::kColumnBorder:
      if (!double_click) return BeginHold(Hold::kColumn, hit.col);
      Model().AutoSize(hit.col);
      return Model().AfterUserResize.Raise(hit.col);
    case HitPart::kRowBorder:
      return BeginHold(Hold::kRow, hit.row);
    case HitPart::kSymbol:
    case HitPart::kCell:
      return OnPressed(hit, double_click);
    default:
      return;
  }
}

void GridPeer::OnPressed(const Hit& hit, bool double_click) {
  const bool on_symbol = hit.part == HitPart::kSymbol;
  if (double_click && !on_symbol) return Model().HandleDoubleClick(hit.row);
  if (!on_symbol) BeginHold(Hold::kSelecting, hit.row);
  Model().HandlePress(hit.row, hit.col, on_symbol, ModifiersNow());
}

void GridPeer::OnRightDown(POINT point) {
  TakeFocus();
  if (!Alive()) return;
  const Hit hit = Layout().HitTest(point);
  // The context menu acts on the row under the pointer, or on all selected rows if it is one.
  if (hit.part != HitPart::kCell || Model().IsSelected(hit.row)) return;
  Model().HandlePress(hit.row, hit.col, false);
}

void GridPeer::BeginHold(Hold hold, int index) {
  hold_ = hold;
  held_index_ = index;
  SetCapture(Hwnd());
  if (hold == Hold::kSelecting) SetTimer(Hwnd(), kDragTimer, kDragInterval, nullptr);
}

void GridPeer::OnButtonUp() {
  if (hold_ == Hold::kNothing) return;
  const Hold ended = std::exchange(hold_, Hold::kNothing);
  KillTimer(Hwnd(), kDragTimer);
  if (GetCapture() == Hwnd()) ReleaseCapture();
  if (ended == Hold::kColumn && held_index_ < Model().Cols()) {
    Model().AfterUserResize.Raise(held_index_);
  }
}

void GridPeer::OnMouseMove(POINT point) {
  // The system also sends this when the pointer rests and a window has moved under it.
  if (point.x == last_point_.x && point.y == last_point_.y) return;
  last_point_ = point;
  switch (hold_) {
    case Hold::kSelecting:
      return Drag(point);
    case Hold::kColumn:
    case Hold::kRow:
      return Resize(point);
    case Hold::kNothing:
      return UpdateTip(point);
  }
}

void GridPeer::Resize(POINT point) {
  const GridLayout layout = Layout();
  const Scale& scale = Context().scale;
  if (hold_ == Hold::kColumn) {
    const Span* column = layout.ColumnOf(held_index_);
    if (column == nullptr) return;
    const int width = static_cast<int>(point.x) - column->begin;
    Model().SetColWidth(held_index_,
                        scale.ToTwips(std::max(width, scale.Design(kNarrowestColumn))));
    return;
  }
  const Span* row = layout.RowOf(held_index_);
  if (row == nullptr) return;
  const int height = scale.ToTwips(static_cast<int>(point.y) - row->begin);
  Model().SetRowHeight(held_index_, std::max(height, Model().RowHeightMin()));
}

void GridPeer::Drag(POINT point) {
  const int row = DragTarget(point);
  // A drag begins when the pointer reaches another row, so that an unsteady click is none.
  if (row < 0 || row == held_index_) return;
  held_index_ = row;
  Model().HandleDrag(row);
}

int GridPeer::DragTarget(POINT point) const {
  const GridLayout layout = Layout();
  if (Model().ShownRows() == 0) return -1;
  if (point.y < layout.HeaderBottom()) return Model().PreviousShownRow(Model().TopRow());
  const SIZE client = ClientSize();
  for (const Span& row : layout.Rows()) {
    if (row.index < Model().FixedRows()) continue;
    const bool last = row.end >= client.cy;
    if (point.y < row.end || last) return row.index;
  }
  return layout.Rows().empty() ? -1 : layout.Rows().back().index;
}

bool GridPeer::OnSetCursor() const {
  POINT point{};
  GetCursorPos(&point);
  ScreenToClient(Hwnd(), &point);
  const HitPart part = Layout().HitTest(point).part;
  const bool column = hold_ == Hold::kColumn || part == HitPart::kColumnBorder;
  const bool row = hold_ == Hold::kRow || part == HitPart::kRowBorder;
  if (!column && !row) return false;
  SetCursor(LoadCursorW(nullptr, column ? IDC_SIZEWE : IDC_SIZENS));
  return true;
}

bool GridPeer::IsClipped(const GridLayout& layout, const RECT& cell, int row, int col) const {
  const LONG right = std::min(cell.right - layout.Padding(), ClientSize().cx);
  const int width = Context().fonts->Pixels(host::Wide(Model().DisplayText(row, col)),
                                            Model().CellFontBold(row, col));
  return layout.TextLeft(cell, row, col) + width > right;
}

void GridPeer::UpdateTip(POINT point) {
  const GridLayout layout = Layout();
  const Hit hit = layout.HitTest(point);
  const Span* row = layout.RowOf(hit.row);
  const Span* column = layout.ColumnOf(hit.col);
  const SIZE client = ClientSize();
  if (hit.part != HitPart::kCell || row == nullptr || column == nullptr) {
    return tip_->Set(Model().ToolTipText(), {0, 0, client.cx, client.cy});
  }
  const RECT cell = layout.Cell(*row, *column);
  const bool clipped = IsClipped(layout, cell, hit.row, hit.col);
  tip_->Set(clipped ? Model().DisplayText(hit.row, hit.col) : Model().ToolTipText(), cell);
}

}  // namespace tavrix::viewkit::win32
