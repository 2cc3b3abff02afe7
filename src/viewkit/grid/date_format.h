#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Dates in grid cells: read from a text, and written in a column's format.
namespace tavrix::viewkit {

/// A day of the Gregorian calendar and a time on it.
struct Date {
  int year = 0;
  int month = 1;
  int day = 1;
  int hour = 0;
  int minute = 0;
  int second = 0;
  friend bool operator==(const Date&, const Date&) = default;
};

/// A date written as year, month, day with "-", "/" or "." between them; a time may follow. Only
/// days that exist.
[[nodiscard]] std::optional<Date> WrittenDate(std::string_view text);

/// As `WrittenDate`; also eight digits (20240131), and a number of days since 30 December 1899, in
/// which databases keep dates.
[[nodiscard]] std::optional<Date> DateOf(std::string_view text);

/// The number of days since 30 December 1899.
[[nodiscard]] double SerialOf(const Date& date);

/// Whether a format is one for dates: it has a letter of `FormatDate` and no sign for a digit.
[[nodiscard]] bool IsDateFormat(std::string_view format);

/// `date` in a format of "yyyy" or "yy", "MM" or "M", "dd" or "d", "hh" or "h", "mm" or "m" (the
/// minute behind the hour or before the second) or "nn", "ss" or "s", in letters of either case;
/// "ddd" and "dddd" give the day of the week, "AM/PM" makes hours count to 12. Other text stands as
/// it is, in quotes or behind "\" also when it holds these letters.
[[nodiscard]] std::string FormatDate(const Date& date, std::string_view format);

}  // namespace tavrix::viewkit
