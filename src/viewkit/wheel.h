#pragma once

#include <cstdint>

#include "host/controls.h"

namespace tavrix::viewkit {

/// Scrolls a grid to where a value of the host's wheel source says: a value below `rate` is the top
/// row itself, deliberately unscaled; any other one is a multiple of `rate`, held to the last row.
void ScrollByWheel(host::Grid& grid, std::int32_t value, double rate);

}  // namespace tavrix::viewkit
