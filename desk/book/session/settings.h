#pragma once

#include <string>

#include "book/session/session.h"

/// The settings of a book (table `xt_accinformation`): a text for a section and a key.
namespace desk::book {

/// Empty when there is none. `DatabaseError` when the table cannot be read.
[[nodiscard]] std::string ReadSetting(Session& session, const std::string& section,
                                      const std::string& key);

/// The book's code rule; empty when it has none.
[[nodiscard]] std::string ReadCodeRule(Session& session);

/// Inside the caller's transaction.
void PutSetting(Connection& connection, const std::string& section, const std::string& key,
                const std::string& value);

/// In a transaction of its own.
void WriteSetting(Session& session, const std::string& section, const std::string& key,
                  const std::string& value);

}  // namespace desk::book
