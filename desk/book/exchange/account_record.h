#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "book/session/session.h"

/// Accounts as they are exchanged with other programs: every column that a person fills.
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

/// What is known of a field.
struct FieldInfo {
  AccountField field;
  std::string_view column;  ///< of `gl_code`
  std::string_view title;   ///< as a file's header and dialogs show it
  /// Further titles by which a header means it, separated by "|": Chinese ones, and English ones in
  /// small letters without blanks.
  std::string_view others;
  int width;  ///< of its column in a sheet, in characters
};
/// In the order in which a file has them.
[[nodiscard]] std::span<const FieldInfo> Fields();
[[nodiscard]] const FieldInfo& InfoOf(AccountField field);

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

/// All accounts, in the order of their codes. `DatabaseError` when they cannot be read.
[[nodiscard]] std::vector<KeptAccount> ReadRecords(Session& session);

}  // namespace desk::book
