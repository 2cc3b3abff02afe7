#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

/// Numbers as they are written, so that sums of money come out to the last digit.
namespace tavrix::viewkit {

/// `units` times 10 to the power of -`decimals`. Exact where `units` is a whole number of up to 15
/// digits; other numbers have `decimals` 0 and the nearest double.
struct Decimal {
  double units = 0;
  int decimals = 0;

  [[nodiscard]] double Value() const;
};

constexpr int kMaxDecimals = 9;

/// 10 to the power of 0 to `kMaxDecimals`.
[[nodiscard]] inline double PowerOfTen(int exponent) {
  constexpr std::array kPowers{1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};
  return kPowers[static_cast<std::size_t>(exponent)];
}

/// The number at the start of `text`, thousands separators accepted; 0 when there is none. Beyond
/// `kMaxDecimals` the nearest double.
[[nodiscard]] Decimal ReadDecimal(std::string_view text);

/// `text` without the commas that stand between digits.
[[nodiscard]] std::string WithoutSeparators(std::string_view text);

/// All digits of an exact number, the first 15 of another; no zeros at the end of the decimals.
[[nodiscard]] std::string DecimalText(const Decimal& number);

}  // namespace tavrix::viewkit
