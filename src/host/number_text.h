#pragma once

#include <string>

/// Numbers as decimal texts, with a point whatever the program's locale says. `std::to_chars` gives
/// the same, but its tables for floating point would be a ninth of the whole library.
namespace tavrix::host {

/// `number` in its shortest decimal form; whole numbers without a point.
[[nodiscard]] std::string NumberText(double number);

/// As `NumberText`, but never with a power of ten.
[[nodiscard]] std::string PlainNumberText(double number);

/// `number` with exactly `decimals` places, 0 to 340.
[[nodiscard]] std::string FixedText(double number, int decimals);

/// The number nearest to the first 1 to 17 significant `digits` of `number`, which is finite.
[[nodiscard]] double RoundedToDigits(double number, int digits);

/// The double whose shortest text is that of the float.
[[nodiscard]] double Widened(float number);

}  // namespace tavrix::host
