#pragma once

#include <string>
#include <vector>

#include "book/database.h"

namespace desk::book {

/// The statements that let the engine itself keep postings on leaf accounts, whichever desks write
/// at once. In one step with the change of an account:
/// - postings follow a code that changes; one with accounts below it does not change;
/// - postings of an account that is a leaf no longer go to its first leaf;
/// - an account with postings is not deleted.
///
/// The controls ask and move one statement at a time, as they must on every host; between two of
/// these another desk may have posted, or given the new account sub-accounts of its own. Empty for
/// engines on which this has not been tried.
[[nodiscard]] std::vector<std::string> LedgerRules(Flavor flavor);

}  // namespace desk::book
