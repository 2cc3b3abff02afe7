#include "book/files/log_file.h"

#include <algorithm>
#include <fstream>
#include <system_error>

#include "book/files/paths.h"
#include "host/report.h"

namespace desk::book {

namespace fs = std::filesystem;

std::filesystem::path LogFile::Old(int number) const {
  fs::path name = plan_.path.stem();
  name += "." + std::to_string(number);
  name += plan_.path.extension();
  return plan_.path.parent_path() / name;
}

/// A file that another program has open stays and grows a little longer.
void LogFile::MakeRoom() const {
  std::error_code error;
  const std::uintmax_t size = fs::file_size(plan_.path, error);
  if (error || size < plan_.most_bytes) return;
  fs::rename(Old(1), Old(2), error);
  fs::rename(plan_.path, Old(1), error);
}

void LogFile::Write(std::string_view word, std::string_view text) const noexcept {
  tavrix::host::IgnoreErrors([&] {
    MakeRoom();
    std::string line = plan_.now ? plan_.now() : std::string();
    line.append(" ").append(plan_.writer).append(" ").append(word).append(" ").append(text);
    const auto breaks = [](char unit) { return unit == '\n' || unit == '\r'; };
    std::ranges::replace_if(line, breaks, ' ');
    line += '\n';
    std::ofstream file(plan_.path, std::ios::binary | std::ios::app);
    file.write(line.data(), static_cast<std::streamsize>(line.size()));
  });
}

}  // namespace desk::book
