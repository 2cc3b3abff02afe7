#include "viewkit/grid/decimal.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>

#include "host/number_text.h"
#include "host/text.h"

namespace tavrix::viewkit {

namespace {

using host::IsDigit;

/// Every whole number up to this is a double.
constexpr double kExact = 9007199254740992.0;

/// What the plain way of reading does not know: blanks before the number, exponents, many digits.
double ReadUncommon(std::string_view text) {
  if (text.find(',') == std::string_view::npos) return host::LeadingNumber(text);
  return host::LeadingNumber(WithoutSeparators(text));
}

bool MayBeUncommon(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '+';
}

}  // namespace

double Decimal::Value() const {
  return decimals == 0 ? units : units / PowerOfTen(decimals);
}

std::string WithoutSeparators(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool between =
        i > 0 && i + 1 < text.size() && IsDigit(text[i - 1]) && IsDigit(text[i + 1]);
    if (text[i] != ',' || !between) plain.push_back(text[i]);
  }
  return plain;
}

Decimal ReadDecimal(std::string_view text) {
  constexpr int kMaxDigits = 15;
  const char* at = text.data();
  const char* const end = at + text.size();
  const bool negative = at != end && *at == '-';
  if (negative) ++at;
  if (at != end && MayBeUncommon(*at)) return {ReadUncommon(text)};
  std::int64_t units = 0;
  int digits = 0;
  int decimals = 0;
  bool point = false;
  for (; at != end; ++at) {
    const char c = *at;
    if (IsDigit(c)) {
      units = units * 10 + (c - '0');
      ++digits;
      decimals += point ? 1 : 0;
      if (digits > kMaxDigits) return {ReadUncommon(text)};
    } else if (c == '.' && !point) {
      point = true;
    } else {
      const bool separates =
          c == ',' && digits > 0 && IsDigit(at[-1]) && at + 1 != end && IsDigit(at[1]);
      if (separates) continue;
      if ((c == 'e' || c == 'E') && digits > 0) return {ReadUncommon(text)};
      break;
    }
  }
  if (decimals > kMaxDecimals) return {ReadUncommon(text)};
  const auto number = static_cast<double>(units);
  // Zero has no sign.
  return {negative && units != 0 ? -number : number, decimals};
}

std::string DecimalText(const Decimal& number) {
  const bool exact = std::abs(number.units) <= kExact && std::trunc(number.units) == number.units;
  std::array<char, 40> text;
  if (!exact) {
    // The digits beyond these are noise of the arithmetic.
    constexpr int kTrusted = 15;
    return host::NumberText(host::RoundedToDigits(number.Value(), kTrusted));
  }
  const char* const begin = text.data();
  const char* end = std::to_chars(text.data(), text.data() + text.size(),
                                  std::abs(static_cast<std::int64_t>(number.units)))
                        .ptr;
  int decimals = number.decimals;
  for (; decimals > 0 && end - begin > 1 && end[-1] == '0'; --decimals) --end;
  const bool zero = *begin == '0';
  const auto digits = static_cast<int>(end - begin);
  const int whole = std::max(digits - decimals, 0);
  std::string written(number.units < 0 ? "-" : "");
  if (whole == 0 || zero) written += '0';
  if (!zero) written.append(begin, static_cast<std::size_t>(whole));
  if (decimals == 0 || zero) return written;
  written += '.';
  written.append(static_cast<std::size_t>(std::max(decimals - digits, 0)), '0');
  return written.append(begin + whole, end);
}

}  // namespace tavrix::viewkit
