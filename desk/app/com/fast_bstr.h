#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string_view>

namespace desk::app {

/// As `NewBstr`, without a copy in between: for the many short texts of a row set.
[[nodiscard]] BSTR NewBstrDirectly(std::string_view text);

}  // namespace desk::app
