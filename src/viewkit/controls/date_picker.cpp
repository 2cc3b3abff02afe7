#include "viewkit/controls/date_picker.h"

namespace tavrix::viewkit {
namespace {

constexpr std::size_t kYearDigits = 4;
constexpr std::size_t kAllDigits = 8;

}  // namespace

TypedDay::Result TypedDay::Add(char32_t unit) {
  if (unit == U'-' || unit == U'/' || unit == U'.') {
    return digits_.size() < kYearDigits ? Result::kOther : Result::kTaken;
  }
  if (unit < U'0' || unit > U'9') {
    Clear();
    return Result::kOther;
  }
  // A year typed once more: no month begins like that.
  if (digits_.size() == kYearDigits && unit > U'1') Clear();
  digits_ += static_cast<char>(unit);
  if (digits_.size() <= kYearDigits) return Result::kOther;
  if (digits_.size() < kAllDigits) return Result::kTaken;
  const int number = std::stoi(digits_);
  Clear();
  day_ = {std::chrono::year(number / 10000),
          std::chrono::month(static_cast<unsigned>(number / 100 % 100)),
          std::chrono::day(static_cast<unsigned>(number % 100))};
  return Result::kComplete;
}

}  // namespace tavrix::viewkit
