#pragma once

#include <string>

#include "book/session/session.h"

namespace desk::book {

/// Throws (`DatabaseError`) what reading the accounts and the ledgers would raise at once: that
/// they are locked, out of reach, or not there.
void CheckReadable(Session& session);

/// Notices what others change in a book that is open here too: other windows, other machines. A
/// look costs next to nothing while nobody changes anything, however large the book is.
class ChangeWatch {
 public:
  struct Seen {
    bool accounts = false;
    bool postings = false;
    [[nodiscard]] bool Any() const { return accounts || postings; }
    Seen& operator|=(const Seen& other) {
      accounts = accounts || other.accounts;
      postings = postings || other.postings;
      return *this;
    }
  };

  /// The session must outlive it. Where the engine does not tell of others (it is neither SQLite
  /// nor PostgreSQL) nothing is ever seen. All members throw `DatabaseError`.
  explicit ChangeWatch(Session& session);

  /// What others have changed since `Note`, or the last look that has seen something. Own changes
  /// of postings may count as others'.
  [[nodiscard]] Seen Look();
  /// The book is about to be read: what has been changed so far is no news.
  void Note();

 private:
  struct Marks {
    std::string any;       ///< another one after each posting; of a file: after each change
    std::string accounts;  ///< another one after each change of accounts
  };
  [[nodiscard]] std::string AnyMark();
  [[nodiscard]] std::string AccountsMark();
  [[nodiscard]] std::string DigestOf(const char* sql);
  /// Nothing on other engines.
  [[nodiscard]] std::string DigestOf(const char* on_sqlite, const char* on_postgres);

  Session& session_;
  Marks marks_;
};

}  // namespace desk::book
