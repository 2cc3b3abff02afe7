#include "viewkit/grid/wheel.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "host/flag_scope.h"
#include "host/text.h"

namespace tavrix::viewkit {
namespace {

int RowOf(const FlexGrid& grid, std::int32_t value, double rate) {
  if (value < rate) return value;
  const double target = std::nearbyint(value * rate);
  return host::ToLong32(std::min<double>(target, grid.Rows() - 1));
}

}  // namespace

void WheelScroll::OnWheel(FlexGrid& grid, std::int32_t value, double rate,
                          host::MouseEvent& source) {
  const bool down = value >= Before(value);
  heard_ = told_ = value;
  int row = RowOf(grid, value, rate);
  const bool hidden = row >= grid.FixedRows() && row < grid.Rows() && !grid.IsShown(row);
  if (hidden) {
    const int top = grid.TopRow();
    row = down ? grid.NextShownRow(std::max(row, top)) : grid.PreviousShownRow(std::min(row, top));
    if (row < 0) row = top;
  }
  {
    const host::FlagScope turning(turning_);
    grid.SetTopRow(row);
  }
  if (hidden) Tell(grid, rate, source);
}

/// The position that this value was reached from.
std::int32_t WheelScroll::Before(std::int32_t value) const {
  const auto distance = [value](std::int32_t from) { return std::abs(std::int64_t{value} - from); };
  return distance(told_) <= distance(heard_) ? told_ : heard_;
}

void WheelScroll::OnScrolled(const FlexGrid& grid, double rate, host::MouseEvent& source) {
  if (turning_) return;
  Tell(grid, rate, source);
  heard_ = told_;
}

void WheelScroll::Tell(const FlexGrid& grid, double rate, host::MouseEvent& source) {
  told_ = host::ToLong32(grid.TopRow() / rate);
  source.SetPosition(told_);
}

}  // namespace tavrix::viewkit
