#pragma once

#include <string>
#include <string_view>

namespace tavrix::viewkit::win32 {

/// UTF-8 to the system's UTF-16 and back, as `host::ToUtf16` and `host::ToUtf8`.
[[nodiscard]] std::wstring Wide(std::string_view text);
[[nodiscard]] std::string Narrow(std::wstring_view text);

}  // namespace tavrix::viewkit::win32
