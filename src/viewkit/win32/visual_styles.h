#pragma once

#include <windows.h>

#include "host/non_copyable.h"

namespace tavrix::viewkit::win32 {

/// The system's controls made while this lives are those of the version that this module's own
/// manifest names (resource 2), even in a program that asks for no such version. Without that
/// resource nothing changes: a program's manifest counts by itself.
class VisualStyles : private host::NonCopyable {
 public:
  VisualStyles();
  ~VisualStyles();

 private:
  ULONG_PTR cookie_ = 0;
  bool active_ = false;
};

}  // namespace tavrix::viewkit::win32
