#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "book/ledger/posting.h"
#include "book/ledger/trial_balance.h"
#include "book/session/session.h"

/// Posted vouchers: found, read, and taken back. None is ever changed or deleted.
namespace desk::book {

/// A posted voucher: its month, and its number in it.
struct VoucherKey {
  Month month = {};
  int number = 0;
  friend bool operator==(const VoucherKey&, const VoucherKey&) = default;
};
/// "2024-03 记-5 号".
[[nodiscard]] std::string VoucherName(const VoucherKey& key);

/// Which vouchers are looked for: those with a line to which all of this applies.
struct VoucherSearch {
  std::string first_date = {};  ///< "2024-03-01"; empty for no bound, as the last
  std::string last_date = {};
  std::string account = {};  ///< a code, with all below it; empty for any
  std::string text = {};     ///< in the summary, or in what the line names beside its account
  /// An amount on either side, in hundredths, whatever its sign; one alone is both bounds.
  std::optional<std::int64_t> least = {};
  std::optional<std::int64_t> most = {};
};

/// A voucher in a list of them.
struct VoucherHead {
  VoucherKey key = {};
  std::string date = {};
  std::string summary = {};  ///< of its first line
  std::int64_t total = 0;    ///< of its debit side
  std::string prepared_by = {};
};

/// The newest first, at most `limit`. `DatabaseError` when the vouchers cannot be read.
[[nodiscard]] std::vector<VoucherHead> FindVouchers(Session& session, const VoucherSearch& search,
                                                    int limit);

/// Nothing when there is none of that number. `DatabaseError` as above.
[[nodiscard]] std::optional<Voucher> ReadVoucher(Session& session, const VoucherKey& key);

/// What is known of a voucher and the one that takes it back.
struct Reversal {
  std::optional<VoucherKey> of = {};  ///< it takes this one back
  std::optional<VoucherKey> by = {};  ///< it has been taken back by this one
};
/// The summaries of the one name the other by its month and number, which stay, what happens to
/// accounts; its amounts are the opposite ones, line by line. `DatabaseError` as above.
[[nodiscard]] Reversal ReversalOf(Session& session, const VoucherKey& key);
/// Why the voucher cannot be taken back, for users; empty when it can.
[[nodiscard]] std::string WhyNoReversal(const VoucherKey& key, const Reversal& known);

/// Posts the same lines with the opposite amounts on the same sides. `date` says when, `entries` of
/// it are not looked at. Gives the new voucher. `DatabaseError` with a text for users when it
/// cannot be taken back, or when its lines cannot be posted any more.
[[nodiscard]] VoucherKey Reverse(Session& session, const VoucherKey& key, Voucher date);

}  // namespace desk::book
