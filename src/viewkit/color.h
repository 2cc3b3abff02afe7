#pragma once

#include <cstdint>

namespace tavrix::viewkit {

/// A colour as Automation knows it (OLE_COLOR): 0x00BBGGRR, or 0x80000000 + a system colour index
/// of `GetSysColor`.
using Color = std::uint32_t;

namespace color {
inline constexpr Color kWindow = 0x80000005;
inline constexpr Color kWindowText = 0x80000008;
inline constexpr Color kHighlight = 0x8000000D;
inline constexpr Color kHighlightText = 0x8000000E;
inline constexpr Color kButtonFace = 0x8000000F;
inline constexpr Color kGrayText = 0x80000011;
inline constexpr Color kButtonText = 0x80000012;
inline constexpr Color kInfoBackground = 0x80000018;
/// The widget's own default.
inline constexpr Color kDefault = 0xFFFFFFFF;
}  // namespace color

/// A colour as hosts write it: a Long with or without its sign. What no Long can hold gives black.
[[nodiscard]] constexpr Color ColorOf(double number) {
  const bool in_range = number >= -2147483648.0 && number <= 4294967295.0;
  return in_range ? static_cast<Color>(static_cast<std::int64_t>(number)) : 0;
}

}  // namespace tavrix::viewkit
