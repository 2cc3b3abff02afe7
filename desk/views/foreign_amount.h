#pragma once

#include <cstdint>

namespace desk::views {

/// An amount, the same in a foreign currency, and what a unit of that comes to; 0 for what is not
/// known. Amounts are hundredths.
struct ForeignAmount {
  enum class Worked { kNothing, kAmount, kForeign, kRate, kTooLarge };

  std::int64_t amount = 0;
  std::int64_t foreign = 0;
  double rate = 0;

  /// Works out the third of them from the two that are known, and tells which that is; `by_rate`
  /// when all are known and the amount is the oldest. Nothing beyond what a book holds.
  [[nodiscard]] Worked WorkOut(bool by_rate);
};

}  // namespace desk::views
