#pragma once

#include <utility>

#include "book/odbc/odbc_api.h"
#include "host/non_copyable.h"

namespace desk::book {

/// Owns one handle of ODBC.
class OdbcHandle : private tavrix::host::NonCopyable {
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
  ~OdbcHandle() {
    if (handle_ != nullptr) SQLFreeHandle(kind_, handle_);
  }
  [[nodiscard]] SQLHANDLE Get() const { return handle_; }

 private:
  SQLSMALLINT kind_ = 0;
  SQLHANDLE handle_ = nullptr;
};

}  // namespace desk::book
