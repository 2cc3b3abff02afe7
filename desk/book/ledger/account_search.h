#pragma once

#include <string>
#include <vector>

#include "book/ledger/folded_text.h"
#include "book/session/session.h"

namespace desk::book {

/// The codes, sorted, of the accounts whose mnemonic contains the text. `DatabaseError` when the
/// chart cannot be read.
[[nodiscard]] std::vector<std::string> CodesByMnemonic(Session& session,
                                                       const FoldedPattern& pattern);

}  // namespace desk::book
