#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "book/session/session.h"

/// Accounts as they stand in a book: every column that a person fills.
namespace desk::book {

/// The texts of an account, then its flags.
enum class AccountField : std::uint8_t {
  kCode,
  kName,
  kCategory,
  kMnemonic,
  kEnglish,
  kBookType,
  kCurrency,
  kUnit,
  kGather,
  kOther,
  kDebit,
  kForeign,
  kDepartment,
  kPerson,
  kCustomer,
  kSupplier,
  kProject,
  kJournal,
  kBankBook,
  kCash,
  kBank,
  kCashItem,
  kSealed,
};
inline constexpr std::size_t kTextFields = static_cast<std::size_t>(AccountField::kDebit);
inline constexpr std::size_t kAccountFields = static_cast<std::size_t>(AccountField::kSealed) + 1;

[[nodiscard]] constexpr std::size_t IndexOf(AccountField field) {
  return static_cast<std::size_t>(field);
}
[[nodiscard]] constexpr bool IsFlag(AccountField field) {
  return IndexOf(field) >= kTextFields;
}

/// Its column of `gl_code`.
[[nodiscard]] std::string_view ColumnOf(AccountField field);

class AccountRecord {
 public:
  [[nodiscard]] const std::string& Text(AccountField field) const {
    return texts_.at(IndexOf(field));
  }
  std::string& Text(AccountField field) { return texts_.at(IndexOf(field)); }
  [[nodiscard]] bool Flag(AccountField field) const { return flags_.test(FlagOf(field)); }
  void SetFlag(AccountField field, bool set) { flags_.set(FlagOf(field), set); }

  [[nodiscard]] const std::string& Code() const { return Text(AccountField::kCode); }
  /// For users and files: a side is "借" or "贷", any other flag "是" or nothing.
  [[nodiscard]] std::string Shown(AccountField field) const;

  friend bool operator==(const AccountRecord&, const AccountRecord&) = default;

 private:
  static std::size_t FlagOf(AccountField field) { return IndexOf(field) - kTextFields; }

  std::array<std::string, kTextFields> texts_;
  std::bitset<kAccountFields - kTextFields> flags_;
};

/// An account of a book, with what the book makes of it.
struct KeptAccount {
  std::int64_t id = 0;
  AccountRecord account = {};
  int level = 0;
  bool leaf = true;
};

/// The accounts that meet `condition` ("where ccode=?"), in the order of their codes; all without
/// one. `DatabaseError` when they cannot be read.
[[nodiscard]] std::vector<KeptAccount> ReadAccounts(Session& session,
                                                    const std::string& condition = {},
                                                    Values parameters = {});

}  // namespace desk::book
