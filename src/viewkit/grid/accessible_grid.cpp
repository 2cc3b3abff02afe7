#include "viewkit/grid/accessible_grid.h"

#include <algorithm>

#include "viewkit/indexing.h"

namespace tavrix::viewkit {
namespace {

int PlaceIn(const std::vector<int>& numbers, int number) {
  return static_cast<int>(std::find(numbers.begin(), numbers.end(), number) - numbers.begin());
}

}  // namespace

bool AccessibleGrid::Seen(int col) const {
  return !grid_.ColHidden(col) && grid_.ColWidth(col) > 0;
}

std::vector<int> AccessibleGrid::Columns() const {
  std::vector<int> columns;
  for (int col = 0; col < grid_.Cols(); ++col) {
    if (Seen(col)) columns.push_back(col);
  }
  return columns;
}

std::vector<int> AccessibleGrid::Headers() const {
  std::vector<int> rows;
  for (int row = 0; row < grid_.FixedRows(); ++row) {
    if (!grid_.RowHidden(row)) rows.push_back(row);
  }
  return rows;
}

bool AccessibleGrid::Exists(AccessibleId id) const {
  if (id == AccessibleId{}) return true;
  const int row = RowOf(id);
  if (row < 0 || row >= grid_.Rows()) return false;
  if (IsHeader(row) ? grid_.RowHidden(row) : !grid_.IsShown(row)) return false;
  const int col = ColOf(id);
  return id.part == 0 || (col >= 0 && col < grid_.Cols() && Seen(col));
}

AccessibleRole AccessibleGrid::RoleOfCell(int row, int col) const {
  if (IsHeader(row)) return AccessibleRole::kColumnHeader;
  return col < grid_.FixedCols() ? AccessibleRole::kRowHeader : AccessibleRole::kCell;
}

AccessibleRole AccessibleGrid::Role(AccessibleId id) const {
  if (id == AccessibleId{}) return IsOutline() ? AccessibleRole::kOutline : AccessibleRole::kTable;
  if (id.part != 0) return RoleOfCell(RowOf(id), ColOf(id));
  const bool plain = IsHeader(RowOf(id)) || !IsOutline();
  return plain ? AccessibleRole::kRow : AccessibleRole::kOutlineRow;
}

std::string AccessibleGrid::Caption(int col) const {
  const std::vector<int> headers = Headers();
  return headers.empty() ? std::string() : grid_.DisplayText(headers.back(), col);
}

std::string AccessibleGrid::Name(AccessibleId id) const {
  if (id == AccessibleId{}) return {};
  const int row = RowOf(id);
  if (id.part != 0) {
    return IsHeader(row) ? grid_.DisplayText(row, ColOf(id)) : Caption(ColOf(id));
  }
  std::string name;
  for (const int col : Columns()) {
    const std::string text = grid_.DisplayText(row, col);
    if (!text.empty()) name += (name.empty() ? "" : " ") + text;
  }
  return name;
}

/// A row without a place of its own in the outline stands one level below the node that holds it.
int AccessibleGrid::Level(int row) const {
  if (grid_.IsNode(row)) return grid_.RowOutlineLevel(row);
  const int node = grid_.ParentRow(row);
  return node < 0 ? 0 : grid_.RowOutlineLevel(node) + 1;
}

std::string AccessibleGrid::Value(AccessibleId id) const {
  const int row = RowOf(id);
  if (id == AccessibleId{} || IsHeader(row)) return {};
  if (id.part != 0) return grid_.DisplayText(row, ColOf(id));
  return IsOutline() ? std::to_string(Level(row)) : std::string();
}

bool AccessibleGrid::Opens(int row) const {
  return IsOutline() && grid_.IsNode(row) && grid_.HasRowsBelow(row);
}

AccessibleStates AccessibleGrid::States(AccessibleId id) const {
  AccessibleStates states;
  states.unavailable = !grid_.Enabled();
  const int row = RowOf(id);
  if (id != AccessibleId{} && IsHeader(row)) return states;
  if (id == AccessibleId{}) {
    states.several_selectable = grid_.CanSelectSeveral();
  } else {
    states.out_of_view = !grid_.IsInView(row);
    if (id.part != 0) return states;
    states.selectable = true;
    states.selected = grid_.IsSelected(row);
  }
  states.focusable = true;
  states.focused = grid_.Focused() && Current() == id;
  if (id == AccessibleId{} || !Opens(row)) return states;
  states.collapsed = grid_.IsCollapsed(row);
  states.expanded = !states.collapsed;
  return states;
}

int AccessibleGrid::Children(AccessibleId id) const {
  if (id.part != 0) return 0;
  if (id.item != 0) return CountOf(Columns());
  return CountOf(Headers()) + grid_.ShownRows();
}

AccessibleId AccessibleGrid::Child(AccessibleId id, int position) const {
  const auto place = static_cast<std::size_t>(position);
  if (id.item != 0) return OfCell(RowOf(id), Columns().at(place));
  const std::vector<int> headers = Headers();
  if (place < headers.size()) return OfRow(headers[place]);
  return OfRow(grid_.RowAtShownPosition(position - CountOf(headers)));
}

int AccessibleGrid::Position(AccessibleId id) const {
  if (id.part != 0) return PlaceIn(Columns(), ColOf(id));
  const int row = RowOf(id);
  const std::vector<int> headers = Headers();
  if (IsHeader(row)) return PlaceIn(headers, row);
  return CountOf(headers) + grid_.ShownPosition(row);
}

AccessibleId AccessibleGrid::Current() const {
  const int row = grid_.Row();
  const bool data = row >= grid_.FixedRows() && row < grid_.Rows();
  return data && Exists(OfRow(row)) ? OfRow(row) : AccessibleId{};
}

std::vector<AccessibleId> AccessibleGrid::Selected() const {
  std::vector<AccessibleId> rows;
  for (int n = 0; n < grid_.SelectedRows(); ++n) {
    const int row = grid_.SelectedRow(n);
    if (grid_.IsShown(row)) rows.push_back(OfRow(row));
  }
  return rows;
}

AccessibleAction AccessibleGrid::Action(AccessibleId id) const {
  const int row = RowOf(id);
  if (id == AccessibleId{} || IsHeader(row) || !grid_.Enabled()) return AccessibleAction::kNone;
  if (!Opens(row)) return AccessibleAction::kOpen;
  return grid_.IsCollapsed(row) ? AccessibleAction::kExpand : AccessibleAction::kCollapse;
}

/// As the mouse does it: on the symbol before the row's text, or twice on the row.
void AccessibleGrid::Act(AccessibleId id) {
  const AccessibleAction action = Action(id);
  if (action == AccessibleAction::kNone) return;
  const int row = RowOf(id);
  if (action != AccessibleAction::kOpen) return grid_.HandlePress(row, -1, true);
  if (grid_.Row() == row) grid_.HandleDoubleClick(row);
}

bool AccessibleGrid::Select(AccessibleId id, AccessibleSelect how) {
  const int row = RowOf(id);
  if (id.item == 0 || id.part != 0 || IsHeader(row) || !grid_.Enabled()) return false;
  const bool several = grid_.CanSelectSeveral();
  const bool list = grid_.SelectionMode() == SelectionMode::kListBox;
  switch (how) {
    case AccessibleSelect::kOnly:
      grid_.HandlePress(row, -1, false);
      return true;
    case AccessibleSelect::kExtend:
      if (several) grid_.HandlePress(row, -1, false, {.shift = true});
      return several;
    case AccessibleSelect::kAdd:
      if (list) grid_.SetSelected(row, true);
      return list;
    case AccessibleSelect::kRemove:
      if (list) grid_.SetSelected(row, false);
      return list;
  }
  return false;
}

}  // namespace tavrix::viewkit
