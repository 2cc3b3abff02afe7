#pragma once

#include <string>
#include <string_view>

namespace desk::views {

/// For captions of labels and entries of menus, which take "&" for a mnemonic: names of accounts
/// and of files may hold one.
[[nodiscard]] std::string EscapedCaption(std::string_view text);

/// No wider than a menu should be: cut behind thirty characters, which "…" follows.
[[nodiscard]] std::string Shortened(std::string_view text);

}  // namespace desk::views
