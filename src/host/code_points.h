#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace tavrix::host {

/// What stands in place of a bad unit.
inline constexpr char32_t kReplacement = 0xFFFD;

/// One code point of UTF-8 text from `at` on, which moves behind it. A bad unit counts as one, as
/// `kReplacement`.
[[nodiscard]] inline char32_t NextCodePoint(std::string_view text, std::size_t& at) {
  const auto unit = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = unit(at++);
  if (lead < 0x80) return lead;
  const int following = lead >= 0xF0 && lead < 0xF5   ? 3
                        : lead >= 0xE0 && lead < 0xF0 ? 2
                        : lead >= 0xC2 && lead < 0xE0 ? 1
                                                      : 0;
  if (following == 0) return kReplacement;
  char32_t point = lead & (0x3FU >> following);
  for (int i = 0; i < following; ++i) {
    const std::size_t next = at + static_cast<std::size_t>(i);
    if (next >= text.size() || (unit(next) & 0xC0) != 0x80) return kReplacement;
    point = (point << 6) | (unit(next) & 0x3F);
  }
  constexpr std::array<char32_t, 4> kMin = {0, 0x80, 0x800, 0x10000};
  const bool surrogate = point >= 0xD800 && point < 0xE000;
  if (point < kMin[static_cast<std::size_t>(following)] || surrogate || point > 0x10FFFF) {
    return kReplacement;
  }
  at += static_cast<std::size_t>(following);
  return point;
}

/// Writes `point` as UTF-8 to `to`, which has room for four bytes; gives where it ends.
inline char* PutUtf8(char* to, char32_t point) {
  const auto put = [&](char32_t bits) { *to++ = static_cast<char>(bits); };
  if (point < 0x80) {
    put(point);
  } else if (point < 0x800) {
    put(0xC0 | (point >> 6));
    put(0x80 | (point & 0x3F));
  } else if (point < 0x10000) {
    put(0xE0 | (point >> 12));
    put(0x80 | ((point >> 6) & 0x3F));
    put(0x80 | (point & 0x3F));
  } else {
    put(0xF0 | (point >> 18));
    put(0x80 | ((point >> 12) & 0x3F));
    put(0x80 | ((point >> 6) & 0x3F));
    put(0x80 | (point & 0x3F));
  }
  return to;
}

inline void AppendUtf8(std::string& text, char32_t point) {
  std::array<char, 4> units;
  text.append(units.data(), PutUtf8(units.data(), point));
}

}  // namespace tavrix::host
