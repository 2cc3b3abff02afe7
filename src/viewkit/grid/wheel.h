#pragma once

#include <cstdint>

#include "host/objects.h"
#include "viewkit/grid/flex_grid.h"

namespace tavrix::viewkit {

/// Keeps a grid and the host's wheel source in step.
class WheelScroll {
 public:
  /// Scrolls to where a value of the source says: a value below `rate` is the top row itself,
  /// deliberately unscaled; any other one is a multiple of `rate`, held to the last row. A hidden
  /// row gives way to the next shown one in the direction of the wheel that lies beyond the top
  /// row; then, and only then, the source is told where the grid is now: the next notch goes on
  /// from there.
  void OnWheel(FlexGrid& grid, std::int32_t value, double rate, host::MouseEvent& source);
  /// The grid has scrolled: tells the source, unless it was the wheel that did it.
  void OnScrolled(const FlexGrid& grid, double rate, host::MouseEvent& source);

 private:
  void Tell(const FlexGrid& grid, double rate, host::MouseEvent& source);
  [[nodiscard]] std::int32_t Before(std::int32_t value) const;

  // The source's position as it last said and as it was last told: some do not listen while their
  // own wheel turns.
  std::int32_t heard_ = 0;
  std::int32_t told_ = 0;
  bool turning_ = false;
};

}  // namespace tavrix::viewkit
