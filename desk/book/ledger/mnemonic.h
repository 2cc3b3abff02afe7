#pragma once

#include <string>
#include <string_view>

namespace desk::book {

/// The mnemonic that an account of this name would usually have: the first letters of its
/// characters' pinyin, of Latin words their first letters, numbers and abbreviations in capitals
/// whole; small letters, at most 12. Empty for a name without any of these.
[[nodiscard]] std::string ProposeMnemonic(std::string_view name);

}  // namespace desk::book
