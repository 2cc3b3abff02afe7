#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "book/ledger/trial_balance.h"
#include "book/session/session.h"

/// All that a book says of one account.
namespace desk::book {

struct NamedCode {
  std::string code;
  std::string name;
  friend bool operator==(const NamedCode&, const NamedCode&) = default;
};

/// What was posted in one month, in hundredths of the currency's unit.
struct MonthMovement {
  std::optional<Month> month;  ///< nothing for totals without a month of their own
  std::int64_t debit = 0;
  std::int64_t credit = 0;
  friend bool operator==(const MonthMovement&, const MonthMovement&) = default;
};

/// One account with what was posted to it and to all accounts below it.
struct AccountCard {
  NamedCode account = {};
  std::vector<NamedCode> parents = {};  ///< from the first level down to the account's own parent
  std::string category = {};
  bool debit_side = true;               ///< the side on which its balance is expected
  std::vector<std::string> kinds = {};  ///< kinds of auxiliary accounting, in words
  std::vector<std::string> books = {};  ///< how it is kept besides: currency, quantity, journal ...
  std::string book_type = {};
  std::string mnemonic = {};
  std::string controlled_by = {};
  bool sealed = false;
  bool leaf = true;
  std::vector<MonthMovement> months = {};  ///< in their order; totals without a month come first
  /// Of the parent's accounts together; nothing for an account of the first level.
  std::optional<std::int64_t> parent_balance = {};

  /// Positive on the debit side.
  [[nodiscard]] std::int64_t Balance() const;
  /// Its part of the parent's balance, in thousandths; nothing where there is none to speak of: no
  /// parent, or a parent whose balance is zero or on the other side.
  [[nodiscard]] std::optional<int> ShareOfParent() const;
};

/// Nothing when the chart has no such account. `DatabaseError` when a table cannot be read.
[[nodiscard]] std::optional<AccountCard> ReadAccountCard(Session& session, const std::string& code);

}  // namespace desk::book
