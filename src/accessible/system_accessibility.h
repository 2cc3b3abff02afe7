#pragma once

#include <windows.h>

#include <oleacc.h>

namespace tavrix::accessible {

/// The system's library for assistive programs. It is loaded when one asks for the first time, and
/// stays.
struct SystemAccessibility {
  decltype(&LresultFromObject) result_from_object;
  decltype(&CreateStdAccessibleObject) standard_object;

  /// Throws `ComFailure`.
  [[nodiscard]] static const SystemAccessibility& Get();
};

}  // namespace tavrix::accessible
