#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>

#include "book/ledger/vouchers.h"
#include "viewkit/ports.h"

namespace desk::views {

namespace viewkit = tavrix::viewkit;

/// What can be done with a posted voucher from wherever it is shown. All of it throws what the book
/// raises.
class VoucherActions {
 public:
  struct Calls {
    /// Shows a voucher in full; may be empty, as the others.
    std::function<void(const book::VoucherKey&)> open = {};
    /// Brings these lines where vouchers are entered.
    std::function<void(const book::Voucher&)> enter = {};
    /// Shows the sheet of an account.
    std::function<void(const std::string& code)> open_account = {};
    std::function<std::chrono::year_month_day()> today = {};
  };
  /// Book and user must outlive it.
  VoucherActions(book::Session& session, viewkit::UserPort& user, Calls calls);

  void Open(const book::VoucherKey& key) const;
  void OpenAccount(const std::string& code) const;
  /// A new voucher with the same lines, which is not posted yet.
  void Copy(const book::VoucherKey& key) const;
  /// Asks for a date, and posts the voucher that takes this one back. Gives that one; nothing when
  /// the user has given up.
  std::optional<book::VoucherKey> Reverse(const book::VoucherKey& key) const;

 private:
  book::Session& session_;
  viewkit::UserPort& user_;
  Calls calls_;
};

}  // namespace desk::views
