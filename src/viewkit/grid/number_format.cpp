#include "viewkit/grid/number_format.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>

#include "host/number_text.h"
#include "host/text.h"
#include "viewkit/grid/decimal.h"

namespace tavrix::viewkit {

namespace {

using host::IsDigit;

/// Most cells hold a short whole number: nothing but digits, maybe after a minus.
std::optional<double> ShortInteger(std::string_view text) {
  constexpr std::size_t kMaxDigits = 15;
  const bool negative = text.starts_with('-');
  if (negative) text.remove_prefix(1);
  if (text.empty() || text.size() > kMaxDigits) return std::nullopt;
  std::int64_t number = 0;
  for (const char c : text) {
    if (!IsDigit(c)) return std::nullopt;
    number = number * 10 + (c - '0');
  }
  return static_cast<double>(negative ? -number : number);
}

struct NumberPattern {
  std::string before;
  std::string after;
  int whole_digits = 0;
  int least_decimals = 0;
  int most_decimals = 0;
  bool grouped = false;
  bool percent = false;
  bool has_digits = false;
};

/// Reads one section of a format, character by character.
class PatternReader {
 public:
  explicit PatternReader(std::string_view format) : format_(format) {}

  NumberPattern Read() {
    while (at_ < format_.size()) Step(format_[at_++]);
    return pattern_;
  }

 private:
  void Step(char c) {
    switch (c) {
      case '0':
      case '#':
        return Digit(c);
      case '.':
        if (point_) return Literal(c);
        point_ = true;
        return;
      case ',':
        if (!pattern_.has_digits) return Literal(c);
        pattern_.grouped = pattern_.grouped || !point_;
        return;
      case '%':
        pattern_.percent = true;
        return Literal(c);
      case '\\':
        if (at_ < format_.size()) Literal(format_[at_++]);
        return;
      case '"':
        return Quoted();
      default:
        Literal(c);
    }
  }

  void Digit(char c) {
    pattern_.has_digits = true;
    if (!point_) {
      // Behind a "0" every place is written.
      if (c == '0' || pattern_.whole_digits > 0) ++pattern_.whole_digits;
      return;
    }
    ++pattern_.most_decimals;
    if (c == '0') pattern_.least_decimals = pattern_.most_decimals;
  }

  void Quoted() {
    while (at_ < format_.size() && format_[at_] != '"') Literal(format_[at_++]);
    ++at_;
  }

  void Literal(char c) { (pattern_.has_digits || point_ ? pattern_.after : pattern_.before) += c; }

  std::string_view format_;
  std::size_t at_ = 0;
  bool point_ = false;
  NumberPattern pattern_;
};

std::string Grouped(const std::string& digits) {
  std::string grouped;
  for (std::size_t i = 0; i < digits.size(); ++i) {
    if (i > 0 && (digits.size() - i) % 3 == 0) grouped += ',';
    grouped += digits[i];
  }
  return grouped;
}

/// `FixedText` for more digits than a number holds: zeros stand behind its own ones, not the noise
/// of its binary form.
std::string FixedBeyond(double number, int decimals) {
  std::string text = host::PlainNumberText(number);
  const std::size_t point = text.find('.');
  const std::size_t own = point == std::string::npos ? 0 : text.size() - point - 1;
  const auto wanted = static_cast<std::size_t>(decimals);
  if (own > wanted) return host::FixedText(number, decimals);
  if (own == 0 && wanted > 0) text += '.';
  return text.append(wanted - own, '0');
}

/// Away from zero at the half, as people round: the shortest decimal form of the number decides,
/// not its binary one, so that 2.675 becomes 2.68.
std::string Rounded(double number, int decimals) {
  const double scale = std::pow(10.0, decimals);
  const double scaled = number * scale;
  constexpr double kExact = 1e15;
  if (scaled >= kExact) return FixedBeyond(number, decimals);
  const double nudged = std::floor(scaled * (1 + 4e-16) + 0.5);
  return host::FixedText(nudged / scale, decimals);
}

std::string Digits(double number, const NumberPattern& pattern) {
  const int most = std::min(pattern.most_decimals, 30);
  const std::string text = Rounded(pattern.percent ? number * 100 : number, most);
  const std::size_t point = std::min(text.find('.'), text.size());
  std::string whole = text.substr(0, point);
  if (whole == "0") whole.clear();
  const auto least = static_cast<std::size_t>(std::max(pattern.whole_digits, 0));
  if (whole.size() < least) whole.insert(0, least - whole.size(), '0');
  std::string decimals = point < text.size() ? text.substr(point + 1) : std::string();
  while (decimals.size() > static_cast<std::size_t>(pattern.least_decimals) &&
         decimals.back() == '0') {
    decimals.pop_back();
  }
  if (pattern.grouped) whole = Grouped(whole);
  if (whole.empty() && decimals.empty()) whole = "0";
  return decimals.empty() ? whole : whole + "." + decimals;
}

}  // namespace

namespace {

/// The sections of a format, which ";" separates outside quotes and not behind "\\". Another than
/// the first is empty where the format has none.
std::array<std::string_view, 3> SectionsOf(std::string_view format) {
  std::array<std::string_view, 3> sections;
  for (std::string_view& section : sections) {
    std::size_t end = 0;
    for (bool quoted = false; end < format.size() && (quoted || format[end] != ';'); ++end) {
      if (format[end] == '"') quoted = !quoted;
      if (format[end] == '\\' && !quoted) ++end;
    }
    end = std::min(end, format.size());
    section = format.substr(0, end);
    format.remove_prefix(std::min(end + 1, format.size()));
  }
  return sections;
}

}  // namespace

double LongCellNumber(std::string_view text) {
  return ReadDecimal(text).Value();
}

std::optional<double> WholeNumber(std::string_view text) {
  text = host::Trimmed(text);
  if (const auto number = ShortInteger(text)) return number;
  std::string plain = WithoutSeparators(text);
  if (plain.starts_with("+") && !plain.starts_with("+-")) plain.erase(0, 1);
  const bool starts_well =
      !plain.empty() && (IsDigit(plain[0]) || plain[0] == '-' || plain[0] == '.');
  if (!starts_well) return std::nullopt;
  double number = 0;
  const auto [end, error] = std::from_chars(plain.data(), plain.data() + plain.size(), number);
  const bool whole = end == plain.data() + plain.size() && std::isfinite(number);
  return error == std::errc() && whole ? std::optional(number) : std::nullopt;
}

std::string FormatNumber(double number, std::string_view format) {
  const auto [positive, negative, zero] = SectionsOf(format);
  std::string_view section = number < 0 ? negative : number == 0 ? zero : positive;
  // An empty section stands for the first one.
  const bool sign = number < 0 && section.empty();
  if (section.empty()) section = positive;
  const NumberPattern pattern = PatternReader(section).Read();
  if (!pattern.has_digits) return pattern.before + pattern.after;
  const std::string digits = Digits(std::abs(number), pattern);
  const bool any = digits.find_first_of("123456789") != std::string::npos;
  return (sign && any ? "-" : "") + pattern.before + digits + pattern.after;
}

}  // namespace tavrix::viewkit
