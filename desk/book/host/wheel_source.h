#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "host/objects.h"

namespace desk::book {

namespace host = tavrix::host;

/// The portable half of a mouse-wheel source: it counts notches into a position within its range.
/// Whoever has windows overrides `Hook` and `Unhook` and passes the wheel's movements to `Turn`.
class WheelSource : public host::MouseEvent {
 public:
  /// One notch of a wheel, in the units that `Turn` takes.
  static constexpr int kNotch = 120;

  /// From the first row of data: a notch that led from the header to it would move nothing.
  void SetRange(std::int32_t maximum) override { SetRange(maximum, 1); }
  /// Positions go from `first_row` to `maximum`; the one that stands is held within them.
  void SetRange(std::int32_t maximum, std::int32_t first_row) override;
  /// A window that is attached already is let go first. 0 attaches to nothing.
  void Attach(std::intptr_t window) override;
  void Detach() override;
  [[nodiscard]] std::intptr_t AttachedTo() override { return window_; }
  /// Raises nothing: the view tells where it has scrolled to, or what it had to make of a value.
  void SetPosition(std::int32_t position) override;
  void OnWheel(std::function<void(std::int32_t value)> handler) override;

  /// The wheel moved by `delta`; positive is away from the user, towards smaller positions. Parts
  /// of a notch add up. The handler gets the new position when there is one.
  void Turn(int delta);

 protected:
  virtual void Hook(std::intptr_t) {}
  virtual void Unhook(std::intptr_t) {}

 private:
  [[nodiscard]] std::int32_t Held(std::int64_t position) const;

  std::intptr_t window_ = 0;
  std::int32_t least_ = 0;
  std::int32_t most_ = 0;
  std::int32_t position_ = 0;
  int partial_ = 0;
  std::function<void(std::int32_t)> handler_;
};

}  // namespace desk::book
