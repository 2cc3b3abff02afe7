#pragma once

#include <string_view>

/// Words and names of SQL. Names compare without the case of ASCII letters, as all servers do;
/// other letters must be the same.
namespace desk::book {

/// Whether a server may take `word` for a word of its language: no name that a caller gives or uses
/// may be one.
[[nodiscard]] bool IsSqlWord(std::string_view word);

[[nodiscard]] bool IsSameName(std::string_view left, std::string_view right);
/// An order of names that tells apart what `IsSameName` does.
[[nodiscard]] bool IsNameBefore(std::string_view left, std::string_view right);

}  // namespace desk::book
