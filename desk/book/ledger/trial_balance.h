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

/// Months in their order as statements number them (`kMonthPosition`). There is room for periods
/// beyond twelve, and for one before the first.
[[nodiscard]] constexpr int PositionOf(const Month& month) {
  constexpr int kPeriods = 100;
  return month.year * kPeriods + month.number;
}
inline constexpr char kMonthPosition[] = "fiscal_year*100+fiscal_period";

/// From the first month to the last, both included; without one there is no bound on that side, but
/// totals without a month of their own always come before.
struct Period {
  std::optional<Month> first = {};
  std::optional<Month> last = {};
  /// One month, or everything.
  [[nodiscard]] static Period Of(const std::optional<Month>& month) { return {month, month}; }
  [[nodiscard]] int FirstPosition() const { return first ? PositionOf(*first) : 1; }
  [[nodiscard]] int LastPosition() const { return last ? PositionOf(*last) : 1'000'000; }
  friend bool operator==(const Period&, const Period&) = default;
};

/// "2024-03".
[[nodiscard]] std::string MonthText(const Month& month);

/// An amount or a sum of amounts, of which some engines make a number with a fraction or a text.
[[nodiscard]] std::int64_t AmountAt(const Rows& rows, int column);

/// One account: a leaf, or one with the sums of all below it. Amounts are hundredths of the
/// currency's unit; balances of the debit side are positive.
struct TrialBalanceRow {
  std::string category;
  std::string first_level;  ///< code and name of the first-level account above it, or of itself
  std::string code;
  std::string name;
  bool sealed = false;
  bool leaf = true;
  bool listed = true;  ///< a code that the chart does not have is a row of the first level
  int level = 1;       ///< how many accounts are above it, and itself
  std::int64_t opening = 0;
  std::int64_t debit = 0;
  std::int64_t credit = 0;
  [[nodiscard]] std::int64_t Closing() const { return opening + debit - credit; }
};

/// The months of this calendar in which anything has been posted, in their order. `DatabaseError`
/// as below.
[[nodiscard]] std::vector<Month> PostedMonths(Session& session);

/// Which accounts a trial balance shows: a level from 1 on (and the leaves above it), or one of
/// these.
inline constexpr int kLeafAccounts = 0;
inline constexpr int kAllAccounts = -1;  ///< parents as well: their rows repeat what is below them

/// The accounts with a balance or with movements, those of one category together, the categories in
/// the order of their first codes, each in the order of the codes; at the end, at every level, the
/// codes that have totals but are no account's. Totals without a month of their own count as before
/// the first. `DatabaseError` when a table cannot be read.
[[nodiscard]] std::vector<TrialBalanceRow> ReadTrialBalance(Session& session, const Period& period,
                                                            int level = kLeafAccounts);

/// On how many levels the accounts of the chart stand. `DatabaseError` as above.
[[nodiscard]] int LevelsOfChart(Session& session);

}  // namespace desk::book
