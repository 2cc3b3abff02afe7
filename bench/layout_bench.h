#pragma once

#include <string>

#include "figures.h"

namespace tavrix::bench {

/// Layouts: groups and totals over 100,000 rows, over a pass that sums the same cells; saving and
/// restoring the status of a view, over one write and one read of the same bytes.
void MeasureLayout(Figures& figures, const std::string& folder);

}  // namespace tavrix::bench
