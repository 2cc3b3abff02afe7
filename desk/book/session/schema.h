#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "book/database/tables.h"
#include "book/session/session.h"

/// The tables of a book.
namespace desk::book {

inline constexpr int kSchemaVersion = 6;

/// The statements that make all tables of a book in an empty database, as `dialect` writes them.
[[nodiscard]] std::vector<std::string> SchemaScript(SqlDialect dialect);

/// Whether all tables of a book are there without a row, as an administrator has made them, or as
/// a server keeps them that cannot undo their making.
[[nodiscard]] bool HasEmptySchema(Connection& connection);

/// Makes all tables in a database without a book, where they are not there yet; runs inside the
/// caller's transaction. `load` fills them before their indexes and rules are made, which is much
/// faster. `DatabaseError` when it is not known how the engine makes tables.
void CreateSchema(Connection& connection, const std::function<void()>& load = {});

/// Brings a book that an earlier desk has made up to this version; does nothing to others, nor
/// where nothing can be written. Versions 2 to 4 had other rules for the ledgers than `LedgerRules`
/// gives now, and no history; version 5 had rules that left others' postings out. `DatabaseError`
/// when the engine refuses: the book is as it was.
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
