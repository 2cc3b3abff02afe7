#pragma once

#include <string>

#include "figures.h"

namespace tavrix::bench {

/// A refresh of 100,000 accounts on the server at `place` (an ODBC connection string of an empty
/// schema) over the same queries fetched through the same driver by nothing but ODBC itself.
void MeasureServer(Figures& figures, const std::string& place);

}  // namespace tavrix::bench
