#pragma once

#include <span>

#include "viewkit/color.h"

namespace tavrix::viewkit {

/// A text with less contrast to its ground than this cannot be read.
inline constexpr double kLegible = 3.0;

/// How well two colours (0x00BBGGRR) can be told apart: from 1, not at all, to 21, black and white.
/// The contrast ratio of the Web Content Accessibility Guidelines.
[[nodiscard]] double Contrast(Color one, Color other);

/// The colour for a text on `ground`: `wanted` where it is legible, else the first of `others` that
/// is, else the one of all these that is the easiest to read.
[[nodiscard]] Color LegibleOn(Color ground, Color wanted, std::span<const Color> others);

}  // namespace tavrix::viewkit
