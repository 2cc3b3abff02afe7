#pragma once

#include "host/controls.h"

namespace tavrix::viewkit {

/// Coalesces the change notices of a grid while it lives.
class GridUpdate {
 public:
  explicit GridUpdate(host::Grid& grid) : grid_(grid) { grid_.BeginUpdate(); }
  GridUpdate(const GridUpdate&) = delete;
  GridUpdate& operator=(const GridUpdate&) = delete;
  ~GridUpdate() { grid_.EndUpdate(); }

 private:
  host::Grid& grid_;
};

}  // namespace tavrix::viewkit
