#pragma once

#include "viewkit/ports.h"

namespace tavrix::viewkit::win32 {

/// Conversions at one resolution; halves are rounded away from zero.
struct Scale {
  int dpi = 96;

  [[nodiscard]] int ToPixels(int twips) const { return Rounded(twips, dpi, kTwipsPerInch); }
  [[nodiscard]] int ToTwips(int pixels) const { return Rounded(pixels, kTwipsPerInch, dpi); }
  /// A length drawn for 96 dots per inch, in pixels.
  [[nodiscard]] int Design(int pixels) const { return Rounded(pixels, dpi, 96); }

 private:
  [[nodiscard]] static int Rounded(int value, int by, int divisor) {
    const long long product = static_cast<long long>(value) * by;
    return static_cast<int>((product + (product < 0 ? -divisor : divisor) / 2) / divisor);
  }
};

}  // namespace tavrix::viewkit::win32
