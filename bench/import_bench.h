#pragma once

#include <string>

#include "figures.h"

namespace tavrix::bench {

/// An import that changes every account of a chart of 100,000, beside one bare statement that does:
/// on a file in `folder`, and, unless `server` is empty, on a server, into a place without a book.
void MeasureImport(Figures& figures, const std::string& folder, const std::string& server);

}  // namespace tavrix::bench
