#include "viewkit/grid/wheel.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "host/calls.h"
#include "host/flag_scope.h"
#include "host/text.h"

namespace tavrix::viewkit {

void WheelScroll::Connect(std::shared_ptr<host::MouseEvent> source,
                          std::function<void(std::int32_t value)> handler) {
  source_ = host::Required(std::move(source), "MouseEvent");
  Source()->OnWheel(std::move(handler));
}

void WheelScroll::Disconnect() const {
  const auto source = source_;
  if (!source) return;
  host::IgnoreErrors([&] { source->OnWheel({}); });
  host::IgnoreErrors([&] { source->Detach(); });
}

std::shared_ptr<host::MouseEvent> WheelScroll::Source() const {
  return host::Required(source_, "MouseEvent");
}

std::int32_t WheelScroll::RangeOf(const FlexGrid& grid) const {
  return host::ToLong32((grid.Rows() - 1) / rate_);
}

int WheelScroll::RowOf(const FlexGrid& grid, std::int32_t value) const {
  if (value < rate_) return value;
  const double target = std::nearbyint(value * rate_);
  return host::ToLong32(std::min<double>(target, grid.Rows() - 1));
}

void WheelScroll::OnWheel(FlexGrid& grid, std::int32_t value) {
  const bool down = value >= Before(value);
  heard_ = told_ = value;
  int row = RowOf(grid, value);
  const bool hidden = row >= grid.FixedRows() && row < grid.Rows() && !grid.IsShown(row);
  if (hidden) {
    const int top = grid.TopRow();
    row = down ? grid.NextShownRow(std::max(row, top)) : grid.PreviousShownRow(std::min(row, top));
    if (row < 0) row = top;
  }
  {
    const host::FlagScope turning(turning_);
    grid.SetTopRow(row);
  }
  if (hidden) Tell(grid);
}

/// The position that this value was reached from.
std::int32_t WheelScroll::Before(std::int32_t value) const {
  const auto distance = [value](std::int32_t from) { return std::abs(std::int64_t{value} - from); };
  return distance(told_) <= distance(heard_) ? told_ : heard_;
}

void WheelScroll::OnScrolled(const FlexGrid& grid) {
  if (turning_ || !source_) return;
  Tell(grid);
  heard_ = told_;
}

void WheelScroll::OnFocused(const FlexGrid& grid) const {
  const auto source = source_;
  if (!source) return;
  const std::intptr_t window = grid.WindowHandle();
  if (source->AttachedTo() != window) source->Attach(window);
}

void WheelScroll::Tell(const FlexGrid& grid) {
  told_ = host::ToLong32(grid.TopRow() / rate_);
  Source()->SetPosition(told_);
}

}  // namespace tavrix::viewkit
