#include "book/sqlite_engine.h"

#include <sqlite3.h>

#include <filesystem>
#include <string>
#include <utility>

#include "book/paths.h"
#include "book/sqlite_connection.h"
#include "book/sqlite_error.h"

namespace desk::book {

namespace {

constexpr int kReadOnlyFlags = SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_READONLY;

/// A connection serves one thread: locking it for each cell would cost more than reading the cell.
int FlagsFor(const Place& place) {
  switch (place.access) {
    case Access::kCreate:
      return SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    case Access::kReadWrite:
      return SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_READWRITE;
    case Access::kReadOnly:
      break;
  }
  return kReadOnlyFlags;
}

/// Without this an existing file would be opened instead of made, and a missing one reported in
/// words that fit every failure.
void CheckFile(const Place& place) {
  if (place.path == kInMemory) return;
  std::error_code ignored;
  const bool exists = std::filesystem::exists(PathOf(place.path), ignored);
  if (place.access == Access::kCreate && exists) {
    throw DatabaseError(Trouble::kOther, "文件已经存在：" + place.path);
  }
  if (place.access != Access::kCreate && !exists) {
    throw DatabaseError(Trouble::kOther, "账簿文件不存在：" + place.path);
  }
}

DatabaseError WithPath(const DatabaseError& error, const Place& place) {
  return {error.Reason(), error.what() + std::string("：") + place.path};
}

SqliteHandle OpenFile(const std::string& name, int flags) {
  sqlite3* raw = nullptr;
  const int result = sqlite3_open_v2(name.c_str(), &raw, flags, nullptr);
  SqliteHandle database(raw);  // also after a failure there is one to close
  if (result != SQLITE_OK) throw SqliteError(result, sqlite3_errstr(result));
  return database;
}

/// The path as a file URI that promises that nobody changes the file.
std::string ImmutableName(const std::string& path) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string name = "file:";
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    const bool plain = byte < 0x80 && c != '%' && c != '?' && c != '#' && c != '\\';
    if (plain) {
      name += c;
    } else {
      name += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
  }
  return name + "?immutable=1";
}

/// A book that was closed in good order can be read where nothing can be written, on a backup disc
/// for example; but the engine must be told that nobody writes there.
bool WantsImmutable(sqlite3* database, const Place& place) {
  if (sqlite3_db_readonly(database, "main") != 1) return false;
  const int result = sqlite3_exec(database, "pragma schema_version", nullptr, nullptr, nullptr);
  const int reason = result & 0xFF;
  std::error_code ignored;
  return (reason == SQLITE_CANTOPEN || reason == SQLITE_READONLY) &&
         !std::filesystem::exists(PathOf(place.path + "-wal"), ignored);
}

}  // namespace

std::unique_ptr<Connection> SqliteEngine::Open(const Place& place) const {
  CheckFile(place);
  try {
    SqliteHandle database = OpenFile(place.path, FlagsFor(place));
    if (WantsImmutable(database.get(), place)) {
      database = OpenFile(ImmutableName(place.path), kReadOnlyFlags | SQLITE_OPEN_URI);
    }
    return std::make_unique<SqliteConnection>(std::move(database), place);
  } catch (const DatabaseError& error) {
    if (place.access == Access::kCreate) Discard(place);
    throw WithPath(error, place);
  }
}

void SqliteEngine::Discard(const Place& place) const noexcept {
  for (const char* suffix : {"", "-wal", "-shm", "-journal"}) {
    std::error_code ignored;
    std::filesystem::remove(PathOf(place.path + suffix), ignored);
  }
}

}  // namespace desk::book
