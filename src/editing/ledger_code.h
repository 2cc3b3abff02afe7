#pragma once

#include <string>

#include "host/objects.h"

namespace tavrix::editing {

/// Moves the postings of account `from` to account `to` in the three ledger tables, one statement
/// each. Postings of accounts below `from` stay. Gives the error text of the first statement that
/// failed, after which no other is sent; empty on success. Throws `HostError`.
[[nodiscard]] std::string UpdateLedgerCode(host::SystemObject& system, const std::string& from,
                                           const std::string& to);

}  // namespace tavrix::editing
