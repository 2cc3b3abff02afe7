#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "book/session/progress.h"
#include "book/session/session.h"

/// Commands of the history of a book: what changes in the chart belongs together, and who did it.
namespace desk::book {

/// The numbers are kept in books.
enum class CommandKind {
  kUnknown = 0,  ///< of another program
  kAdd = 1,
  kEdit = 2,
  kDelete = 3,
  kRenumber = 4,
  kMove = 5,
  kMerge = 6,
  kImport = 7,
  kSeal = 8,
  kUnseal = 9,
  kMnemonics = 10,
  kOther = 11,
};

/// What a command does to those before it.
struct CommandTurn {
  /// 0: it is new; 1: it undoes `target`; 2: it does `target`, which has undone something, undone.
  int turn = 0;
  std::int64_t target = 0;
};

/// One command of the history. From its making to the end of the open transaction, or to the next
/// one's, all changes of accounts belong to it. Nothing happens where the book keeps no history.
/// `DatabaseError`, as for all that writes.
class JournalCommand {
 public:
  /// Inside an open `Transaction`. `title` is what users read ("改编码 1001 → 1002"); without one
  /// they read what its changes say.
  JournalCommand(Session& session, CommandKind kind, const std::string& title = {},
                 CommandTurn turn = {});

  /// 0 where there is no history.
  [[nodiscard]] std::int64_t Id() const { return id_; }

  /// Moves all postings, in all ledgers, of one account to another, as a merge does, and notes
  /// which they were: an undo can tell them from the other account's own. How many. While the rules
  /// pause, or with accounts that may have these postings. The codes are those that the accounts
  /// have when the command is through.
  /// Other programs' postings wait until the transaction ends. `WorkCancelled`.
  std::int64_t MovePostings(const std::string& from, const std::string& to,
                            const Progress& progress = {});
  /// Says how many postings of a ledger went along with new codes of their accounts, where the
  /// rules paused. An undo needs no more: they follow the codes back.
  void NoteFollowed(std::string_view ledger, std::int64_t postings);
  /// Gives the book, which has no accounts, another code rule.
  void PutCodeRule(const std::string& rule);

 private:
  void MoveIn(const std::string& ledger, std::int64_t rows, const host::Value& from,
              const host::Value& to, const std::function<void(std::int64_t)>& moved);

  Session& session_;
  std::int64_t id_ = 0;
};

/// Drops the oldest commands beyond the number that is kept. In a transaction of its own.
void TrimHistory(Session& session);

/// Inside an open transaction: the history begins anew.
void ForgetHistory(Session& session);

}  // namespace desk::book
