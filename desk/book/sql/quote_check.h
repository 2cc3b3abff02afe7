#pragma once

#include <string_view>

namespace desk::book {

/// Whether a text that callers put between single quotes as it stands held such a quote itself: a
/// literal of the statement does not end, or something follows it that cannot stand there. A text
/// with two quotes in a row is not noticed: the statement is sound, and stores one of them.
[[nodiscard]] bool HasQuoteInText(std::string_view sql);

/// What users are told of it.
inline constexpr char kQuoteInText[] = "编码、名称、助记码等文字中不能有单引号（'），可以改用’";

}  // namespace desk::book
