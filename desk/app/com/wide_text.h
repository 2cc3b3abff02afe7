#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>
#include <string_view>

/// UTF-8 into UTF-16 for the many short texts of a row set: the system's own conversion costs more
/// for its call than for its work. Malformed text becomes U+FFFD, as everywhere.
namespace desk::app {

/// As `NewBstr`, without a copy in between.
[[nodiscard]] BSTR NewBstrDirectly(std::string_view text);
void AppendWide(std::wstring& target, std::string_view text);

}  // namespace desk::app
