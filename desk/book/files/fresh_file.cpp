#include "book/files/fresh_file.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <random>
#include <string>
#include <system_error>

#include "book/files/paths.h"
#include "host/error.h"
#include "host/text.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace desk::book {

namespace fs = std::filesystem;

namespace {

using NativeName = fs::path::string_type;

// Nobody calls a file of his own so.
constexpr std::string_view kMark = ".tavrix-";
constexpr std::size_t kDigits = 20;
constexpr std::string_view kEnding = ".new";

NativeName Native(std::string_view text) {
  return fs::path(text).native();
}

fs::path NameBeside(const fs::path& path) {
  // No process identifier: on a network share two machines may use the same one.
  std::random_device random;
  std::string digits;
  while (digits.size() < kDigits) digits += std::to_string(random());
  fs::path name = path;
  name += std::string(kMark) + digits.substr(0, kDigits) + std::string(kEnding);
  return name;
}

/// Whether `name` is one that `NameBeside` gives for `path`.
bool IsBeside(const fs::path& name, const fs::path& path) {
  const NativeName file = name.filename().native();
  const NativeName start = path.filename().native() + Native(kMark);
  const NativeName end = Native(kEnding);
  if (file.size() != start.size() + kDigits + end.size()) return false;
  if (!file.starts_with(start) || !file.ends_with(end)) return false;
  const auto digits = file.substr(start.size(), kDigits);
  return std::ranges::all_of(digits, [](auto c) { return c >= '0' && c <= '9'; });
}

/// Null when it cannot be made.
OpenFile Open(const fs::path& path) {
#ifdef _WIN32
  return OpenFile(_wfopen(path.c_str(), L"wb"));
#else
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (file < 0) return nullptr;
  (void)flock(file, LOCK_EX);
  return OpenFile(fdopen(file, "wb"));
#endif
}

/// Before it was held, somebody may have taken it for one that was left.
bool IsGone([[maybe_unused]] const OpenFile& file) {
#ifdef _WIN32
  return false;
#else
  struct stat now {};
  return fstat(fileno(file.get()), &now) == 0 && now.st_nlink == 0;
#endif
}

/// Removes it when nobody holds it: who made it is gone. Windows does not remove what somebody
/// holds, but a file is let go of for a moment before it gets its name.
void RemoveIfLeft(const fs::path& path) {
  std::error_code failed;
#ifdef _WIN32
  const auto age = fs::file_time_type::clock::now() - fs::last_write_time(path, failed);
  if (!failed && age > std::chrono::minutes(1)) fs::remove(path, failed);
#else
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
  if (file < 0) return;
  if (flock(file, LOCK_EX | LOCK_NB) == 0) fs::remove(path, failed);
  close(file);
#endif
}

fs::path FolderOf(const fs::path& path) {
  return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

void RemoveLeftBeside(const fs::path& path) {
  std::error_code ignored;
  for (const auto& entry : fs::directory_iterator(FolderOf(path), ignored)) {
    if (!IsBeside(entry.path(), path)) continue;
    std::error_code failed;
    if (entry.is_regular_file(failed)) RemoveIfLeft(entry.path());
  }
}

#ifndef _WIN32
/// The administrator who changes a user's file leaves it the user's. Who may not give a file away
/// keeps at least the group.
void TakeOverOwner(int file, const fs::path& path) {
  struct stat old {};
  if (stat(path.c_str(), &old) != 0) return;
  if (fchown(file, old.st_uid, old.st_gid) != 0) {
    (void)!fchown(file, static_cast<uid_t>(-1), old.st_gid);
  }
  (void)fchmod(file, old.st_mode & 07777U);
}

/// The new name is on the disk too.
void FlushFolder(const fs::path& path) {
  const int folder = open(FolderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder < 0) return;
  (void)fsync(folder);
  close(folder);
}
#endif

/// False when something has the name `to`.
bool MoveToFreeName(const fs::path& from, const fs::path& to, std::error_code& failed) {
#ifdef _WIN32
  if (MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_WRITE_THROUGH)) return true;
  const DWORD error = GetLastError();
  if (error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS) return false;
  failed.assign(static_cast<int>(error), std::system_category());
  return false;
#else
#ifdef RENAME_NOREPLACE
  if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
  if (errno == EEXIST) return false;
#endif
  // Where a file system or a kernel does not know that: a second name is refused when it is taken.
  if (link(from.c_str(), to.c_str()) == 0) {
    unlink(from.c_str());
    return true;
  }
  if (errno == EEXIST) return false;
  failed.assign(errno, std::generic_category());
  return false;
#endif
}

[[noreturn]] void Fail(const fs::path& path) {
  throw tavrix::host::HostError("不能写入文件：" + PathText(path));
}

}  // namespace

FreshFile::FreshFile(const fs::path& path) : path_(path), name_(NameBeside(path)) {
  RemoveLeftBeside(path_);
  file_ = Open(name_);
  while (file_ && IsGone(file_)) {
    name_ = NameBeside(path_);
    file_ = Open(name_);
  }
  if (!file_) Fail(path_);
#ifndef _WIN32
  TakeOverOwner(fileno(file_.get()), path_);
#endif
}

FreshFile::~FreshFile() {
  std::error_code ignored;
#ifdef _WIN32
  file_.reset();
#endif
  if (!name_.empty()) fs::remove(name_, ignored);
}

void FreshFile::Replace() {
#ifdef _WIN32
  file_.reset();  // Windows does not rename an open file
#endif
  std::error_code failed;
  fs::rename(name_, path_, failed);
  if (failed) Fail(path_);
  name_.clear();
  file_.reset();
}

bool FreshFile::Place() {
#ifdef _WIN32
  file_.reset();
#endif
  std::error_code failed;
  const bool placed = MoveToFreeName(name_, path_, failed);
  if (failed) Fail(path_);
  if (!placed) return false;
#ifndef _WIN32
  FlushFolder(path_);
#endif
  name_.clear();
  file_.reset();
  return true;
}

}  // namespace desk::book
