#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace desk::book {

/// A file's path from UTF-8, on every system.
[[nodiscard]] inline std::filesystem::path PathOf(std::string_view path) {
  return std::filesystem::path(std::u8string(path.begin(), path.end()));
}

/// And back.
[[nodiscard]] inline std::string PathText(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

}  // namespace desk::book
