#pragma once

#include <string>

#include "book/database/database.h"

namespace desk::book {

/// The engine and its version, as "SQLite 3.45.1"; the name alone where the version is not known.
[[nodiscard]] std::string EngineText(Connection& connection);

}  // namespace desk::book
