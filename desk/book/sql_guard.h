#pragma once

#include <string_view>

namespace desk::book {

/// Refuses, with `DatabaseError`, a caller's statement that could reach more than the tables of the
/// schema: for engines that cannot be asked which tables a statement touches. It knows what the
/// callers need and refuses all else: other functions, comments, quoting and escapes of one server.
/// `CheckCallerStatement` comes first.
void CheckCallerTables(std::string_view sql);

/// Whether a caller's statement reads.
[[nodiscard]] bool IsQuery(std::string_view sql);

}  // namespace desk::book
