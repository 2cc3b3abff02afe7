#include "book/files.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <system_error>

#include "host/error.h"
#include "host/path.h"

#ifdef _WIN32
#include <io.h>
#include <process.h>
#else
#include <unistd.h>
#endif

namespace desk::book {

namespace fs = std::filesystem;

namespace {

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

enum class Mode { kAppend, kReplace };

File OpenFile(const fs::path& path, Mode mode) {
#ifdef _WIN32
  return File(_wfopen(path.c_str(), mode == Mode::kAppend ? L"ab" : L"wb"));
#else
  return File(std::fopen(path.c_str(), mode == Mode::kAppend ? "ab" : "wb"));
#endif
}

int ProcessId() {
#ifdef _WIN32
  return _getpid();
#else
  return getpid();
#endif
}

/// The content is on the disk, not only on its way there.
bool Flush(std::FILE* file) {
  if (std::fflush(file) != 0) return false;
#ifdef _WIN32
  return _commit(_fileno(file)) == 0;
#else
  return fsync(fileno(file)) == 0;
#endif
}

[[noreturn]] void Fail(const fs::path& path) {
  throw tavrix::host::HostError("不能写入文件：" + tavrix::host::PathText(path));
}

/// Beside the file, where no other process writes: two of them that save at once must not mix.
fs::path FreshName(const fs::path& path) {
  fs::path fresh = path;
  fresh += "." + std::to_string(ProcessId()) + ".new";
  return fresh;
}

bool WriteWhole(const fs::path& path, std::string_view content) {
  const File file = OpenFile(path, Mode::kReplace);
  if (!file) return false;
  const bool written = std::fwrite(content.data(), 1, content.size(), file.get()) == content.size();
  return written && Flush(file.get());
}

}  // namespace

std::string ReadFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void CheckWritable(const fs::path& path) {
  std::error_code failed;
  if (fs::status(path, failed).type() != fs::file_type::not_found) {
    if (!OpenFile(path, Mode::kAppend)) Fail(path);
    return;
  }
  const fs::path fresh = FreshName(path);
  const bool made = OpenFile(fresh, Mode::kReplace) != nullptr;
  fs::remove(fresh, failed);
  if (!made) Fail(path);
}

void ReplaceFile(const fs::path& path, std::string_view content) {
  const fs::path fresh = FreshName(path);
  std::error_code failed;
  if (WriteWhole(fresh, content)) {
    fs::rename(fresh, path, failed);
    if (!failed) return;
  }
  fs::remove(fresh, failed);
  Fail(path);
}

}  // namespace desk::book
