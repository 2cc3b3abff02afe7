#include "viewkit/ports.h"

#include <cstddef>

namespace tavrix::viewkit {

namespace {

/// U+1100 to U+115F and U+2E80 to U+FFEF but for the half-width forms, and all above U+FFFF: what
/// takes the place of two letters.
bool IsWide(unsigned lead, unsigned second, unsigned third) {
  if (lead >= 0xF0) return true;
  if (lead == 0xE1) return second >= 0x84 && second <= 0x85;
  if (lead == 0xE2) return second >= 0xBA;
  if (lead < 0xE3) return false;
  const bool half = lead == 0xEF && ((second == 0xBD && third >= 0xA1) || second == 0xBE);
  return !half;
}

class PlainMeasure : public TextMeasure {
 public:
  [[nodiscard]] int Width(std::string_view text, bool bold) const override {
    constexpr int kNarrow = 90;
    constexpr int kWide = 180;
    const auto byte = [&](std::size_t at) {
      return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U;
    };
    int width = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
      const bool inside = (byte(at) & 0xC0) == 0x80;
      if (inside) continue;
      width += IsWide(byte(at), byte(at + 1), byte(at + 2)) ? kWide : kNarrow;
    }
    return bold ? width + kTwipsPerPixel : width;
  }
  [[nodiscard]] int LineHeight() const override { return 195; }
};

}  // namespace

const TextMeasure& PlainTextMeasure() {
  static const PlainMeasure measure;
  return measure;
}

}  // namespace tavrix::viewkit
