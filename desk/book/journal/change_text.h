#pragma once

#include <string>
#include <vector>

#include "book/journal/history.h"

/// Changes of accounts in words for users.
namespace desk::book {

struct FieldChange {
  std::string field;   ///< "科目名称"
  std::string before;  ///< "是", "借方", a text; empty where there was none
  std::string after;
};

/// "100101 人民币", as the account was called last.
[[nodiscard]] std::string AccountText(const AccountChange& change);

/// "新增", "删除", "修改".
[[nodiscard]] const char* ChangeWord(const AccountChange& change);

/// What differs, in the order of the account dialog; of an account that has come or gone what it
/// has or had.
[[nodiscard]] std::vector<FieldChange> FieldChanges(const AccountChange& change);

}  // namespace desk::book
