#pragma once

#include <string>
#include <vector>

#include "book/session/session.h"
#include "views/print_table.h"

namespace desk::views {

/// The chart of accounts as it is printed: what the view's columns leave to the account's dialog
/// has columns here, as far as any of the accounts has it. `codes` says which accounts, in their
/// order; those that are not in the book are left out. Throws what the database raises.
[[nodiscard]] PrintTable ChartTable(book::Session& session, const std::vector<std::string>& codes);
/// All accounts of the book, in the order of their codes.
[[nodiscard]] PrintTable ChartTable(book::Session& session);

}  // namespace desk::views
