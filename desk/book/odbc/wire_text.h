#pragma once

#include <string>
#include <string_view>

#include "book/database/database.h"

/// What users read about the way between the desk and a server.
namespace desk::book {

/// Two or three words for a line that has little room; empty where there is nothing to say.
[[nodiscard]] std::string WireMark(Wire wire);

/// A sentence; empty for a file.
[[nodiscard]] std::string WireSentence(Wire wire);

/// What those must know whose book at `place` can be read on its way; empty for all others.
[[nodiscard]] std::string WireWarning(Wire wire, std::string_view place);

}  // namespace desk::book
