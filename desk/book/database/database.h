#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/error.h"
#include "host/row_set.h"
#include "host/value.h"

/// The database layer: what the desk needs of an engine, and nothing else. Whoever adds an engine
/// implements `Engine`, `Connection` and `Rows`, and answers wherever the dialect is asked for.
namespace desk::book {

namespace host = tavrix::host;

/// Why a database refused, as far as somebody acts on it.
enum class ErrorKind {
  kOther,
  kLocked,     ///< another user holds the book; trying again may help
  kReadOnly,   ///< the book cannot be written
  kFull,       ///< no room on the disk
  kDuplicate,  ///< a key of the schema forbids the row
  kRefused,    ///< a statement that the desk does not pass on
  kDamaged,    ///< the file is no database, no book, or broken
  kMissing,    ///< the row to change is not there any more
  kGone,       ///< the server does not answer; the next statement tries to reach it again
};

/// A refusal with a text for users, in which the engine's own words stand too.
class DatabaseError : public host::HostError {
 public:
  DatabaseError(ErrorKind kind, const std::string& text) : host::HostError(text), kind_(kind) {}
  [[nodiscard]] ErrorKind Kind() const { return kind_; }

 private:
  ErrorKind kind_;
};

/// Engines as far as their statements for making tables differ.
enum class SqlDialect { kSqlite, kPostgres, kSqlServer, kAccess, kMariaDb, kOther };

/// Whose statement it is. A caller's statement is exactly one SELECT, INSERT, UPDATE or DELETE on
/// the tables of the schema; the desk's own statements may be anything.
enum class Origin { kCaller, kDesk };

/// Takes the cells of a result in reading order, each as the kind that the engine holds.
class CellSink {
 public:
  virtual ~CellSink() = default;
  virtual void OnNull() = 0;
  virtual void OnInteger(std::int64_t number) = 0;
  virtual void OnNumber(double number) = 0;
  /// Valid during the call.
  virtual void OnText(std::string_view text) = 0;
};

/// Passes `value` to `sink`; what has no kind of its own there goes as text.
void PassCell(const host::Value& value, CellSink& sink);

/// Appends the cells to a row set, which must have their columns: numbers as texts.
class RowSetSink final : public CellSink {
 public:
  /// `rows` must outlive it.
  explicit RowSetSink(host::RowSet& rows) : rows_(rows) {}
  void OnNull() override { rows_.AppendNull(); }
  void OnInteger(std::int64_t number) override { rows_.AppendInteger(number); }
  void OnNumber(double number) override;
  void OnText(std::string_view text) override { rows_.AppendText(text); }

 private:
  host::RowSet& rows_;
};

/// The rows of a running query, read forward once. It stands before its first row at the start.
/// All of it may throw `DatabaseError`.
class Rows {
 public:
  virtual ~Rows() = default;
  /// Moves to the next row; false when there is none.
  [[nodiscard]] virtual bool Next() = 0;
  [[nodiscard]] virtual int Columns() const = 0;
  [[nodiscard]] virtual std::string ColumnName(int column) const = 0;
  /// A column of the current row, from 0.
  [[nodiscard]] virtual host::Value Get(int column) const = 0;
  /// Passes the current row and all that follow: the fast way to read a whole result.
  virtual void ReadAll(CellSink& sink) = 0;
};

/// A whole number of the current row, such as a key or a count; some engines make it a number with
/// a fraction, or a text.
[[nodiscard]] inline std::int64_t IntegerAt(const Rows& rows, int column) {
  return static_cast<std::int64_t>(rows.Get(column).ToNumber());
}

using Values = std::span<const host::Value>;

/// Whether what goes between the desk and a book can be read on its way.
enum class Wire {
  kNone,       ///< there is none: a file
  kUnknown,    ///< the server does not say
  kLocal,      ///< it can, but does not leave this machine
  kPlain,      ///< it can
  kEncrypted,  ///< it cannot
};

/// Who is told while a server's answer is waited for, in the thread that waits: may show it, and
/// may give up. Implementations must not throw.
class WaitPort {
 public:
  virtual ~WaitPort() = default;
  /// A few times a second while the answer does not come. False gives up: the statement fails with
  /// `ErrorKind::kGone`, and nobody knows whether it has been carried out.
  [[nodiscard]] virtual bool OnWait(std::chrono::milliseconds waited) = 0;
  /// The wait is over, however it ended. Also after answers that came at once.
  virtual void OnWaited() noexcept = 0;
};

/// Waits for the end of a statement that was started, and throws what it failed with.
using Ending = std::function<void()>;

/// One connection to one book. One thread. Parameters fill the question marks of a statement in
/// order. All members throw `DatabaseError`.
class Connection {
 public:
  virtual ~Connection() = default;
  [[nodiscard]] virtual std::unique_ptr<Rows> Query(const std::string& sql, Origin origin,
                                                    Values parameters = {}) = 0;
  /// Runs a statement to its end; rows that it gives are dropped. How many rows an INSERT, UPDATE
  /// or DELETE met; no meaning for others.
  virtual std::int64_t Execute(const std::string& sql, Origin origin, Values parameters = {}) = 0;
  /// As `Execute` of a statement of the desk's own, which a server may still be busy with
  /// afterwards; what is sent next comes after it. The connection must outlive what it gives.
  [[nodiscard]] virtual Ending Start(const std::string& sql,
                                     std::vector<host::Value> parameters = {});
  /// Starts a transaction that will write. It waits for other writers, within the connection's
  /// patience; once it has begun, nobody else writes.
  virtual void Begin() = 0;
  virtual void Commit() = 0;
  /// Ends a transaction without effect. Does nothing outside one.
  virtual void Rollback() noexcept = 0;
  /// The engine's name, as the connection property "driver" gives it.
  [[nodiscard]] virtual std::string Driver() const = 0;
  [[nodiscard]] virtual SqlDialect Dialect() const = 0;
  [[nodiscard]] virtual bool ReadOnly() const = 0;
  [[nodiscard]] virtual bool HasTable(std::string_view table) = 0;
  /// Whether the table has the column; names without regard to case.
  [[nodiscard]] virtual bool HasColumn(std::string_view table, std::string_view column) = 0;
  /// The version of the book's schema; 0 for a book that others made.
  [[nodiscard]] virtual int SchemaVersion() = 0;
  virtual void SetSchemaVersion(int version) = 0;
  /// Whether others on the way can read along, as the server says now.
  [[nodiscard]] virtual Wire Encryption() const { return Wire::kNone; }
  /// How long a server may take for one statement from now on; zero is no limit. A file's
  /// statements have none.
  virtual void SetTimeLimit(std::chrono::milliseconds) {}
  [[nodiscard]] virtual std::chrono::milliseconds TimeLimit() const {
    return std::chrono::milliseconds::zero();
  }
};

enum class Access { kReadWrite, kReadOnly };

/// What a book is opened with.
struct Place {
  /// A file, ":memory:" for a book that lives as long as its connection, or an ODBC connection
  /// string (see `IsConnectionString`).
  std::string path;
  Access access = Access::kReadWrite;
  std::chrono::milliseconds patience{5000};     ///< how long to wait for other users
  std::chrono::milliseconds time_limit{30000};  ///< see `Connection::SetTimeLimit`
  std::shared_ptr<WaitPort> waiting = nullptr;  ///< told while a server is waited for; may be null
};

class Session;
/// Makes the tables of a new book and fills them.
using Filling = std::function<void(Session&)>;

/// All members throw `DatabaseError`.
class Engine {
 public:
  virtual ~Engine() = default;
  /// Refuses what is no book of this version before it changes anything there.
  [[nodiscard]] virtual std::unique_ptr<Connection> Open(const Place& place) const = 0;
  /// Makes a book where nothing is: no file, or a database without a book (tables of a book that
  /// are all there and all empty count as none). Others see it when it is whole; nothing of it is
  /// there when `fill` throws or the process dies. Gives it open.
  [[nodiscard]] virtual std::shared_ptr<Session> Make(const Place& place,
                                                      const Filling& fill) const = 0;
};

}  // namespace desk::book
