#pragma once

#include <chrono>
#include <string>

#include "book/sqlite/sqlite_connection.h"

/// Book files, as the engine opens them.
namespace desk::book {

/// `DatabaseError` when it cannot be opened. The flags are the engine's own.
[[nodiscard]] SqliteHandle OpenSqliteFile(const std::string& name, int flags);

/// The path as a file URI that promises the engine that nobody changes the file: it is read without
/// locks, and nothing is made beside it.
[[nodiscard]] std::string ImmutableName(const std::string& path);

/// A connection that reads what the log beside the file holds, where nothing can be made: it keeps
/// the log's index in memory, leaves the log where it is, and keeps others out as long as it reads.
[[nodiscard]] SqliteHandle OpenSqliteFileWithLog(const std::string& path);

/// Whether something that is not empty stands beside the file, under its name with `suffix`.
[[nodiscard]] bool HasBeside(const std::string& path, const char* suffix);

/// Refuses with `DatabaseError` what is no file, no book or a book of a later version, and a book
/// whose tables are views that do not end; waits for others as long as `patience`. Neither the file
/// nor what stands beside it changes.
void JudgeSqliteFile(const std::string& path, std::chrono::milliseconds patience);

}  // namespace desk::book
