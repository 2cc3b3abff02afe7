#pragma once

#include <array>
#include <string>

#include "host/objects.h"

namespace tavrix::editing {

/// The tables of postings, in the order in which they are rewritten.
inline constexpr std::array<const char*, 3> kLedgers = {"gl_accvouch", "gl_accass", "gl_accsum"};

/// Moves the postings of account `from` in `ledger` to account `to`. Postings of accounts below
/// `from` stay. Gives the database's error text, empty on success. Throws `HostError`.
[[nodiscard]] std::string MovePostings(host::SystemObject& system, const std::string& ledger,
                                       const std::string& from, const std::string& to);

/// `MovePostings` for each ledger in turn. Gives the error text of the first statement that failed,
/// after which no other is sent.
[[nodiscard]] std::string UpdateLedgerCode(host::SystemObject& system, const std::string& from,
                                           const std::string& to);

}  // namespace tavrix::editing
