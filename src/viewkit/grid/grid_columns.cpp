#include "viewkit/grid/grid_columns.h"

#include <stdexcept>

namespace tavrix::viewkit {

void GridColumns::SetCount(int count) {
  columns_.resize(SizeOf(count));
  SetFixed(fixed_);
}

void GridColumns::Check(int col) const {
  if (col < 0 || col >= Count()) throw std::out_of_range("no such column in the grid");
}

const GridColumns::Column& GridColumns::At(int col) const {
  Check(col);
  return ItemAt(columns_, col);
}

GridColumns::Column& GridColumns::At(int col) {
  Check(col);
  return ItemAt(columns_, col);
}

void GridColumns::SetFixed(int cols) {
  fixed_ = std::clamp(cols, 0, Count());
  SetFrozen(frozen_);
}

void GridColumns::SetFrozen(int cols) {
  frozen_ = std::clamp(cols, 0, Count() - fixed_);
}

}  // namespace tavrix::viewkit
