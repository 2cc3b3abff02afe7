#pragma once

#include <sqlite3.h>

#include <string>

#include "book/database/database.h"

namespace desk::book {

/// The last failure of `database` as users shall read it; SQLite's own words stand behind.
[[nodiscard]] DatabaseError SqliteError(sqlite3* database);

/// The same for a result code and text that are known already.
[[nodiscard]] DatabaseError SqliteError(int extended_code, const std::string& message);

}  // namespace desk::book
