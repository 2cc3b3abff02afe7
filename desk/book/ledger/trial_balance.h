#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "book/session/session.h"

/// The trial balance: what the monthly totals say of each account.
namespace desk::book {

struct Month {
  int year = 0;
  int number = 0;  ///< 1 to 12
  friend bool operator==(const Month&, const Month&) = default;
};

/// "2024-03".
[[nodiscard]] std::string MonthText(const Month& month);

/// An amount or a sum of amounts, of which some engines make a number with a fraction or a text.
[[nodiscard]] std::int64_t AmountAt(const Rows& rows, int column);

/// One leaf account. Amounts are hundredths of the currency's unit; balances of the debit side are
/// positive.
struct TrialBalanceRow {
  std::string category;
  std::string first_level;  ///< code and name of the first-level account above it, or of itself
  std::string code;
  std::string name;
  bool sealed = false;
  std::int64_t opening = 0;
  std::int64_t debit = 0;
  std::int64_t credit = 0;
  [[nodiscard]] std::int64_t Closing() const { return opening + debit - credit; }
};

/// The months of this calendar in which anything has been posted, in their order. `DatabaseError`
/// as below.
[[nodiscard]] std::vector<Month> PostedMonths(Session& session);

/// The accounts with a balance or with movements, those of one category together, the categories in
/// the order of their first codes, each in the order of the codes. Without a month: everything that
/// has been posted, from nothing on. Totals without a month of their own count as before the first.
/// `DatabaseError` when a table cannot be read.
[[nodiscard]] std::vector<TrialBalanceRow> ReadTrialBalance(Session& session,
                                                            const std::optional<Month>& month);

}  // namespace desk::book
