#pragma once

#include <map>

#include "viewkit/control.h"

namespace tavrix::picker {

/// Puts controls in their places and leaves alone those that the host has moved since.
class Placement {
 public:
  /// What the host has done counts no more: the view has another size.
  void StartAnew() { placed_.clear(); }

  void Place(viewkit::Control& control, const host::Bounds& bounds) {
    const auto [last, first_time] = placed_.try_emplace(&control, bounds);
    if (!first_time && control.GetBounds() != last->second) return;
    last->second = bounds;
    control.SetBounds(bounds);
  }

 private:
  std::map<const viewkit::Control*, host::Bounds> placed_;  // where each was put last
};

}  // namespace tavrix::picker
