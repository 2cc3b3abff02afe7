#pragma once

#include <array>
#include <string>

#include "host/value.h"

namespace desk::book {

/// From the code itself to the last that begins with it, in every order that a server may keep
/// codes in: no digit comes after a "z". The values of "ccode>=? and ccode<=?".
[[nodiscard]] inline std::array<tavrix::host::Value, 2> WithAllBelow(const std::string& code) {
  return {code, code + "zzzzzzzz"};
}

}  // namespace desk::book
