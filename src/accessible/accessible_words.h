#pragma once

#include <windows.h>

#include <oleacc.h>

#include <string>

#include "viewkit/accessible.h"

/// What of a control's `Accessible` has other words, or numbers, in the system's interface.
namespace tavrix::accessible {

[[nodiscard]] inline VARIANT Number(LONG number) {
  VARIANT value{};
  value.vt = VT_I4;
  value.lVal = number;
  return value;
}

/// The number of a child as callers give it: scripts leave it out for the object itself, or give a
/// short one.
[[nodiscard]] inline VARIANT ChildOf(const VARIANT& given) {
  const bool left_out =
      given.vt == VT_EMPTY || (given.vt == VT_ERROR && given.scode == DISP_E_PARAMNOTFOUND);
  if (left_out) return Number(CHILDID_SELF);
  return given.vt == VT_I2 ? Number(given.iVal) : given;
}

[[nodiscard]] inline bool IsSelf(const VARIANT& child) {
  return child.vt == VT_I4 && child.lVal == CHILDID_SELF;
}

/// `ROLE_SYSTEM_...`
[[nodiscard]] LONG RoleNumber(viewkit::AccessibleRole role);
/// `STATE_SYSTEM_...`
[[nodiscard]] LONG StateBits(const viewkit::AccessibleStates& states);
/// What the user is told that the default action does; empty for none.
[[nodiscard]] std::string ActionText(const viewkit::Accessible& inside, viewkit::AccessibleId id);

}  // namespace tavrix::accessible
