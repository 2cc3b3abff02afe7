#pragma once

#include <sqlite3.h>

namespace desk::book {

/// Adds the functions that statements use and SQLite lacks: `len(text)` and `left(text, count)`,
/// counted in UTF-16 units as the servers do. A null gives null.
void AddSqliteFunctions(sqlite3* database);

}  // namespace desk::book
