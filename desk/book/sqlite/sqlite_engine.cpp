#include "book/sqlite/sqlite_engine.h"

#include <sqlite3.h>

#include <filesystem>
#include <string>
#include <utility>

#include "book/files/fresh_file.h"
#include "book/files/paths.h"
#include "book/session/session.h"
#include "book/sqlite/sqlite_connection.h"
#include "book/sqlite/sqlite_error.h"
#include "book/sqlite/sqlite_file.h"

namespace desk::book {

namespace {

// A connection serves one thread: locking it for each cell would cost more than reading the cell.
constexpr int kReadOnlyFlags = SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_READONLY;
constexpr int kReadWriteFlags = SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_READWRITE;

DatabaseError WithPath(const DatabaseError& error, const std::string& path) {
  const std::string text = error.what();
  return {error.Kind(), text.find(path) == std::string::npos ? text + "：" + path : text};
}

bool NeedsToWrite(sqlite3* database) {
  if (sqlite3_db_readonly(database, "main") != 1) return false;
  const int result = sqlite3_exec(database, "pragma schema_version", nullptr, nullptr, nullptr);
  const int reason = result & 0xFF;
  return reason == SQLITE_CANTOPEN || reason == SQLITE_READONLY;
}

/// A book that was closed in good order can be read on a backup disc for example; but the engine
/// must be told that nobody writes there.
SqliteHandle OpenWhereNothingCanBeWritten(const std::string& path) {
  if (HasBeside(path, "-wal")) return OpenSqliteFileWithLog(path);
  if (HasBeside(path, "-journal")) {
    throw DatabaseError(ErrorKind::kReadOnly,
                        "账簿有没有完成的更改，须先由可以写入的用户打开一次：" + path);
  }
  return OpenSqliteFile(ImmutableName(path), kReadOnlyFlags | SQLITE_OPEN_URI);
}

std::unique_ptr<Connection> OpenForReading(Place place) {
  place.access = Access::kReadOnly;
  SqliteHandle database = OpenSqliteFile(place.path, kReadOnlyFlags);
  if (NeedsToWrite(database.get())) database = OpenWhereNothingCanBeWritten(place.path);
  return std::make_unique<SqliteConnection>(std::move(database), place);
}

/// The file may be writable where its folder is not: nothing can be written then, since the log has
/// no place.
std::unique_ptr<Connection> OpenForWriting(const Place& place) {
  try {
    SqliteHandle database = OpenSqliteFile(place.path, kReadWriteFlags);
    if (sqlite3_db_readonly(database.get(), "main") == 1) return OpenForReading(place);
    return std::make_unique<SqliteConnection>(std::move(database), place);
  } catch (const DatabaseError& error) {
    if (error.Kind() == ErrorKind::kLocked) throw;  // a moment later it can be written
    try {
      return OpenForReading(place);
    } catch (const DatabaseError&) {  // the first reason is told
    }
    throw;
  }
}

[[noreturn]] void RefuseTaken(const std::string& path) {
  throw DatabaseError(ErrorKind::kOther, "文件已经存在：" + path);
}

std::shared_ptr<Session> MakeInMemory(const Filling& fill) {
  const Place place = {.path = kInMemory};
  auto session = std::make_shared<Session>(std::make_unique<SqliteConnection>(
      OpenSqliteFile(kInMemory, kReadWriteFlags), place, SqliteConnection::Use::kMake));
  fill(*session);
  return session;
}

/// The journal is in memory: a file whose making ends early goes as a whole.
void FillFile(const std::filesystem::path& file, const Filling& fill) {
  const Place place = {.path = PathText(file)};
  Session session(std::make_unique<SqliteConnection>(OpenSqliteFile(place.path, kReadWriteFlags),
                                                     place, SqliteConnection::Use::kMake));
  fill(session);
}

}  // namespace

std::unique_ptr<Connection> SqliteEngine::Open(const Place& place) const {
  try {
    JudgeSqliteFile(place.path, place.patience);
    return place.access == Access::kReadOnly ? OpenForReading(place) : OpenForWriting(place);
  } catch (const DatabaseError& error) {
    throw WithPath(error, place.path);
  }
}

std::shared_ptr<Session> SqliteEngine::Make(const Place& place, const Filling& fill) const {
  const std::string& path = place.path;
  if (path == kInMemory) return MakeInMemory(fill);
  const std::filesystem::path file = PathOf(path);
  std::error_code ignored;
  if (std::filesystem::exists(file, ignored)) RefuseTaken(path);
  try {
    FreshFile fresh(file);
    FillFile(fresh.Name(), fill);
    if (!fresh.Place()) RefuseTaken(path);
  } catch (const DatabaseError&) {
    throw;
  } catch (const host::HostError& error) {  // of the file itself
    throw DatabaseError(ErrorKind::kOther, error.what());
  }
  return std::make_shared<Session>(Open(place));
}

}  // namespace desk::book
