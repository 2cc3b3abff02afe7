// What a grid's window tells assistive programs: where its rows and cells are, and what happens.

#include <algorithm>

#include "viewkit/win32/accessibility.h"
#include "viewkit/win32/grid_peer.h"

namespace tavrix::viewkit::win32 {

RECT GridPeer::PlaceOf(AccessibleId id) const {
  const GridLayout layout = Layout();
  const Span* row = layout.RowOf(AccessibleGrid::RowOf(id));
  if (row == nullptr) return {};
  RECT place{0, row->begin, layout.SheetRight(), row->end};
  if (id.part != 0) {
    const Span* column = layout.ColumnOf(AccessibleGrid::ColOf(id));
    if (column == nullptr) return {};
    place = layout.Cell(*row, *column);
  }
  const SIZE client = ClientSize();
  const RECT window{0, 0, client.cx, client.cy};
  RECT seen{};
  IntersectRect(&seen, &place, &window);
  return seen;
}

AccessibleId GridPeer::IdAt(POINT point) const {
  const GridLayout layout = Layout();
  const auto holds = [](int pixel) {
    return [pixel](const Span& span) { return span.begin <= pixel && pixel < span.end; };
  };
  const auto row = std::find_if(layout.Rows().begin(), layout.Rows().end(), holds(point.y));
  if (row == layout.Rows().end()) return {};
  const auto column =
      std::find_if(layout.Columns().begin(), layout.Columns().end(), holds(point.x));
  return column == layout.Columns().end() ? AccessibleGrid::OfRow(row->index)
                                          : AccessibleGrid::OfCell(row->index, column->index);
}

void GridPeer::Listen() {
  collapse_listener_ = Model().AfterCollapse.Add([this](int row) {
    if (Alive() && row >= 0) AnnounceRow(EVENT_OBJECT_STATECHANGE, row);
  });
}

void GridPeer::AnnounceRow(DWORD event, int row) const {
  RaiseAccessibleEvent(Hwnd(), event, AccessibleGrid::OfRow(row));
}

void GridPeer::AnnounceFocus() const {
  if (Model().Focused()) RaiseAccessibleEvent(Hwnd(), EVENT_OBJECT_FOCUS, accessible_.Current());
}

/// Other rows are selected, or another one is current.
void GridPeer::Announce() {
  if (Model().SelectedRows() == 1) {
    AnnounceRow(EVENT_OBJECT_SELECTION, Model().SelectedRow(0));
  } else {
    RaiseAccessibleEvent(Hwnd(), EVENT_OBJECT_SELECTIONWITHIN, {});
  }
  AnnounceFocus();
}

}  // namespace tavrix::viewkit::win32
