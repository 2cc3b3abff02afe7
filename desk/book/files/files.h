#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// Whole files, read and replaced.
namespace desk::book {

/// Empty when the file is missing or cannot be read.
[[nodiscard]] std::string ReadFile(const std::filesystem::path& path);

/// Throws `host::HostError` when a file at `path` could not be written; leaves it as it is, also
/// when it is missing.
void CheckWritable(const std::filesystem::path& path);

/// Puts `content` in place of the file in one step: after a crash at any moment the file is the
/// old one or the new one. Throws `host::HostError`, and the old one stays.
void ReplaceFile(const std::filesystem::path& path, std::string_view content);

}  // namespace desk::book
