#pragma once

#include <string>

namespace desk::book {

/// A caller's statement that moves all postings of one account to another, made to leave those of a
/// leaf account where they are; any other statement as it is. The controls move postings after they
/// have changed or deleted the account; what stands on a leaf of that code by then has been posted
/// by another desk, to an account that has taken the code since.
[[nodiscard]] std::string LeavingLeavesAlone(const std::string& sql);

}  // namespace desk::book
