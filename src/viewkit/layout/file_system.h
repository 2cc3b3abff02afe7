#pragma once

#include <string_view>

namespace tavrix::viewkit {

/// What the library needs of a file system. The standard library's <filesystem> would bring its
/// streams and locales along, which are half as large as all the rest.

/// Between the names of a path.
#ifdef _WIN32
inline constexpr char kPathSeparator = '\\';
#else
inline constexpr char kPathSeparator = '/';
#endif

/// Whether there is a file or folder of that name (UTF-8).
[[nodiscard]] bool Exists(std::string_view path);

/// Makes a folder (UTF-8) in one that is there; whoever needs it will see whether that worked.
void MakeFolder(std::string_view path);

}  // namespace tavrix::viewkit
