#pragma once

#include <memory>
#include <string>
#include <utility>

#include "book/database.h"
#include "book/odbc_api.h"

namespace desk::book {

/// Owns one handle of ODBC.
class OdbcHandle {
 public:
  OdbcHandle() = default;
  /// `DatabaseError` when the driver manager has none to give.
  OdbcHandle(SQLSMALLINT kind, SQLHANDLE parent);
  OdbcHandle(OdbcHandle&& other) noexcept
      : kind_(other.kind_), handle_(std::exchange(other.handle_, nullptr)) {}
  OdbcHandle& operator=(OdbcHandle&& other) noexcept {
    std::swap(kind_, other.kind_);
    std::swap(handle_, other.handle_);
    return *this;
  }
  OdbcHandle(const OdbcHandle&) = delete;
  OdbcHandle& operator=(const OdbcHandle&) = delete;
  ~OdbcHandle() {
    if (handle_ != nullptr) SQLFreeHandle(kind_, handle_);
  }
  [[nodiscard]] SQLHANDLE Get() const { return handle_; }

 private:
  SQLSMALLINT kind_ = 0;
  SQLHANDLE handle_ = nullptr;
};

/// One connection to a server, shared by the results that came through it. It is used until the
/// server goes away; then another takes its place.
class OdbcLink {
 public:
  /// Connects, within `seconds`. `DatabaseError` with the driver's reason.
  OdbcLink(const std::string& connection_string, int seconds, bool read_only);
  OdbcLink(const OdbcLink&) = delete;
  OdbcLink& operator=(const OdbcLink&) = delete;
  ~OdbcLink();

  [[nodiscard]] SQLHANDLE Get() const { return connection_.Get(); }
  [[nodiscard]] Flavor Server() const { return flavor_; }
  [[nodiscard]] std::string Info(SQLUSMALLINT what) const;
  /// Whether a call has shown that nobody answers any more.
  [[nodiscard]] bool Dead() const { return dead_; }
  /// From now on it counts as dead.
  void GiveUp() { dead_ = true; }
  void SetAutocommit(bool on);
  void End(SQLSMALLINT how);

  [[nodiscard]] OdbcHandle NewStatement() const { return {SQL_HANDLE_STMT, Get()}; }
  /// Throws when `result` is a failure of the statement or of the connection itself.
  void Check(SQLRETURN result, const OdbcHandle& statement);
  void Check(SQLRETURN result);

 private:
  [[noreturn]] void Fail(SQLSMALLINT kind, SQLHANDLE handle);

  OdbcHandle environment_;
  OdbcHandle connection_;
  Flavor flavor_ = Flavor::kOther;
  bool dead_ = false;
};

}  // namespace desk::book
