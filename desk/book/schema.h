#pragma once

#include <array>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "book/session.h"

/// The tables of a book.
namespace desk::book {

inline constexpr int kSchemaVersion = 4;

/// How a column is kept.
enum class ColumnKind {
  kKey,       ///< whole number, the table's key
  kWhole,     ///< whole number, 0 unless given
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

/// The tables that callers' statements may use, the chart of accounts first.
[[nodiscard]] std::span<const Table> SchemaTables();

/// Null when callers may not use a table of that name (without regard to case).
[[nodiscard]] const Table* FindSchemaTable(std::string_view name);

/// The desk's own table, which callers cannot reach.
inline constexpr std::string_view kIdentifierTableName = "desk_identifier";

[[nodiscard]] const Table& IdentifierTable();

/// The statements that make all tables of a book in an empty database, as `flavor` writes them.
[[nodiscard]] std::vector<std::string> SchemaScript(Flavor flavor);

/// Whether all tables of a book are there without a row, as an administrator has made them, or as
/// a server keeps them that cannot undo their making.
[[nodiscard]] bool HasEmptySchema(Connection& connection);

/// Makes all tables in a database without a book, where they are not there yet; runs inside the
/// caller's transaction. `load` fills them before their indexes and rules are made, which is much
/// faster. `DatabaseError` when it is not known how the engine makes tables.
void CreateSchema(Connection& connection, const std::function<void()>& load = {});

/// Brings a book that an earlier desk has made up to this version; does nothing to others, nor
/// where nothing can be written. Versions 2 and 3 had other rules for the ledgers than
/// `LedgerRules` gives now. `DatabaseError` when the engine refuses: the book is as it was.
void RenewSchema(Session& session);

/// Makes the desk's own table of given identifiers in a book that has none.
void EnsureIdentifierTable(Connection& connection);

/// Says that a file or a database is no book.
[[noreturn]] void RefuseNoBook(const std::string& path);

/// Refuses a database that is no book, or one of a later version. What else a book lacks, tables
/// and columns, and keys that are too great, comes back as text, one line for each: such a book can
/// be used in part.
[[nodiscard]] std::string CheckSchema(Connection& connection, const std::string& path);

}  // namespace desk::book
