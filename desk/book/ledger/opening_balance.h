#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "book/ledger/posting.h"
#include "book/session/session.h"

/// Opening balances: what accounts held before the first month. They stand in all three ledgers,
/// as postings without a month.
namespace desk::book {

/// What an account opens with, or the part of it that one partner has. Hundredths of the currency's
/// unit, positive on the debit side.
struct OpeningLine {
  Auxiliary auxiliary = {};
  std::int64_t balance = 0;
  std::string currency = {};        ///< of the foreign amount; empty without one
  std::int64_t foreign_amount = 0;  ///< positive on the debit side, as is the quantity
  double quantity = 0;
  /// Nothing to keep, whatever partner it names.
  [[nodiscard]] bool Empty() const { return balance == 0 && foreign_amount == 0 && quantity == 0; }
  friend bool operator==(const OpeningLine&, const OpeningLine&) = default;
};

/// An account of the chart as opening balances see it.
struct OpeningAccount {
  std::string code = {};
  std::string name = {};
  int level = 1;  ///< how many accounts are above it, and itself
  bool leaf = true;
  bool debit_side = true;
  bool sealed = false;
  std::string currency = {};        ///< the foreign currency it is kept in; empty for none
  std::string unit = {};            ///< the unit in which quantities are kept; empty for none
  std::array<bool, 5> wanted = {};  ///< department, person, customer, supplier, project
  std::vector<OpeningLine> lines = {};
  [[nodiscard]] bool WantsPartner() const {
    return std::find(wanted.begin(), wanted.end(), true) != wanted.end();
  }
};

/// All accounts in the order of their codes, those without an opening balance too. Where an account
/// is kept by partner it has a line for each; what its total holds besides is a line without one.
/// Foreign amounts and quantities are those of the entries without a month.
/// `DatabaseError` when a table cannot be read.
[[nodiscard]] std::vector<OpeningAccount> ReadOpening(Session& session);

/// The new opening balance of one account: all of its lines.
struct OpeningChange {
  std::string code;
  std::vector<OpeningLine> lines;
};

/// Puts these accounts' opening balances in place of those that they have, in one transaction.
/// Others stay as they are. Refuses (`DatabaseError`, with a text for users) accounts that are gone
/// or are no leaf accounts, and amounts beyond what a book holds.
void SaveOpening(Session& session, const std::vector<OpeningChange>& changes);

}  // namespace desk::book
