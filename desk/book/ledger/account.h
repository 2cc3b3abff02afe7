#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "book/session/session.h"
#include "host/account.h"

namespace desk::book {

/// One account as a book is filled with it; what is not named stays at the table's defaults.
struct Account {
  std::string code = {};
  std::string name = {};
  std::string category = {};
  std::string english = {};
  std::string help = {};  ///< mnemonic code
  bool debit = true;
  std::string currency = {};  ///< name of a currency of `tvxbz`; sets foreign currency accounting
  std::string unit = {};      ///< name of a unit of `tvxjldw`; sets quantity accounting
  bool person = false;
  bool customer = false;
  bool supplier = false;
  bool department = false;
  bool project = false;
  bool journal = false;
  bool bank_book = false;
  bool cash = false;
  bool bank = false;
  bool closed = false;
};

/// The book type that follows from currency and quantity accounting.
[[nodiscard]] std::string BookTypeOf(const Account& account);

/// Adds `accounts` to the chart inside the caller's transaction. Levels follow from `rule` (0 for a
/// code that fits none), an account is a leaf unless another of `accounts` begins with its code.
/// They must be in order of their codes.
void InsertAccounts(Connection& connection, const std::vector<Account>& accounts,
                    const std::string& rule);

}  // namespace desk::book
