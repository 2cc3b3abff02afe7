#include "viewkit/wheel.h"

#include <algorithm>
#include <cmath>

#include "host/text.h"

namespace tavrix::viewkit {

void ScrollByWheel(host::Grid& grid, std::int32_t value, double rate) {
  if (value < rate) return grid.SetTopRow(value);
  const double target = std::nearbyint(value * rate);
  grid.SetTopRow(host::ToLong32(std::min<double>(target, grid.Rows() - 1)));
}

std::int32_t WheelPositionOf(int top_row, double rate) {
  if (top_row < rate) return top_row;
  // Rows between the last unscaled value and the first scaled one belong to the former.
  const double last_unscaled = std::ceil(rate) - 1;
  return host::ToLong32(std::max(std::nearbyint(top_row / rate), last_unscaled));
}

}  // namespace tavrix::viewkit
