#pragma once

/// Lengths inside a grid's cells on which the model (auto size) and the window (paint, hits) agree,
/// in twips.
namespace tavrix::viewkit::grid_metrics {

/// Free space on the left and on the right of a cell's text.
inline constexpr int kCellPadding = 75;
/// Width of one outline level. A row of level n shows its symbol in the n-th of these from the
/// cell's left edge, and its text after it, at (n + 1) * kOutlineIndent + kCellPadding.
inline constexpr int kOutlineIndent = 240;

}  // namespace tavrix::viewkit::grid_metrics
