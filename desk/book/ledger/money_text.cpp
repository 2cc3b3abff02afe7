#include "book/ledger/money_text.h"

#include <algorithm>

#include "host/text.h"

namespace desk::book {

namespace {

using tavrix::host::IsDigit;

constexpr std::int64_t kMaxIntegerPart = 10'000'000'000'000;
constexpr std::size_t kPlaces = 2;

/// The digits of `text`, of which there may be none; nothing when it holds anything else.
std::optional<std::int64_t> IntegerPart(std::string_view text) {
  std::int64_t number = 0;
  for (const char unit : text) {
    if (unit == ',') continue;
    if (!IsDigit(unit)) return std::nullopt;
    number = number * 10 + (unit - '0');
    if (number > kMaxIntegerPart) return std::nullopt;
  }
  return number;
}

std::optional<std::int64_t> Hundredths(std::string_view text) {
  if (text.size() > kPlaces) return std::nullopt;
  std::string digits(text);
  digits.resize(kPlaces, '0');
  if (!IsDigit(digits[0]) || !IsDigit(digits[1])) return std::nullopt;
  return (digits[0] - '0') * 10 + (digits[1] - '0');
}

}  // namespace

std::optional<std::int64_t> ParseMoney(std::string_view text) {
  text = tavrix::host::Trimmed(text);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.empty()) return std::nullopt;
  }
  const std::size_t point = text.find('.');
  const std::string_view places = point == text.npos ? std::string_view() : text.substr(point + 1);
  if (text == "." || text.starts_with(',')) return std::nullopt;
  const auto whole = IntegerPart(text.substr(0, point));
  const auto hundredths = Hundredths(places);
  if (!whole || !hundredths) return std::nullopt;
  const std::int64_t amount = *whole * 100 + *hundredths;
  return negative ? -amount : amount;
}

std::string WhyNoMoney(std::string_view text) {
  if (ParseMoney(text)) return {};
  text = tavrix::host::Trimmed(text);
  if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
  const std::size_t point = std::min(text.find('.'), text.size());
  const auto all_digits = [](std::string_view part) { return std::ranges::all_of(part, IsDigit); };
  const std::string_view places = text.substr(std::min(point + 1, text.size()));
  if (places.size() > kPlaces && all_digits(places) && IntegerPart(text.substr(0, point))) {
    return "金额最多有两位小数";
  }
  std::string whole(text.substr(0, point));
  std::erase(whole, ',');
  if (!whole.empty() && all_digits(whole) && all_digits(places)) return "金额过大";
  return "金额不正确";
}

std::string MoneyText(std::int64_t hundredths) {
  const bool negative = hundredths < 0;
  // The least number has no positive counterpart, but as an unsigned one it has.
  const auto size = static_cast<std::uint64_t>(hundredths);
  std::string digits = std::to_string(negative ? 0 - size : size);
  if (digits.size() < 3) digits.insert(0, 3 - digits.size(), '0');
  digits.insert(digits.size() - kPlaces, ".");
  for (std::size_t at = digits.find('.'); at > 3; at -= 3) digits.insert(at - 3, ",");
  return negative ? "-" + digits : digits;
}

std::string CountText(std::int64_t count) {
  std::string digits = std::to_string(count);
  for (std::size_t at = digits.size(); at > 3; at -= 3) digits.insert(at - 3, ",");
  return digits;
}

}  // namespace desk::book
