#pragma once

#include <span>
#include <vector>

namespace desk::views {

/// One place on a tool bar, in the bar's order.
struct BarItem {
  int width = 0;
  bool wanted = true;      ///< false: it is not there at all
  bool separator = false;  ///< a line between two groups of buttons
};

/// Which items stand on a bar with so much room. When not all wanted buttons fit, the first of them
/// do, with room left for the button that leads to the others; `more_width` is that one's. No line
/// stands at the beginning, at the end, or beside another one.
struct BarFit {
  std::vector<bool> shown;
  bool more = false;  ///< there are others
};
[[nodiscard]] BarFit FitBar(std::span<const BarItem> items, int room, int more_width);

}  // namespace desk::views
