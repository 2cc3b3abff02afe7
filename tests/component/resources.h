#pragma once

#include <cstddef>

namespace tavrix::test {

/// What this process holds of the system's goods.
struct Resources {
  int windows = 0;                ///< of this thread, with all their children
  int gdi_objects = 0;            ///< pens, fonts, bitmaps, ...
  std::ptrdiff_t heap_bytes = 0;  ///< in use, over all heaps

  [[nodiscard]] static Resources Now();
};

}  // namespace tavrix::test
