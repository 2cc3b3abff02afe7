#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "book/session/session.h"

/// Vouchers: the desk's own postings, so that the ledgers of a book hold something.
namespace desk::book {

/// Whom and what an amount concerns beside its account.
struct Auxiliary {
  std::string department = {};
  std::string person = {};
  std::string customer = {};
  std::string supplier = {};
  std::string project = {};
  friend bool operator==(const Auxiliary&, const Auxiliary&) = default;
};

/// One line of a voucher. Amounts are hundredths of the currency's unit; exactly one side is set,
/// and a negative amount takes back.
struct Entry {
  std::string summary = {};
  std::string code = {};
  std::int64_t debit = 0;
  std::int64_t credit = 0;
  Auxiliary auxiliary = {};
  std::string currency = {};
  std::int64_t foreign_amount = 0;
  double quantity = 0;
};

struct Voucher {
  int year = 0;
  int month = 0;  ///< 1 to 12: the accounting period
  int day = 0;
  std::string prepared_by = {};  ///< empty: who works with the book (`Session::User`)
  std::vector<Entry> entries = {};
};

/// One amount on one of two sides; on neither when both are 0.
struct Sides {
  std::int64_t debit = 0;
  std::int64_t credit = 0;
  friend bool operator==(const Sides&, const Sides&) = default;
};

/// What `entries` lack to balance: a positive amount, on the side where it is missing.
[[nodiscard]] Sides Balancing(std::span<const Entry> entries);

/// A voucher is refused for one of its entries.
class EntryRefused : public DatabaseError {
 public:
  EntryRefused(std::size_t entry, bool partner, const std::string& text)
      : DatabaseError(ErrorKind::kRefused, text), entry_(entry), partner_(partner) {}
  /// Its position in the voucher, from 0.
  [[nodiscard]] std::size_t Position() const { return entry_; }
  /// For want of a partner, not for its account or amount.
  [[nodiscard]] bool LacksPartner() const { return partner_; }

 private:
  std::size_t entry_;
  bool partner_;
};

/// Enters `voucher` in the voucher table, the auxiliary ledger and the monthly totals, in one
/// transaction, and gives its number within the month, from 1. Refuses (`DatabaseError`, with a
/// text for users) what does not balance, and (`EntryRefused`, with a text that names the line)
/// entries on accounts that do not exist, are not leaf accounts, are sealed, or want a partner that
/// the entry does not name. `check` runs first inside the transaction; what it throws ends it.
int Post(Session& session, const Voucher& voucher, const std::function<void()>& check = {});

}  // namespace desk::book
