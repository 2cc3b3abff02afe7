#pragma once

#include <string>
#include <string_view>

#include "book/session/session.h"

namespace desk::views {

/// The code of the account whose code, name or mnemonic is typed, leaf or not. Throws
/// `host::HostError` with a text for users when there is none, or more than one.
[[nodiscard]] std::string TypedAccountCode(book::Session& session, std::string_view typed);

}  // namespace desk::views
