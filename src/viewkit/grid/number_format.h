#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// Numbers in grid cells: read from a text, and written in a column's format.
namespace tavrix::viewkit {

/// As `CellNumber`, for any text.
[[nodiscard]] double LongCellNumber(std::string_view text);

/// The number at the start of `text`, thousands separators accepted; 0 when there is none. A few
/// digits, as most cells hold them, are read at once.
[[nodiscard]] inline double CellNumber(std::string_view text) {
  constexpr std::size_t kFewDigits = 9;
  if (text.empty() || text.size() > kFewDigits) return LongCellNumber(text);
  int number = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') return LongCellNumber(text);
    number = number * 10 + (c - '0');
  }
  return number;
}

/// The number that `text` as a whole is, blanks around it and thousands separators accepted.
[[nodiscard]] std::optional<double> WholeNumber(std::string_view text);

/// `number` in a format made of "0" (a digit always written), "#" (a digit written where there is
/// one), "," between these (thousands separators), "." and "%" (times 100). A comma counts only
/// before the point. Text around the digits stands as it is, in quotes or behind "\" also when it
/// holds format characters. Formats for negative numbers and for zero may follow, each after ";";
/// where one of them is empty the first one counts. The point is left out where no decimal follows
/// it.
[[nodiscard]] std::string FormatNumber(double number, std::string_view format);

}  // namespace tavrix::viewkit
