#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "book/journal/row_image.h"
#include "book/session/journal_command.h"
#include "book/session/session.h"

/// What happened to the accounts of a book.
namespace desk::book {

/// One command that has changed something.
struct HistoryEntry {
  std::int64_t id = 0;
  CommandKind kind = CommandKind::kUnknown;
  int turn = 0;             ///< see `CommandTurn`
  std::int64_t target = 0;  ///< the command that it undoes or does again; 0 for none
  std::string title;        ///< empty unless whoever gave the command has said
  std::string who;          ///< may be empty
  std::string made_at;      ///< "2026-11-22 19:30:00", in UTC
  std::string subject;      ///< code and name of the first account that it changed
  std::int64_t accounts = 0;
  std::int64_t postings = 0;  ///< voucher entries that came to another code
  bool answered = false;  ///< a later command has undone it, or done it again: its own turn is over
  bool undone = false;    ///< and not done again since: what it did does not stand
};

/// The newest first; empty where the book keeps no history. `DatabaseError`, as for all below.
[[nodiscard]] std::vector<HistoryEntry> ReadHistory(Session& session);

/// The command of this identifier, whether it is answered, but not whether it is undone; nothing
/// where it has changed nothing or is kept no more.
[[nodiscard]] std::optional<HistoryEntry> ReadEntry(Session& session, std::int64_t id);

/// What Ctrl+Z takes back: the last command that is not undone, whoever gave it; not what other
/// programs have done.
[[nodiscard]] std::optional<HistoryEntry> NextToUndo(const std::vector<HistoryEntry>& history);
/// What Ctrl+Y does again: the last that was undone, unless something else was done since.
[[nodiscard]] std::optional<HistoryEntry> NextToRedo(const std::vector<HistoryEntry>& history);

/// Both, without what the whole history takes; `undone` is not told.
struct HistorySteps {
  std::optional<HistoryEntry> undo = {};
  std::optional<HistoryEntry> redo = {};
};
[[nodiscard]] HistorySteps ReadSteps(Session& session);

/// An account before and after a command.
struct AccountChange {
  std::int64_t id = 0;
  RowImage before;
  RowImage after;

  [[nodiscard]] bool Added() const { return !before.IsThere(); }
  [[nodiscard]] bool Deleted() const { return !after.IsThere(); }
  [[nodiscard]] bool Stays() const { return before.IsThere() && after.IsThere(); }
  /// Of an account that was there before and after.
  [[nodiscard]] bool Differs(std::size_t column) const {
    return before.Cell(column) != after.Cell(column);
  }
};

/// The accounts that a command has changed, by their identifiers; `most` of them at the most, all
/// when it is 0. Without those that are in the end as they were.
[[nodiscard]] std::vector<AccountChange> ReadChanges(Session& session, std::int64_t command,
                                                     std::int64_t most = 0);

/// The accounts of all changes of a command as they are now, in the same order.
[[nodiscard]] std::vector<RowImage> ReadAccountsNow(Session& session, std::int64_t command);

/// A query of the accounts of a command: `row_id`, `old_row` and `new_row`, which are null where
/// the account was not there.
[[nodiscard]] std::string QueryForNetChanges(std::int64_t command);

/// Postings that came from one code to another by a command.
struct PostingMove {
  std::string from;  ///< empty, as `to`, where they went along with many accounts
  std::string to;
  std::int64_t entries = 0;  ///< of vouchers
  std::int64_t totals = 0;   ///< rows of the other ledgers
  bool follows = false;      ///< they went along with the account's code
};
[[nodiscard]] std::vector<PostingMove> ReadMoves(Session& session, std::int64_t command);

/// Another code rule that a command has given the book.
struct RuleChange {
  std::string from;
  std::string to;
};
[[nodiscard]] std::optional<RuleChange> ReadRuleChange(Session& session, std::int64_t command);

}  // namespace desk::book
