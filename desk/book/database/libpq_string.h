#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace desk::book {

/// Keys and values of a connection string in the order in which they stand.
using LibpqWords = std::vector<std::pair<std::string, std::string>>;

/// Whether a place starts as PostgreSQL's own programs write one, however it goes on.
[[nodiscard]] bool StartsAsLibpq(std::string_view place);

/// Whether a place is written as PostgreSQL's own programs take it (PostgreSQL documentation,
/// "Connection Strings"): "host=... dbname=...", or "postgresql://...".
[[nodiscard]] bool IsLibpqString(std::string_view place);

/// Its words; nothing when it is not well formed.
[[nodiscard]] std::optional<LibpqWords> ParseLibpq(std::string_view place);

/// The same for PostgreSQL's ODBC driver.
[[nodiscard]] std::string OdbcFromLibpq(const LibpqWords& words);

}  // namespace desk::book
