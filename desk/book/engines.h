#pragma once

#include <string_view>

#include "book/database/database.h"

namespace desk::book {

/// The engine that serves `path`.
[[nodiscard]] const Engine& EngineFor(std::string_view path);

}  // namespace desk::book
