#include "views/bar_fit.h"

#include <cstddef>
#include <optional>

namespace desk::views {

namespace {

/// How many leading items fit; lines count only between buttons that do.
BarFit Place(std::span<const BarItem> items, int room) {
  BarFit fit{.shown = std::vector<bool>(items.size(), false)};
  int used = 0;
  bool any = false;
  std::optional<std::size_t> line;  // the last one met, when a button may follow it
  for (std::size_t i = 0; i < items.size(); ++i) {
    const BarItem& item = items[i];
    if (!item.wanted) continue;
    if (item.separator) {
      if (any) line = i;
      continue;
    }
    const int width = item.width + (line ? items[*line].width : 0);
    if (fit.more || used + width > room) {
      fit.more = true;
      continue;
    }
    used += width;
    if (line) fit.shown[*line] = true;
    fit.shown[i] = any = true;
    line.reset();
  }
  return fit;
}

}  // namespace

BarFit FitBar(std::span<const BarItem> items, int room, int more_width) {
  BarFit fit = Place(items, room);
  return fit.more ? Place(items, room - more_width) : fit;
}

}  // namespace desk::views
