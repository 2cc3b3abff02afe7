#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "book/database/database.h"

namespace desk::book {

/// What callers have seen of the accounts that they are about to delete. Before it deletes an
/// account with all below it, the account list counts their postings and asks the user, naming what
/// it shows. Accounts that others have added since the list was read, or add while the question
/// stands, were neither named nor counted.
class DeletionCheck {
 public:
  /// Notes the accounts that `sql`, before it runs, reads for the list or counts the postings of;
  /// nothing for any other statement.
  void Note(Connection& connection, const std::string& sql);
  /// An identifier that was given to the caller: the account that gets it is the caller's own.
  void NoteGiven(std::int64_t id) { own_.insert(id); }
  /// Whether `sql` deletes accounts that were noted.
  [[nodiscard]] bool IsNoted(const std::string& sql) const;
  /// Refuses, with `DatabaseError`, a deletion of noted accounts that would take one which came
  /// later. What was noted counts once. Runs in the transaction of the deletion.
  void Check(Connection& connection, const std::string& sql);

 private:
  [[nodiscard]] bool WasListed(std::int64_t id) const;

  using Identifiers = std::vector<std::int64_t>;
  std::map<std::string, std::int64_t> newest_;  ///< account when the list was read, by its query
  std::set<std::int64_t> own_;
  std::map<std::string, Identifiers> seen_;  ///< sorted, by the code that they begin with
};

}  // namespace desk::book
