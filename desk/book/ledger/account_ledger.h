#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "book/ledger/account_card.h"
#include "book/ledger/posting.h"
#include "book/ledger/trial_balance.h"
#include "book/session/session.h"

/// The ledger of one account: what was posted to it and to all accounts below it, line by line.
namespace desk::book {

/// Amounts are hundredths of the currency's unit; balances of the debit side are positive.
struct LedgerLine {
  enum class Kind {
    kOpening,  ///< the balance before the lines that follow
    kEntry,    ///< one line of a voucher
    kMonth,    ///< what was posted in a month, and the balance at its end
    kYear,     ///< the same from the beginning of its year on
  };
  Kind kind = Kind::kEntry;
  Month month = {};       ///< but for the opening balance
  std::string date = {};  ///< of an entry, as are all texts that follow
  int voucher = 0;        ///< its number in the month; 0 for none
  std::string summary = {};
  std::string code = {};
  /// The account on the other side of the voucher; the first, and "等", where there are several.
  std::string counter = {};
  Auxiliary auxiliary = {};
  /// As the two next of an entry, or of the opening balance, on whose side they are positive, where
  /// all before is in one currency, or of one account; not of a page that goes on.
  std::string currency = {};
  std::int64_t foreign_amount = 0;
  double quantity = 0;
  std::int64_t debit = 0;
  std::int64_t credit = 0;
  std::int64_t balance = 0;
};

struct AccountLedger {
  AccountCard card;
  std::vector<LedgerLine> lines = {};
  std::int64_t opening = 0;  ///< before the period
  std::int64_t debit = 0;    ///< posted in the period, by the monthly totals
  std::int64_t credit = 0;
  std::int64_t entries = 0;     ///< how many there are in the period
  std::int64_t first = 0;       ///< how many of them come before those in `lines`
  std::int64_t shown = 0;       ///< how many are in `lines`
  std::int64_t difference = 0;  ///< what all entries come to beyond the monthly totals
  [[nodiscard]] std::int64_t Closing() const { return opening + debit - credit; }
};

/// So many entries make a page.
inline constexpr std::int64_t kLedgerPage = 20'000;

/// Opening balance, totals and balances of months are those of the monthly totals, as the trial
/// balance has them; `first` entries of the period are passed over, and no more than `page` are
/// read. Nothing when the chart has no
/// such account. `DatabaseError` when a table cannot be read.
[[nodiscard]] std::optional<AccountLedger> ReadAccountLedger(Session& session,
                                                             const std::string& code,
                                                             const Period& period,
                                                             std::int64_t first = 0,
                                                             std::int64_t page = kLedgerPage);

}  // namespace desk::book
