#include "viewkit/grid/row_order.h"

#include <vector>

namespace tavrix::viewkit {

RowOrder::RowOrder(std::span<const int> order, int first)
    : first_(first), place_of_(order.size(), -1) {
  rows_.reserve(order.size());
  for (int start = 0; start < CountOf(order); ++start) {
    if (ItemAt(place_of_, start) >= 0) continue;
    const auto before = rows_.size();
    int place = start;
    do {
      rows_.push_back(first + place);
      const int row = ItemAt(order, place);
      ItemAt(place_of_, row) = place;
      place = row;
    } while (place != start);
    const auto length = static_cast<int>(rows_.size() - before);
    if (length > 1)
      lengths_.push_back(length);
    else
      rows_.pop_back();
  }
}

}  // namespace tavrix::viewkit
