#include "views/column_fit.h"

#include <algorithm>

#include "viewkit/grid/grid_metrics.h"
#include "viewkit/grid/text_width.h"

namespace desk::views {

int WidthOfText(std::string_view text, const tavrix::viewkit::TextMeasure& measure) {
  constexpr int kBeside =
      2 * tavrix::viewkit::grid_metrics::kCellPadding + tavrix::viewkit::kTwipsPerPixel;
  return measure.Width(text, false) + kBeside;
}

int WidthOfContents(const tavrix::host::Grid& grid, int col,
                    const tavrix::viewkit::TextMeasure& measure) {
  tavrix::viewkit::WidestTexts widest(measure);
  for (int row = 0; row < grid.Rows(); ++row) {
    if (!grid.IsTotalRow(row)) widest.Offer(row, grid.TextMatrix(row, col), 0, false);
  }
  int width = 0;
  for (const auto& candidate : widest.Candidates()) {
    width = std::max(width, WidthOfText(grid.TextMatrix(candidate.row, col), measure));
  }
  return width;
}

void WidenToFit(tavrix::viewkit::FlexGrid& grid, int col) {
  const int before = grid.ColWidth(col);
  if (before == 0 || grid.ColHidden(col)) return;
  grid.AutoSize(col);
  if (grid.ColWidth(col) < before) grid.SetColWidth(col, before);
}

}  // namespace desk::views
