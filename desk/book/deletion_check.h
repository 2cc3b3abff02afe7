#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "book/database.h"

namespace desk::book {

/// What callers have seen of the accounts that they are about to delete. Before it deletes an
/// account with all below it, the account list counts their postings and asks the user; accounts
/// that others add while the question stands were neither counted nor named in it.
class DeletionCheck {
 public:
  /// Notes the accounts that `sql` counts the postings of; nothing for any other statement.
  void Note(Connection& connection, const std::string& sql);
  /// Whether `sql` deletes accounts that were noted.
  [[nodiscard]] bool IsNoted(const std::string& sql) const;
  /// Refuses, with `DatabaseError`, a deletion of noted accounts that would take one which came
  /// later. What was noted counts once. Runs in the transaction of the deletion.
  void Check(Connection& connection, const std::string& sql);

 private:
  using Identifiers = std::vector<std::int64_t>;
  std::map<std::string, Identifiers> seen_;  ///< sorted, by the code that they begin with
};

}  // namespace desk::book
