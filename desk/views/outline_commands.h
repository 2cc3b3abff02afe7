#pragma once

#include <limits>

#include "host/controls.h"

/// The outline of a grid as a whole. Each brings the current row into view; a row that would be
/// hidden inside a closed node gives way to the node that still shows above it.
namespace desk::views {

inline constexpr int kAllLevels = std::numeric_limits<int>::max();

/// Shows the rows of the levels from 1 to `level`; 1 leaves those of the first level alone.
void ExpandToLevel(tavrix::host::Grid& grid, int level);

}  // namespace desk::views
