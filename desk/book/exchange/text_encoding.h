#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// How the texts of other programs' files are written.
namespace desk::book {

enum class Encoding : std::uint8_t { kUtf8, kUtf16Little, kUtf16Big, kGb18030 };

/// What a text is most likely written in: what its byte order mark says, else UTF-16 when every
/// other byte of much of it is zero, UTF-8 when all of it is that, and else GB18030.
[[nodiscard]] Encoding FindEncoding(std::string_view bytes);

/// The text as UTF-8, without a byte order mark. What is no character of the encoding becomes
/// U+FFFD.
[[nodiscard]] std::string Decoded(std::string_view bytes, Encoding encoding);

}  // namespace desk::book
