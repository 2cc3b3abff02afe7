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

}  // namespace tavrix::viewkit
