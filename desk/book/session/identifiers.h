#pragma once

#include <cstdint>
#include <string>

#include "book/session/session.h"

/// Identifiers of rows. One that has been given is never given again, even when its row is gone or
/// was never written, and two programs on one book never get the same.
namespace desk::book {

/// The next identifier of a table, in a transaction of its own. `DatabaseError` for a table or
/// column that identifiers are not given for.
[[nodiscard]] std::int32_t NewIdentifier(Session& session, const std::string& table,
                                         const std::string& column);

/// Inside the caller's transaction: the first of `count` (1 or more) successive identifiers.
[[nodiscard]] std::int32_t ReserveIdentifiers(Connection& connection, const std::string& table,
                                              const std::string& column, int count);

}  // namespace desk::book
