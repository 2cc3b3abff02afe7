#pragma once

#include <string>

namespace desk::app {

/// "desk --copy FROM TO": copies a book to another place, of whatever engines, and tells how many
/// rows each table has, or why nothing was copied: to standard output where there is one, otherwise
/// in a box. While it copies it tells how far it has come, on standard error or in a dialog that
/// can cancel. Gives the program's exit code.
[[nodiscard]] int CopyByCommand(const std::wstring& from, const std::wstring& to);

}  // namespace desk::app
