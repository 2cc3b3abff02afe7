#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tavrix::host {

/// One code point of UTF-8 text from `at` on, which moves behind it. A bad unit counts as one, as
/// U+FFFD.
[[nodiscard]] char32_t NextCodePoint(std::string_view text, std::size_t& at);

void AppendUtf8(std::string& text, char32_t point);

}  // namespace tavrix::host
