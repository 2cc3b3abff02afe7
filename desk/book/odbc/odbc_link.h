#pragma once

#include <mutex>
#include <string>

#include "book/database/database.h"
#include "book/odbc/odbc_handle.h"
#include "host/non_copyable.h"

namespace desk::book {

/// One connection to a server, as the thread that calls the driver sees it. It is used until the
/// server goes away; then another takes its place.
class OdbcLink : private tavrix::host::NonCopyable {
 public:
  /// Connects, within `seconds`. `DatabaseError` with the driver's reason.
  OdbcLink(const std::string& connection_string, int seconds, bool read_only);
  ~OdbcLink();

  [[nodiscard]] SQLHANDLE Get() const { return connection_.Get(); }
  [[nodiscard]] SqlDialect Server() const { return flavor_; }
  [[nodiscard]] std::string Info(SQLUSMALLINT what) const;
  /// Whether a call has shown that nobody answers any more.
  [[nodiscard]] bool Dead() const { return dead_; }
  void SetAutocommit(bool on);
  void End(SQLSMALLINT how);

  /// Runs a statement with its parameters to where its first row or its end is known.
  [[nodiscard]] OdbcHandle Run(const std::string& sql, Values parameters);
  /// All tables that the driver knows, as a result of its catalogue.
  [[nodiscard]] OdbcHandle Tables();
  [[nodiscard]] std::int64_t ChangedRows(const OdbcHandle& statement);
  /// From any thread: asks the server to end the statement that is being run.
  void Cancel() noexcept;

  /// Throws when `result` is a failure of the statement or of the connection itself.
  void Check(SQLRETURN result, const OdbcHandle& statement);
  void Check(SQLRETURN result);

 private:
  [[noreturn]] void Fail(SQLSMALLINT kind, SQLHANDLE handle);
  void SetRunning(SQLHANDLE statement);

  OdbcHandle environment_;
  OdbcHandle connection_;
  SqlDialect flavor_ = SqlDialect::kOther;
  bool dead_ = false;
  std::mutex cancelling_;
  SQLHANDLE running_ = nullptr;  ///< what `Cancel` would end
};

}  // namespace desk::book
