#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "book/exchange/field_info.h"
#include "book/exchange/source_table.h"

/// Which column of a file means what.
namespace desk::book {

/// For each field the column of the file that holds it, from 0.
class ColumnMap {
 public:
  [[nodiscard]] std::optional<std::size_t> ColumnOf(AccountField field) const {
    return columns_.at(IndexOf(field));
  }
  /// What a column means; nothing when it is left out.
  [[nodiscard]] std::optional<AccountField> FieldAt(std::size_t column) const;
  /// A column has one meaning, and a field stands in one column: what was otherwise ends.
  void Set(std::size_t column, std::optional<AccountField> field);

  friend bool operator==(const ColumnMap&, const ColumnMap&) = default;

 private:
  std::array<std::optional<std::size_t>, kAccountFields> columns_;
};

/// The field that a header means, in Chinese or English, whatever its case, blanks, signs and what
/// stands in brackets behind it.
[[nodiscard]] std::optional<AccountField> FieldOfHeader(std::string_view header);

/// The header among the first rows of a file: the row that names the code and most fields besides,
/// one at least. Of a header of two rows it is the second. Nothing when no row does.
[[nodiscard]] std::optional<std::size_t> FindHeader(const SourceTable& table);

/// The texts of the header at a place of the table: what a header of two rows has in the upper one
/// alone stands in the lower one too.
[[nodiscard]] SourceRow HeaderAt(const SourceTable& table, std::size_t place);

/// By the header; of two columns that mean the same the first one counts.
[[nodiscard]] ColumnMap MatchHeader(const SourceRow& header);

/// Without a header, by what the rows hold: a column of codes and the first other column of texts.
[[nodiscard]] ColumnMap GuessColumns(const SourceTable& table);

}  // namespace desk::book
