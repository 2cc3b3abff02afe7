#include "host/number_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <string_view>
#include <utility>

namespace tavrix::host {

namespace {

/// What the C library has written in the program's locale, whose point may have several bytes.
std::string WithPoint(std::string_view written) {
  std::string text;
  for (const char c : written) {
    const bool own = (c >= '0' && c <= '9') || c == '-' || c == '+' || c == 'e';
    if (own) {
      text += c;
    } else if (text.empty() || text.back() != '.') {
      text += '.';
    }
  }
  return text;
}

std::string Scientific(double number, int digits) {
  std::array<char, 48> text;
  const int length = std::snprintf(text.data(), text.size(), "%.*e", digits - 1, number);
  return WithPoint({text.data(), static_cast<std::size_t>(length)});
}

template <class Float>
Float Read(std::string_view text) {
  Float number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

/// The text in scientific notation that comes after `text` among those with as many digits;
/// no number behind a nine.
std::string Next(std::string text) {
  ++text[text.find('e') - 1];
  return text;
}

/// The shortest text in scientific notation that reads as `number`, with zeros behind it.
template <class Float>
std::string Shortest(Float number) {
  using Limits = std::numeric_limits<Float>;
  // Of the texts with that many digits no two read as one number, so that a shorter one than the
  // first that is found would be the same with zeros. Below the normal numbers that does not hold.
  const int least = std::abs(number) < Limits::min() ? 1 : Limits::digits10;
  for (int digits = least; digits < Limits::max_digits10; ++digits) {
    std::string text = Scientific(static_cast<double>(number), digits);
    if (Read<Float>(text) == number) return text;
    // The neighbours of a power of two stand nearer below than above it: the next text may read as
    // the number where the nearest one does not.
    std::string next = Next(std::move(text));
    if (Read<Float>(next) == number) return next;
  }
  return Scientific(static_cast<double>(number), Limits::max_digits10);
}

/// A number's own digits, the first of them before the point, and the power of ten.
struct Digits {
  bool negative;
  std::string digits;
  int exponent;
};

Digits Split(std::string_view scientific) {
  Digits split{scientific.starts_with('-'), {}, 0};
  const std::size_t e = scientific.find('e');
  for (const char c : scientific.substr(0, e)) {
    if (c >= '0' && c <= '9') split.digits += c;
  }
  split.digits.erase(split.digits.find_last_not_of('0') + 1);
  std::string_view power = scientific.substr(e + 1);
  if (power.starts_with('+')) power.remove_prefix(1);
  std::from_chars(power.data(), power.data() + power.size(), split.exponent);
  return split;
}

bool IsWhole(const Digits& number) {
  return static_cast<int>(number.digits.size()) <= number.exponent + 1;
}

std::string Plain(const Digits& number) {
  std::string text;
  if (number.exponent < 0) {
    text = "0." + std::string(static_cast<std::size_t>(-number.exponent - 1), '0') + number.digits;
  } else if (IsWhole(number)) {
    text = number.digits;
    text.resize(static_cast<std::size_t>(number.exponent + 1), '0');
  } else {
    const auto whole = static_cast<std::size_t>(number.exponent + 1);
    text = number.digits.substr(0, whole) + "." + number.digits.substr(whole);
  }
  return (number.negative ? "-" : "") + text;
}

std::string WithPower(const Digits& number) {
  std::string text = number.negative ? "-" : "";
  text += number.digits.front();
  if (number.digits.size() > 1) text += "." + number.digits.substr(1);
  const std::string power = std::to_string(std::abs(number.exponent));
  return text + (number.exponent < 0 ? "e-" : "e+") + (power.size() < 2 ? "0" : "") + power;
}

std::string InfinityText(double number) {
  if (std::isnan(number)) return "nan";
  return number < 0 ? "-inf" : "inf";
}

/// Whether a number is written as it is where a shorter text with zeros would read the same: a
/// whole one whose power of ten would make it no shorter.
bool IsWrittenOut(const Digits& number) {
  return IsWhole(number) && Plain(number).size() <= WithPower(number).size();
}

/// Amounts and whole numbers, which most are: empty when `number` has more than two decimals or
/// more than 15 digits. A number that so few digits give has no shorter text.
std::string AmountText(double number) {
  const double hundredths = std::round(number * 100);
  if (std::abs(hundredths) >= 1e15 || hundredths / 100 != number) return {};
  const auto units = static_cast<std::int64_t>(hundredths);
  if (units == 0) return std::signbit(number) ? "-0" : "0";
  std::string text = std::to_string(std::abs(units) / 100);
  if (const std::int64_t cents = std::abs(units) % 100; cents != 0) {
    text += '.';
    text += static_cast<char>('0' + cents / 10);
    if (cents % 10 != 0) text += static_cast<char>('0' + cents % 10);
  }
  return number < 0 ? "-" + text : text;
}

}  // namespace

std::string NumberText(double number) {
  if (!std::isfinite(number)) return InfinityText(number);
  if (std::string text = AmountText(number); !text.empty()) return text;
  const Digits digits = Split(Shortest(number));
  if (digits.exponent >= -4 && digits.exponent < 15) return Plain(digits);
  if (IsWrittenOut(digits)) return FixedText(number, 0);
  std::string powered = WithPower(digits);
  std::string plain = Plain(digits);
  return powered.size() < plain.size() ? powered : plain;
}

std::string PlainNumberText(double number) {
  if (!std::isfinite(number)) return InfinityText(number);
  if (std::string text = AmountText(number); !text.empty()) return text;
  const Digits digits = Split(Shortest(number));
  return IsWhole(digits) ? FixedText(number, 0) : Plain(digits);
}

std::string FixedText(double number, int decimals) {
  // The greatest number has 309 digits before the point.
  std::array<char, 768> text;
  const int length = std::snprintf(text.data(), text.size(), "%.*f", decimals, number);
  return WithPoint({text.data(), static_cast<std::size_t>(length)});
}

double RoundedToDigits(double number, int digits) {
  return Read<double>(Scientific(number, digits));
}

double Widened(float number) {
  if (!std::isfinite(number) || number == 0) return static_cast<double>(number);
  const std::string text = Shortest(number);
  return IsWrittenOut(Split(text)) ? static_cast<double>(number) : Read<double>(text);
}

}  // namespace tavrix::host
