#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "host/objects.h"
#include "viewkit/grid/flex_grid.h"

namespace tavrix::viewkit {

/// A grid that the host's wheel source scrolls: keeps the two in step. Whoever calls holds this to
/// the end of the call, since the source may let go of its view meanwhile.
class WheelScroll {
 public:
  /// From here on the source is this one's; `handler` gets what the wheel says.
  void Connect(std::shared_ptr<host::MouseEvent> source,
               std::function<void(std::int32_t value)> handler);
  /// Ends the handler and detaches the source, whatever fails; nothing without one.
  void Disconnect() const;
  [[nodiscard]] bool Connected() const { return source_ != nullptr; }
  /// Throws `HostError` when there is none.
  [[nodiscard]] std::shared_ptr<host::MouseEvent> Source() const;

  /// Rows for one step of the source. 0 leaves the default one; a negative rate is kept as it is.
  void SetRate(double rate) {
    if (rate != 0) rate_ = rate;
  }
  /// The source's last position: that of the grid's last row.
  [[nodiscard]] std::int32_t RangeOf(const FlexGrid& grid) const;

  /// Scrolls to where a value of the source says: a value below the rate is the top row itself,
  /// deliberately unscaled; any other one is a multiple of the rate, held to the last row. A hidden
  /// row gives way to the next shown one in the direction of the wheel that lies beyond the top
  /// row; then, and only then, the source is told where the grid is now: the next notch goes on
  /// from there.
  void OnWheel(FlexGrid& grid, std::int32_t value);
  /// The grid has scrolled: tells the source, unless it was the wheel that did it.
  void OnScrolled(const FlexGrid& grid);
  /// The grid has the focus: its window is the one that the source listens to.
  void OnFocused(const FlexGrid& grid) const;

 private:
  [[nodiscard]] int RowOf(const FlexGrid& grid, std::int32_t value) const;
  void Tell(const FlexGrid& grid);
  [[nodiscard]] std::int32_t Before(std::int32_t value) const;

  static constexpr double kDefaultRate = 5;

  std::shared_ptr<host::MouseEvent> source_;
  double rate_ = kDefaultRate;
  // The source's position as it last said and as it was last told: some do not listen while their
  // own wheel turns.
  std::int32_t heard_ = 0;
  std::int32_t told_ = 0;
  bool turning_ = false;
};

}  // namespace tavrix::viewkit
