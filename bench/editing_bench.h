#pragma once

#include <string>

#include "figures.h"

namespace tavrix::bench {

/// Keeping accounts: the next free code, saving a changed code with 1,000,000 postings, and
/// deleting 10,000 accounts, each over its bare statements as the host runs them.
void MeasureEditing(Figures& figures, const std::string& folder);

}  // namespace tavrix::bench
