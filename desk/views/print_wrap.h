#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace desk::views {

/// Measures one line of text.
using WidthOf = std::function<int(std::string_view)>;

/// `text` in lines of at most `width`, at least one line: broken at blanks and beside East Asian
/// characters, a word that is too long anywhere. A line has one character even where that is wider.
[[nodiscard]] std::vector<std::string> WrapText(std::string_view text, int width,
                                                const WidthOf& width_of);

/// As much of `text` as fits, with "…" behind it; all of it where it fits.
[[nodiscard]] std::string CutText(std::string_view text, int width, const WidthOf& width_of);

}  // namespace desk::views
