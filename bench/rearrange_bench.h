#pragma once

#include <string>

#include "figures.h"

namespace tavrix::bench {

/// Renumbering 10,000 accounts with 1,000,000 postings, and its undo, beside the same updates sent
/// as bare statements: on a file in `folder`, and, unless `server` is empty, on a server, into a
/// place without a book.
void MeasureRearranging(Figures& figures, const std::string& folder, const std::string& server);

}  // namespace tavrix::bench
