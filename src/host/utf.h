#pragma once

#include <string>
#include <string_view>

/// UTF-8 to UTF-16 and back. Malformed input becomes U+FFFD, one for each bad unit. Written here
/// because texts are short and many: a call of the system's conversion costs more than its work.
namespace tavrix::host {

[[nodiscard]] std::u16string ToUtf16(std::string_view text);
[[nodiscard]] std::string ToUtf8(std::u16string_view text);

/// As `ToUtf16` and `ToUtf8` for the wide characters of Windows.
[[nodiscard]] std::wstring Wide(std::string_view text);
[[nodiscard]] std::string Narrow(std::wstring_view text);

/// As `Wide`, to `to`, which has room for as many units as `text` has bytes; gives where it ends.
[[nodiscard]] wchar_t* PutWide(std::string_view text, wchar_t* to);

/// As `Wide` and `Narrow`, behind what `target` holds. A target that is used again takes no memory
/// once it has grown to the longest text.
void AppendWide(std::wstring& target, std::string_view text);
void AppendNarrow(std::string& target, std::wstring_view text);

}  // namespace tavrix::host
