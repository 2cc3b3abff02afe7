#include "viewkit/grid/date_format.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>

#include "host/text.h"
#include "viewkit/grid/number_format.h"

namespace tavrix::viewkit {

namespace {

constexpr std::chrono::sys_days kDayZero =
    std::chrono::year(1899) / std::chrono::December / std::chrono::day(30);
constexpr int kSecondsOfDay = 24 * 60 * 60;

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::chrono::year_month_day DayOf(const Date& date) {
  return std::chrono::year(date.year) / date.month / date.day;
}

/// Reads numbers and signs from the front of a text.
class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  /// A number of `least` to `most` digits.
  [[nodiscard]] bool Number(int& number, std::size_t least, std::size_t most) {
    std::size_t digits = 0;
    number = 0;
    for (; digits < text_.size() && text_[digits] >= '0' && text_[digits] <= '9'; ++digits) {
      if (digits == most) return false;
      number = number * 10 + (text_[digits] - '0');
    }
    text_.remove_prefix(digits);
    return digits >= least;
  }
  [[nodiscard]] bool Sign(std::string_view any_of, char& sign) {
    if (text_.empty() || any_of.find(text_[0]) == std::string_view::npos) return false;
    sign = text_[0];
    text_.remove_prefix(1);
    return true;
  }
  [[nodiscard]] bool AtEnd() const { return text_.empty(); }

 private:
  std::string_view text_;
};

/// Hour, minute and, where written, second; what follows the second counts for nothing.
bool ReadTime(Reader& reader, Date& date) {
  char sign = 0;
  if (!reader.Number(date.hour, 1, 2) || !reader.Sign(":", sign)) return false;
  if (!reader.Number(date.minute, 1, 2)) return false;
  if (reader.Sign(":", sign) && !reader.Number(date.second, 1, 2)) return false;
  int fraction = 0;
  if (reader.Sign(".", sign) && !reader.Number(fraction, 1, 9)) return false;
  return reader.AtEnd() && date.hour < 24 && date.minute < 60 && date.second < 60;
}

std::optional<Date> DateOfSerial(double serial) {
  constexpr double kLast = 2958466;  // the end of the year 9999
  if (!(serial >= 1 && serial < kLast)) return std::nullopt;
  const auto seconds = static_cast<std::int64_t>(std::llround(serial * kSecondsOfDay));
  const auto day = std::chrono::days(seconds / kSecondsOfDay);
  const std::chrono::year_month_day calendar(kDayZero + day);
  const int rest = static_cast<int>(seconds % kSecondsOfDay);
  return Date{static_cast<int>(calendar.year()),
              static_cast<int>(static_cast<unsigned>(calendar.month())),
              static_cast<int>(static_cast<unsigned>(calendar.day())),
              rest / 3600,
              rest / 60 % 60,
              rest % 60};
}

std::string Padded(int number, std::size_t digits) {
  std::string text = std::to_string(number);
  if (text.size() < digits) text.insert(0, digits - text.size(), '0');
  return text;
}

/// Goes through a format piece by piece: a run of one letter, or text that stands for itself.
class FormatReader {
 public:
  explicit FormatReader(std::string_view format) : format_(format) {}

  struct Piece {
    char letter = 0;  ///< in lower case; 0 for text, 'a' for "AM/PM"
    std::size_t count = 0;
    std::string_view text;
  };
  [[nodiscard]] bool AtEnd() const { return at_ >= format_.size(); }
  Piece Next() {
    constexpr std::string_view kHalves = "am/pm";
    if (host::LowerCase(format_.substr(at_, kHalves.size())) == kHalves) {
      at_ += kHalves.size();
      return {'a', 1, {}};
    }
    const char letter = Lower(format_[at_]);
    if (std::string_view("ymdhns").find(letter) == std::string_view::npos) return Literal();
    std::size_t count = 0;
    for (; !AtEnd() && Lower(format_[at_]) == letter; ++at_) ++count;
    return {letter, count, {}};
  }
  /// The letter of the next piece that is no text.
  [[nodiscard]] char Following() const {
    FormatReader rest = *this;
    while (!rest.AtEnd()) {
      if (const char letter = rest.Next().letter; letter != 0) return letter;
    }
    return 0;
  }

 private:
  Piece Literal() {
    const char sign = format_[at_++];
    if (sign == '\\' && !AtEnd()) return {0, 0, format_.substr(at_++, 1)};
    if (sign != '"') return {0, 0, format_.substr(at_ - 1, 1)};
    const std::size_t end = std::min(format_.find('"', at_), format_.size());
    const std::string_view text = format_.substr(at_, end - at_);
    at_ = end + 1;
    return {0, 0, text};
  }

  std::string_view format_;
  std::size_t at_ = 0;
};

std::string DayText(const Date& date, std::size_t count) {
  if (count < 3) return Padded(date.day, count);
  constexpr std::array kDays{"日", "一", "二", "三", "四", "五", "六"};
  const std::chrono::weekday day(std::chrono::sys_days(DayOf(date)));
  return std::string(count == 3 ? "周" : "星期") + kDays[day.c_encoding()];
}

int HourOfHalf(int hour) {
  return hour % 12 == 0 ? 12 : hour % 12;
}

}  // namespace

std::optional<Date> WrittenDate(std::string_view text) {
  Reader reader(host::Trimmed(text));
  Date date;
  char first = 0;
  char second = 0;
  if (!reader.Number(date.year, 4, 4) || !reader.Sign("-/.", first)) return std::nullopt;
  if (!reader.Number(date.month, 1, 2) || !reader.Sign("-/.", second)) return std::nullopt;
  if (!reader.Number(date.day, 1, 2) || first != second) return std::nullopt;
  if (!DayOf(date).ok()) return std::nullopt;
  char between = 0;
  if (!reader.AtEnd() && !(reader.Sign(" Tt", between) && ReadTime(reader, date))) {
    return std::nullopt;
  }
  return date;
}

std::optional<Date> DateOf(std::string_view text) {
  if (auto date = WrittenDate(text)) return date;
  const auto number = WholeNumber(text);
  if (!number) return std::nullopt;
  constexpr double kFirstWritten = 1000'01'01;
  if (*number < kFirstWritten || *number != std::floor(*number)) return DateOfSerial(*number);
  if (*number > 9999'12'31) return std::nullopt;
  const auto digits = static_cast<int>(*number);
  const Date date{digits / 10000, digits / 100 % 100, digits % 100};
  return DayOf(date).ok() ? std::optional(date) : std::nullopt;
}

double SerialOf(const Date& date) {
  const auto days = std::chrono::sys_days(DayOf(date)) - kDayZero;
  const int seconds = (date.hour * 60 + date.minute) * 60 + date.second;
  return static_cast<double>(days.count()) + static_cast<double>(seconds) / kSecondsOfDay;
}

bool IsDateFormat(std::string_view format) {
  bool dated = false;
  for (FormatReader reader(format); !reader.AtEnd();) {
    const FormatReader::Piece piece = reader.Next();
    if (piece.text == "0" || piece.text == "#") return false;
    dated = dated || piece.letter != 0;
  }
  return dated;
}

std::string FormatDate(const Date& date, std::string_view format) {
  bool halves = false;
  for (FormatReader reader(format); !reader.AtEnd();)
    halves = reader.Next().letter == 'a' || halves;
  std::string text;
  char before = 0;
  for (FormatReader reader(format); !reader.AtEnd();) {
    const FormatReader::Piece piece = reader.Next();
    const bool minute = piece.letter == 'm' && (before == 'h' || reader.Following() == 's');
    switch (minute ? 'n' : piece.letter) {
      case 'y':
        text += piece.count < 3 ? Padded(date.year % 100, 2) : Padded(date.year, 4);
        break;
      case 'm':
        text += Padded(date.month, piece.count);
        break;
      case 'd':
        text += DayText(date, piece.count);
        break;
      case 'h':
        text += Padded(halves ? HourOfHalf(date.hour) : date.hour, piece.count);
        break;
      case 'n':
        text += Padded(date.minute, piece.count);
        break;
      case 's':
        text += Padded(date.second, piece.count);
        break;
      case 'a':
        text += date.hour < 12 ? "AM" : "PM";
        break;
      default:
        text += piece.text;
    }
    if (piece.letter != 0) before = piece.letter;
  }
  return text;
}

}  // namespace tavrix::viewkit
