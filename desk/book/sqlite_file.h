#pragma once

#include <string>

#include "book/sqlite_connection.h"

/// Book files, as the engine opens them.
namespace desk::book {

/// `DatabaseError` when it cannot be opened. The flags are the engine's own.
[[nodiscard]] SqliteHandle OpenSqliteFile(const std::string& name, int flags);

/// The path as a file URI that promises the engine that nobody changes the file: it is read without
/// locks, and nothing is made beside it.
[[nodiscard]] std::string ImmutableName(const std::string& path);

/// Refuses with `DatabaseError` what is no file, no book or a book of a later version, and a book
/// whose tables are views that do not end. Neither the file nor what stands beside it changes.
void JudgeSqliteFile(const std::string& path);

}  // namespace desk::book
