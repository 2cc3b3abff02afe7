#pragma once

#include <span>
#include <string_view>

/// The tables of a book.
namespace desk::book {

/// How a column is kept.
enum class ColumnKind {
  kKey,       ///< whole number, the table's key
  kInteger,   ///< whole number, 0 unless given
  kOptional,  ///< whole number, null unless given
  kFlag,      ///< 0 or 1, 0 unless given
  kText,      ///< text, empty unless given
  kCode,      ///< text that compares without case, so that a prefix search can use its index
  kMoney,     ///< hundredths of the currency's unit, 0 unless given
  kNumber,    ///< a number with a fraction, 0 unless given
  kKeyText,   ///< text that is part of the table's key
};

struct Column {
  std::string_view name;
  ColumnKind kind;
};

struct Table {
  std::string_view name;
  std::span<const Column> columns;
  std::span<const std::string_view> indexes;  ///< the statements that make them
};

/// Keeps two desks from giving one voucher number; it does not bind rows without one.
inline constexpr std::string_view kVoucherLineIndex =
    "create unique index gl_accvouch_line on "
    "gl_accvouch(fiscal_year,fiscal_period,voucher_number,line_number)";

/// The tables that callers' statements may use, the chart of accounts first.
[[nodiscard]] std::span<const Table> SchemaTables();

/// Null when callers may not use a table of that name (without regard to case).
[[nodiscard]] const Table* FindSchemaTable(std::string_view name);

/// The desk's own table, which callers cannot reach.
inline constexpr std::string_view kIdentifierTableName = "desk_identifier";

[[nodiscard]] const Table& IdentifierTable();

}  // namespace desk::book
