#include "viewkit/grid/grid_selection.h"

#include <algorithm>

namespace tavrix::viewkit {

std::vector<int> GridSelection::ShownBetween(int row, int other) const {
  const int first = rows_.ShownBefore(std::min(row, other));
  const int end = rows_.ShownBefore(std::max(row, other) + 1);
  std::vector<int> rows;
  rows.reserve(SizeOf(end - first));
  for (int position = first; position < end; ++position) rows.push_back(rows_.ShownAt(position));
  return rows;
}

void GridSelection::SetMode(SelectionMode mode) {
  mode_ = mode;
  if (mode != SelectionMode::kListBox) MakeCurrent(row_, Pick::kOnly);
}

void GridSelection::SetAllowSelection(bool allow) {
  allow_selection_ = allow;
  if (!AllowsSeveral()) MakeCurrent(row_, Pick::kOnly);
}

void GridSelection::MakeCurrent(int row, Pick pick) {
  const bool data = rows_.IsData(row);
  const int from = rows_.IsData(anchor_) ? anchor_ : rows_.IsData(row_) ? row_ : row;
  row_ = row;
  if (!data) {
    anchor_ = -1;
    return Changed(selected_.Clear());
  }
  switch (pick) {
    case Pick::kOnly:
      anchor_ = row;
      return Changed(selected_.SelectOnly(row));
    case Pick::kToggle:
      anchor_ = row;
      return Changed(selected_.Set(row, !selected_.Contains(row)));
    case Pick::kExtend:
      anchor_ = from;
      return Changed(selected_.Assign(ShownBetween(from, row)));
    case Pick::kExtendMore:
      anchor_ = from;
      return Changed(selected_.Add(ShownBetween(from, row)));
    case Pick::kFocus:
      return;
  }
}

void GridSelection::SetSelected(int row, bool selected) {
  if (IsListBox()) return Changed(selected_.Set(row, selected));
  MakeCurrent(selected ? row : rows_.Fixed() - 1, Pick::kOnly);
}

void GridSelection::SelectShown() {
  if (rows_.DataRows() == 0) return;
  Changed(selected_.Assign(ShownBetween(rows_.Fixed(), rows_.Rows() - 1)));
}

void GridSelection::ForgetRows() {
  row_ = rows_.Fixed() - 1;
  anchor_ = -1;
  Changed(selected_.Clear());
}

void GridSelection::GoOnFrom(int place_of_lost_row) {
  // A row below a collapsed node, or a hidden one, is no place to go on from.
  int next = rows_.NextShown(place_of_lost_row - 1);
  if (next < 0) next = rows_.PreviousShown(place_of_lost_row);
  // Where several rows can be chosen for themselves, those that are left stay chosen.
  const bool others = IsListBox() && selected_.Count() > 0;
  MakeCurrent(next < 0 ? rows_.Fixed() - 1 : next, others ? Pick::kFocus : Pick::kOnly);
}

}  // namespace tavrix::viewkit
