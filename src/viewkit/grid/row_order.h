#pragma once

#include <span>
#include <vector>

#include "viewkit/indexing.h"

namespace tavrix::viewkit {

/// Another order of rows that stand one below the other, kept as what has to be done for it: cycles
/// of rows, each of which takes the place of the one before it. Rows that stay are in none, and
/// nothing needs a second copy of all rows.
class RowOrder {
 public:
  /// To place i comes the row that stands at `order[i]`, both counted from row `first`.
  RowOrder(std::span<const int> order, int first);

  /// `visit` gets each cycle as a `std::span<const int>` of two rows or more.
  template <class Visit>
  void ForEachCycle(const Visit& visit) const {
    auto begin = rows_.begin();
    for (const int length : lengths_) {
      visit(std::span<const int>(begin, begin + length));
      begin += length;
    }
  }
  /// No row above this one moves.
  [[nodiscard]] int First() const { return first_; }
  /// Where a row of the grid stands then.
  [[nodiscard]] int PlaceOf(int row) const {
    const bool inside = row >= first_ && row - first_ < CountOf(place_of_);
    return inside ? first_ + ItemAt(place_of_, row - first_) : row;
  }

 private:
  int first_;
  std::vector<int> place_of_;
  std::vector<int> rows_;     // of all cycles, one behind the other
  std::vector<int> lengths_;  // of the cycles
};

}  // namespace tavrix::viewkit
