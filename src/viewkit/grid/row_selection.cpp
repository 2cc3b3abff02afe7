#include "viewkit/grid/row_selection.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tavrix::viewkit {

bool RowSelection::Contains(int row) const {
  return std::binary_search(rows_.begin(), rows_.end(), row);
}

bool RowSelection::Clear() {
  return Assign({});
}

bool RowSelection::SelectOnly(int row) {
  return Assign({row});
}

bool RowSelection::Set(int row, bool selected) {
  const auto place = std::lower_bound(rows_.begin(), rows_.end(), row);
  const bool present = place != rows_.end() && *place == row;
  if (present == selected) return false;
  if (selected) {
    rows_.insert(place, row);
  } else {
    rows_.erase(place);
  }
  return true;
}

bool RowSelection::Assign(std::vector<int> rows) {
  if (rows == rows_) return false;
  rows_ = std::move(rows);
  return true;
}

bool RowSelection::Add(const std::vector<int>& rows) {
  std::vector<int> both;
  both.reserve(rows_.size() + rows.size());
  std::set_union(rows_.begin(), rows_.end(), rows.begin(), rows.end(), std::back_inserter(both));
  return Assign(std::move(both));
}

}  // namespace tavrix::viewkit
