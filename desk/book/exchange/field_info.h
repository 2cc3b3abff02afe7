#pragma once

#include <span>
#include <string_view>

#include "book/ledger/account_record.h"

/// Accounts as they are exchanged with other programs.
namespace desk::book {

/// What files know of a field.
struct FieldInfo {
  AccountField field;
  std::string_view title;  ///< as a file's header and dialogs show it
  /// Further titles by which a header means it, separated by "|": Chinese ones, and English ones in
  /// small letters without blanks.
  std::string_view others;
  int width;  ///< of its column in a sheet, in characters
};
/// In the order in which a file has them.
[[nodiscard]] std::span<const FieldInfo> Fields();
[[nodiscard]] const FieldInfo& InfoOf(AccountField field);

/// Whether `word` is one of `words`, which are separated by "|".
[[nodiscard]] bool IsListed(std::string_view words, std::string_view word);

}  // namespace desk::book
