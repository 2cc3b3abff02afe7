#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "book/database/database.h"

/// The history of a book as its engine keeps it: tables, and triggers that note each change of an
/// account, whichever program makes it. Callers' statements cannot reach these tables.
namespace desk::book {

/// A row for each command: what it was (`CommandKind`), who gave it and when (UTC), and which
/// command it has undone or done again.
inline constexpr std::string_view kCommandTableName = "desk_command";
/// A row for each change of an account: the row before and after it as a JSON array of all columns
/// of `gl_code` in their order; null where the account was not there.
inline constexpr std::string_view kChangeTableName = "desk_change";
/// Postings that came to another code: those with identifiers from `first_id` to `last_id` that
/// stood on `to_code` afterwards, how many, the sums of their identifiers and of their amounts: a
/// posting may add to a row of totals that has moved. `follows` is 1 where
/// they went along with the code of their account. A row for `kSettingsName` says that the command
/// has given the book another code rule, from `from_code` to `to_code`.
inline constexpr std::string_view kMovedTableName = "desk_moved";
inline constexpr std::string_view kSettingsName = "xt_accinformation";

// Inside the transaction of a command, a row of `desk_identifier` ("journal_command") on SQLite,
// and a setting ("desk.command") on PostgreSQL, name this command. Changes without either come from
// other programs, and get a command of the kind 0.

/// Whether books on this engine keep a history.
[[nodiscard]] bool KeepsHistory(SqlDialect dialect);

/// The tables; empty for engines without a history.
[[nodiscard]] std::vector<std::string> JournalTables(SqlDialect dialect);
/// The triggers, to be made after those of `LedgerRules`: they have to run before these.
[[nodiscard]] std::vector<std::string> JournalRules(SqlDialect dialect);
[[nodiscard]] std::vector<std::string> DropJournalRules(SqlDialect dialect);

/// An account as an expression that gives its image: `row` is how the statement calls it.
[[nodiscard]] std::string AccountImage(SqlDialect dialect, const std::string& row);

/// A code as a literal, where it cannot be a parameter.
[[nodiscard]] std::string Literal(const std::string& code);

/// The time of now, in UTC, as commands keep it.
[[nodiscard]] std::string_view TimeNow(SqlDialect dialect);

enum class MoveKind {
  kWithAccount,  ///< the account has got another code
  kHandedDown,   ///< to another account
};

/// The statement that notes a move of all postings in `ledger` that is about to happen. `from` and
/// `to` are expressions.
[[nodiscard]] std::string NoteOfMove(SqlDialect dialect, MoveKind kind, std::string_view ledger,
                                     const std::string& from, const std::string& to);

}  // namespace desk::book
