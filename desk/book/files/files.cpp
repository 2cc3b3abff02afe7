#include "book/files/files.h"

#include <fstream>
#include <iterator>
#include <system_error>

#include "book/files/fresh_file.h"
#include "book/files/paths.h"
#include "host/error.h"

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace desk::book {

namespace fs = std::filesystem;

namespace {

bool CanAppend(const fs::path& path) {
#ifdef _WIN32
  return OpenFile(_wfopen(path.c_str(), L"ab")) != nullptr;
#else
  return OpenFile(std::fopen(path.c_str(), "ab")) != nullptr;
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
  throw tavrix::host::HostError("不能写入文件：" + PathText(path));
}

}  // namespace

std::string ReadFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void CheckWritable(const fs::path& path) {
  std::error_code failed;
  const bool there = fs::status(path, failed).type() != fs::file_type::not_found;
  if (there && !CanAppend(path)) Fail(path);
  // It is replaced as a whole: its folder must take a file too.
  const FreshFile probe(path);
}

void ReplaceFile(const fs::path& path, std::string_view content) {
  FreshFile fresh(path);
  std::FILE* file = fresh.Content();
  const bool written = std::fwrite(content.data(), 1, content.size(), file) == content.size();
  if (!written || !Flush(file)) Fail(path);
  fresh.Replace();
}

}  // namespace desk::book
