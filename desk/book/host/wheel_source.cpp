#include "book/host/wheel_source.h"

#include <algorithm>
#include <utility>

namespace desk::book {

std::int32_t WheelSource::Held(std::int64_t position) const {
  const std::int64_t most = std::max(least_, most_);
  return static_cast<std::int32_t>(std::clamp(position, std::int64_t{least_}, most));
}

void WheelSource::SetRange(std::int32_t maximum, std::int32_t first_row) {
  least_ = std::max(first_row, 0);
  most_ = maximum;
  position_ = Held(position_);
}

void WheelSource::Attach(std::intptr_t window) {
  Detach();
  if (window == 0) return;
  Hook(window);
  window_ = window;
}

void WheelSource::Detach() {
  partial_ = 0;
  if (window_ != 0) Unhook(std::exchange(window_, 0));
}

void WheelSource::SetPosition(std::int32_t position) {
  position_ = Held(position);
}

void WheelSource::OnWheel(std::function<void(std::int32_t value)> handler) {
  handler_ = std::move(handler);
}

void WheelSource::Turn(int delta) {
  if ((delta < 0) != (partial_ < 0)) partial_ = 0;
  partial_ += std::clamp(delta, -100 * kNotch, 100 * kNotch);
  const int notches = partial_ / kNotch;
  partial_ %= kNotch;
  const std::int32_t next = Held(std::int64_t{position_} - notches);
  if (next == position_) return;
  position_ = next;
  // The handler may end itself, or this source.
  const auto handler = handler_;
  if (handler) handler(next);
}

}  // namespace desk::book
