#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "book/database/database.h"

namespace desk::book {

/// What the rules on SQLite keep beside the tables of the schema; only triggers use it. The lengths
/// of codes that the code rule knows, a view; and a table that notes, while a statement runs, which
/// parents it has deleted.
inline constexpr std::string_view kCodeLengthViewName = "gl_code_length";
inline constexpr std::string_view kLostParentTableName = "desk_lost_parent";

/// The statements that let the engine itself keep the chart whole and postings on leaf accounts,
/// whichever desks write at once. In one step with the change of an account:
/// - no account comes, by its code, without its parent, and none goes while others have it as their
///   parent; the code rule among the book's settings says which code that is, and codes that have
///   no level by it have no parent;
/// - the flag of a leaf says what the chart says: an update to the contrary leaves it right, and an
///   account that loses the last one below it becomes a leaf;
/// - postings follow a code that changes; one with accounts below it does not change;
/// - postings of an account that is a leaf no longer go to its first leaf;
/// - an account with postings is not deleted.
/// What was wrong in a chart before is not refused: only changes are looked at.
///
/// The controls ask and move one statement at a time, as they must on every host; between two of
/// these another desk may have posted, given the new account sub-accounts of its own, or deleted
/// it. Empty for engines on which this has not been tried.
[[nodiscard]] std::vector<std::string> LedgerRules(SqlDialect dialect);

/// The statements that take away the rules of earlier versions.
[[nodiscard]] std::vector<std::string> DropEarlierRules(SqlDialect dialect);

}  // namespace desk::book
