#include "book/sqlite_file.h"

#include <sqlite3.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <utility>

#include "book/paths.h"
#include "book/schema.h"
#include "book/sqlite_error.h"

namespace desk::book {

namespace fs = std::filesystem;

namespace {

constexpr int kReadOnlyFlags = SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_READONLY;

/// Stops what a connection does for longer than a sound book needs.
class Deadline {
 public:
  explicit Deadline(sqlite3* database) : database_(database) {
    constexpr int kSteps = 10000;
    sqlite3_progress_handler(database_, kSteps, &Deadline::Passed, this);
  }
  Deadline(const Deadline&) = delete;
  Deadline& operator=(const Deadline&) = delete;
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
      throw DatabaseError(Trouble::kDamaged,
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

/// What a log holds is a part of the book. The connection that reads it keeps its index in memory
/// and leaves the log where it is.
void JudgeWithLog(const std::string& path) {
  const auto open = [&](int flags) {
    SqliteHandle database = OpenSqliteFile(path, flags);
    sqlite3_db_config(database.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    return database;
  };
  try {
    SqliteHandle database = open(SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_READWRITE);
    sqlite3_exec(database.get(), "pragma locking_mode=exclusive", nullptr, nullptr, nullptr);
    Judge(std::move(database), path);
  } catch (const DatabaseError& error) {
    if (error.Reason() == Trouble::kDamaged) throw;
    // Somebody works with it, so that the index is there already; or it cannot be written.
    Judge(open(kReadOnlyFlags), path, std::chrono::seconds(5));
  }
}

bool HasLog(const std::string& path) {
  std::error_code failed;
  const std::uintmax_t size = fs::file_size(PathOf(path + "-wal"), failed);
  return !failed && size > 0;
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

void JudgeSqliteFile(const std::string& path) {
  std::error_code failed;
  const fs::file_status status = fs::status(PathOf(path), failed);
  if (status.type() == fs::file_type::not_found) {
    throw DatabaseError(Trouble::kOther, "账簿文件不存在：" + path);
  }
  if (!fs::is_regular_file(status)) {
    throw DatabaseError(Trouble::kDamaged, "无法打开账簿文件（不是普通文件）：" + path);
  }
  if (HasLog(path)) return JudgeWithLog(path);
  try {
    Judge(OpenSqliteFile(ImmutableName(path), kReadOnlyFlags | SQLITE_OPEN_URI), path);
  } catch (const DatabaseError&) {
    // Somebody may have begun to work with it meanwhile.
    if (!HasLog(path)) throw;
    JudgeWithLog(path);
  }
}

}  // namespace desk::book
