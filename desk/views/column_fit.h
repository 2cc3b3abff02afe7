#pragma once

#include <string_view>

#include "host/controls.h"
#include "viewkit/grid/flex_grid.h"
#include "viewkit/ports.h"

namespace desk::views {

/// The width that the longest text of a column needs, its header's included, in twips. Totals do
/// not count.
[[nodiscard]] int WidthOfContents(const tavrix::host::Grid& grid, int col,
                                  const tavrix::viewkit::TextMeasure& measure);

/// Widens a column to its longest text: codes of deep charts can be read whole. Never narrows it,
/// and leaves one alone that is hidden or has no width.
void WidenToFit(tavrix::viewkit::FlexGrid& grid, int col);

/// The width that one text needs in a cell.
[[nodiscard]] int WidthOfText(std::string_view text, const tavrix::viewkit::TextMeasure& measure);

}  // namespace desk::views
