#include "support/temp_folder.h"

#include <atomic>
#include <chrono>

namespace tavrix::test {

TempFolder::TempFolder() {
  static std::atomic<int> count = 0;
  const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
  path_ = std::filesystem::temp_directory_path() /
          ("tavrix-" + std::to_string(now) + "-" + std::to_string(++count));
  std::filesystem::create_directories(path_);
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string TempFolder::Path() const {
  const std::u8string text = path_.u8string();
  return {text.begin(), text.end()};
}

std::string TempFolder::File(const std::string& name) const {
  const std::u8string text = (path_ / std::u8string(name.begin(), name.end())).u8string();
  return {text.begin(), text.end()};
}

}  // namespace tavrix::test
