#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "book/database/database.h"
#include "book/session/callers_commands.h"
#include "book/session/deletion_check.h"
#include "host/non_copyable.h"

namespace desk::book {

/// A result that is still being read. Before anything is written it takes its remaining rows into
/// memory, so that it goes on showing what was there when it was opened.
class LiveResult {
 public:
  virtual void Keep() noexcept = 0;

 protected:
  ~LiveResult() = default;
};

/// One open book as all its objects share it: the connection, the dialect that callers speak, and
/// the results that are still being read.
class Session {
 public:
  explicit Session(std::unique_ptr<Connection> connection);

  /// What the property "driver" says: the engine's own name unless it is overridden. "jet" means
  /// that callers' statements come in the Jet dialect.
  [[nodiscard]] const std::string& Driver() const { return driver_; }
  void SetDriver(std::string driver) { driver_ = std::move(driver); }

  /// A caller's statement. `DatabaseError` when it fails.
  [[nodiscard]] std::unique_ptr<Rows> Query(const std::string& sql);
  /// A change of one row by its key fails when the row is gone: the caller would believe it saved.
  /// So does a deletion of accounts that would take more than the caller has seen: `DeletionCheck`.
  void Execute(const std::string& sql);

  /// An identifier for an account that callers were given.
  void NoteGiven(std::int64_t id) { deletions_.NoteGiven(id); }

  /// Counts the callers' statements that have changed the book: whoever shows it can tell from this
  /// whether what he shows is old.
  [[nodiscard]] std::uint64_t Changes() const { return changes_; }
  /// Counts a change of accounts by the desk itself.
  void NoteChange() { ++changes_; }
  /// The same for postings, which leave the accounts as they are.
  [[nodiscard]] std::uint64_t Postings() const { return postings_; }
  void NotePosting() { ++postings_; }

  /// For the desk's own statements. Those that write belong inside a `Transaction`.
  [[nodiscard]] Connection& Own() { return *connection_; }

  /// Whether the book keeps a history of its commands. One that others have made, and one on a
  /// server where the desk's rules have not been tried, keeps none.
  [[nodiscard]] bool KeepsHistory();
  /// Who works with the book, for its history; empty where nobody has said.
  [[nodiscard]] const std::string& User() const { return user_; }
  void SetUser(std::string user) { user_ = std::move(user); }
  /// Inside a transaction: from now to its end changes of accounts belong to this command.
  void BeginCommand(std::int64_t id);
  /// The command that callers' statements, or those of the desk, have begun last; 0 for none.
  [[nodiscard]] std::int64_t LastCommand() const { return last_command_; }

  /// Makes room in `rows` for as many as the query gave the last time: growing step by step, and
  /// giving back what was too much, would cost more than the room.
  void Reserve(const std::string& sql, host::RowSet& rows) const;
  void NoteSize(const std::string& sql, const host::RowSet& rows);

  void Add(LiveResult& result) { live_.push_back(&result); }
  void Remove(LiveResult& result) { std::erase(live_, &result); }
  void KeepResults() noexcept;

 private:
  [[nodiscard]] std::string Translated(const std::string& sql) const;
  [[nodiscard]] std::int64_t Change(const std::string& sql);
  friend class Transaction;
  friend class RulesPause;
  void BeforeCommit();
  void AfterTransaction(bool committed) noexcept;

  std::unique_ptr<Connection> connection_;
  std::string driver_;
  std::vector<LiveResult*> live_;
  DeletionCheck deletions_;
  CallersCommands callers_;
  bool keeps_history_ = false;
  std::string user_;
  std::int64_t running_command_ = 0;  ///< of the open transaction
  std::int64_t last_command_ = 0;     ///< that was committed
  bool rules_pause_ = false;
  struct Size {
    std::size_t rows = 0;
    std::size_t bytes = 0;
  };
  std::map<std::string, Size> sizes_;  ///< of the results of large queries
  std::uint64_t changes_ = 0;
  std::uint64_t postings_ = 0;
};

/// The desk's own changes, all or nothing: undone unless committed. None is committed while the
/// rules of the book pause (`RulesPause`).
class Transaction : private tavrix::host::NonCopyable {
 public:
  explicit Transaction(Session& session);
  ~Transaction();
  void Commit();

 private:
  Session& session_;
  bool open_ = true;
};

/// While it lives a server may take longer for a statement than for one of the user's: a statement
/// for many accounts, or many postings. Around the `Transaction`; `DatabaseError`.
class LongWork {
 public:
  explicit LongWork(Session& session);
  LongWork(const LongWork&) = delete;
  LongWork& operator=(const LongWork&) = delete;
  ~LongWork();

 private:
  Connection& connection_;
  std::chrono::milliseconds before_;
};

}  // namespace desk::book
