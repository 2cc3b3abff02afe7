#pragma once

#include <string>

#include "figures.h"

namespace tavrix::bench {

/// The picker on a book of 100,000 accounts: loading its list over fetching and copying the same
/// rows, a step of the search over a plain pass through the same text, typed text over its bare
/// statement; and how the time for a tree of accounts grows with its nodes.
void MeasurePicker(Figures& figures, const std::string& folder);

}  // namespace tavrix::bench
