#include "views/foreign_amount.h"

#include <cmath>

namespace desk::views {

ForeignAmount::Worked ForeignAmount::WorkOut(bool by_rate) {
  const auto round = [](double hundredths, std::int64_t& into, Worked worked) {
    constexpr double kMax = 1e15;
    if (!(std::abs(hundredths) <= kMax)) return Worked::kTooLarge;
    into = std::llround(hundredths);
    return worked;
  };
  if (foreign != 0 && rate != 0 && (by_rate || amount == 0)) {
    return round(static_cast<double>(foreign) * rate, amount, Worked::kAmount);
  }
  if (foreign != 0 && amount != 0) {
    rate = static_cast<double>(amount) / static_cast<double>(foreign);
    return Worked::kRate;
  }
  if (rate != 0 && amount != 0) {
    return round(static_cast<double>(amount) / rate, foreign, Worked::kForeign);
  }
  return Worked::kNothing;
}

}  // namespace desk::views
