#pragma once

#include <optional>
#include <string>

#include "book/exchange/import_plan.h"

/// One row of a file on its way to an account; used by `PlanImport` alone.
namespace desk::book {

/// A row's cells by their meaning, without blanks around them.
class RowCells {
 public:
  RowCells(const SourceRow& row, const ColumnMap& columns) : row_(row), columns_(columns) {}
  /// Whether the file has the field at all.
  [[nodiscard]] bool Has(AccountField field) const { return columns_.ColumnOf(field).has_value(); }
  [[nodiscard]] std::string Text(AccountField field) const;

 private:
  const SourceRow& row_;
  const ColumnMap& columns_;
};

/// A cell's text without what stands around it: blanks of any width, tabs, ends of lines. Names are
/// often indented by such.
[[nodiscard]] std::string_view WithoutBlanks(std::string_view cell);

/// Sums and signatures below a list are no accounts: rows without a name and a code, or with what
/// is none.
[[nodiscard]] bool IsAccountRow(const RowCells& cells);

/// The code in a cell: of half width, without the decimals of a number, and without what parts its
/// levels where each part is as long as its level by the rule; without a rule, whatever the parts
/// are. Anything else stays as it is.
[[nodiscard]] std::string CodeIn(const std::string& cell, const std::string& rule);

/// Why a new account cannot have the code: only letters and digits, and of a level of the rule.
/// Empty when it can.
[[nodiscard]] std::string WhyNoCode(const std::string& code, const std::string& rule);

/// Fills `account`, which holds what the book or the account's parent gives, from the cells. The
/// reason, for users, when a cell cannot be taken; empty otherwise. The code is not touched.
[[nodiscard]] std::string TakeCells(const RowCells& cells, AccountRecord& account);

/// The category that a word means, of those that a chart has; nothing when it means none.
[[nodiscard]] std::optional<std::string> CategoryIn(const std::string& word);

}  // namespace desk::book
