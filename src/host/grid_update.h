#pragma once

#include <exception>

#include "host/controls.h"
#include "host/non_copyable.h"
#include "host/report.h"

namespace tavrix::host {

/// Coalesces the change notices of a grid while it lives. What a listener throws at its end reaches
/// the caller as it does from a single change, but never takes the place of a failure that is on
/// its way already.
class GridUpdate : private NonCopyable {
 public:
  explicit GridUpdate(Grid& grid) : grid_(grid) { grid_.BeginUpdate(); }
  ~GridUpdate() noexcept(false) {
    if (std::uncaught_exceptions() == failures_) {
      grid_.EndUpdate();
    } else {
      IgnoreErrors([this] { grid_.EndUpdate(); });
    }
  }

 private:
  Grid& grid_;
  int failures_ = std::uncaught_exceptions();
};

}  // namespace tavrix::host
