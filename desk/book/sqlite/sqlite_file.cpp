#include "book/sqlite/sqlite_file.h"

#include <sqlite3.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <random>
#include <utility>

#include "book/files/paths.h"
#include "book/session/schema.h"
#include "book/sqlite/sqlite_error.h"
#include "host/non_copyable.h"

namespace desk::book {

namespace fs = std::filesystem;

namespace {

constexpr int kReadOnlyFlags = SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_READONLY;
constexpr int kReadWriteFlags = SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_READWRITE;
constexpr const char* kLog = "-wal";
constexpr const char* kJournal = "-journal";

/// Stops what a connection does for longer than a sound book needs.
class Deadline : private tavrix::host::NonCopyable {
 public:
  explicit Deadline(sqlite3* database) : database_(database) {
    constexpr int kSteps = 10000;
    sqlite3_progress_handler(database_, kSteps, &Deadline::Passed, this);
  }
  ~Deadline() { sqlite3_progress_handler(database_, 0, nullptr, nullptr); }

 private:
  using Clock = std::chrono::steady_clock;
  static int Passed(void* self) {
    return Clock::now() > static_cast<Deadline*>(self)->end_ ? 1 : 0;
  }
  sqlite3* database_;
  Clock::time_point end_ = Clock::now() + std::chrono::seconds(3);
};

void CheckViews(Connection& connection) {
  for (const Table& table : SchemaTables()) {
    const host::Value name(table.name);
    const bool view =
        connection
            .Query("select 1 from sqlite_master where type='view' and name=? collate nocase",
                   Origin::kDesk, {&name, 1})
            ->Next();
    if (!view) continue;
    try {
      const auto rows = connection.Query("select * from " + std::string(table.name), Origin::kDesk);
      while (rows->Next()) {
      }
    } catch (const DatabaseError& error) {
      throw DatabaseError(ErrorKind::kDamaged,
                          "账簿的表 " + std::string(table.name) + " 不能读取：" + error.what());
    }
  }
}

/// Reads through `database`, which must not change anything.
void Judge(SqliteHandle database, const std::string& path,
           std::chrono::milliseconds patience = std::chrono::milliseconds(0)) {
  sqlite3* handle = database.get();
  SqliteConnection connection(std::move(database),
                              {.path = path, .access = Access::kReadOnly, .patience = patience});
  const Deadline deadline(handle);
  CheckViews(connection);
  (void)CheckSchema(connection, path);
}

void LeaveLog(sqlite3* database) {
  sqlite3_db_config(database, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
}

/// Closing a file by any other way than the engine's would let go of the locks that this process
/// has on it.
bool KeepsLog(const std::string& path) {
  constexpr int kPlace = 18;  // of the header
  const SqliteHandle database = OpenSqliteFile(path, kReadOnlyFlags);
  sqlite3_file* file = nullptr;
  sqlite3_file_control(database.get(), "main", SQLITE_FCNTL_FILE_POINTER, &file);
  char format = 0;
  return file != nullptr && file->pMethods != nullptr &&
         file->pMethods->xRead(file, &format, 1, kPlace) == SQLITE_OK && format == 2;
}

/// What a log holds is a part of the book.
void JudgeWithLog(const std::string& path, std::chrono::milliseconds patience) {
  try {
    return Judge(OpenSqliteFileWithLog(path), path);
  } catch (const DatabaseError& error) {
    if (error.Kind() == ErrorKind::kDamaged) throw;
    // Somebody works with it, so that the log's index is there already; or it cannot be written.
    if (error.Kind() == ErrorKind::kLocked || HasBeside(path, kLog)) {
      SqliteHandle database = OpenSqliteFile(path, kReadOnlyFlags);
      LeaveLog(database.get());
      return Judge(std::move(database), path, patience);
    }
  }
  Judge(OpenSqliteFile(ImmutableName(path), kReadOnlyFlags | SQLITE_OPEN_URI), path);
}

/// A copy of a file and its journal, in a folder that only this user may read.
class JournalCopy : private tavrix::host::NonCopyable {
 public:
  explicit JournalCopy(const std::string& path) {
    std::random_device random;
    folder_ = fs::temp_directory_path() /
              ("tavrix-" + std::to_string(random()) + "-" + std::to_string(random()));
    std::error_code failed;
    const bool made = fs::create_directory(folder_, failed);
    if (!made && !failed) failed = std::make_error_code(std::errc::file_exists);
    if (made) fs::permissions(folder_, fs::perms::owner_all, failed);
    for (const char* suffix : {"", kJournal}) {
      if (!failed) fs::copy_file(PathOf(path + suffix), PathOf(Name() + suffix), failed);
    }
    if (!failed) return;
    Remove();
    throw DatabaseError(ErrorKind::kOther, "不能读取账簿和它没有完成的更改：" + path);
  }
  ~JournalCopy() { Remove(); }

  [[nodiscard]] std::string Name() const { return PathText(folder_ / "book"); }

 private:
  void Remove() const noexcept {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }
  fs::path folder_;
};

/// What a killed program has changed is undone by whoever opens the file: in a copy of it, as long
/// as nobody knows whether it is a book.
void JudgeWithJournal(const std::string& path, std::chrono::milliseconds patience) {
  try {
    return Judge(OpenSqliteFile(path, kReadOnlyFlags), path, patience);
  } catch (const DatabaseError& error) {
    if (error.Kind() != ErrorKind::kReadOnly) throw;
  }
  const JournalCopy copy(path);
  Judge(OpenSqliteFile(copy.Name(), kReadWriteFlags), path);
}

}  // namespace

SqliteHandle OpenSqliteFile(const std::string& name, int flags) {
  sqlite3* raw = nullptr;
  const int result = sqlite3_open_v2(name.c_str(), &raw, flags, nullptr);
  SqliteHandle database(raw);  // also after a failure there is one to close
  if (result != SQLITE_OK) throw SqliteError(result, sqlite3_errstr(result));
  return database;
}

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

SqliteHandle OpenSqliteFileWithLog(const std::string& path) {
  SqliteHandle database = OpenSqliteFile(path, kReadWriteFlags);
  std::error_code ignored;
  if (fs::exists(PathOf(path + kLog), ignored)) LeaveLog(database.get());
  sqlite3_exec(database.get(), "pragma locking_mode=exclusive", nullptr, nullptr, nullptr);
  return database;
}

bool HasBeside(const std::string& path, const char* suffix) {
  std::error_code failed;
  const std::uintmax_t size = fs::file_size(PathOf(path + suffix), failed);
  return !failed && size > 0;
}

void JudgeSqliteFile(const std::string& path, std::chrono::milliseconds patience) {
  std::error_code failed;
  const fs::file_status status = fs::status(PathOf(path), failed);
  if (status.type() == fs::file_type::not_found) {
    throw DatabaseError(ErrorKind::kOther, "账簿文件不存在：" + path);
  }
  if (!fs::is_regular_file(status)) {
    throw DatabaseError(ErrorKind::kDamaged, "无法打开账簿文件（不是普通文件）：" + path);
  }
  // The engine would remove what stands beside an empty file.
  if (fs::file_size(PathOf(path), failed) == 0 && !failed) RefuseNoBook(path);
  if (HasBeside(path, kLog) || KeepsLog(path)) return JudgeWithLog(path, patience);
  JudgeWithJournal(path, patience);
}

}  // namespace desk::book
