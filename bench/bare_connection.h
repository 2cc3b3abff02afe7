#pragma once

#include <array>
#include <cstdint>
#include <stdexcept>
#include <string>

#include "book/odbc/odbc_api.h"
#include "host/non_copyable.h"
#include "host/utf.h"

namespace tavrix::bench {

/// ODBC as a program would use it that wants the texts of all cells, or statements run, and nothing
/// else.
class BareConnection : private host::NonCopyable {
 public:
  explicit BareConnection(const std::string& place) {
    Check(SQLAllocHandle(SQL_HANDLE_ENV, nullptr, &environment_), "environment");
    SQLSetEnvAttr(environment_, SQL_ATTR_ODBC_VERSION,
                  reinterpret_cast<SQLPOINTER>(std::uintptr_t{SQL_OV_ODBC3}), 0);
    Check(SQLAllocHandle(SQL_HANDLE_DBC, environment_, &connection_), "connection");
    std::u16string text = host::ToUtf16(place);
    Check(SQLDriverConnectW(connection_, nullptr, reinterpret_cast<SQLWCHAR*>(text.data()),
                            static_cast<SQLSMALLINT>(text.size()), nullptr, 0, nullptr,
                            SQL_DRIVER_NOPROMPT),
          "connect");
  }
  ~BareConnection() {
    SQLDisconnect(connection_);
    SQLFreeHandle(SQL_HANDLE_DBC, connection_);
    SQLFreeHandle(SQL_HANDLE_ENV, environment_);
  }

  void Run(const std::string& sql) const { SQLFreeHandle(SQL_HANDLE_STMT, Executed(sql)); }

  /// Copies every cell's text, as the driver gives it, into `buffer`; gives the rows.
  int FetchAndCopy(const std::string& sql, std::u16string& buffer) const {
    SQLHANDLE statement = Executed(sql);
    SQLSMALLINT columns = 0;
    Check(SQLNumResultCols(statement, &columns), "columns");
    std::array<SQLWCHAR, 512> cell{};
    int rows = 0;
    for (; SQLFetch(statement) == SQL_SUCCESS; ++rows) {
      for (SQLUSMALLINT column = 1; column <= columns; ++column) {
        SQLLEN bytes = 0;
        Check(SQLGetData(statement, column, SQL_C_WCHAR, cell.data(),
                         static_cast<SQLLEN>(sizeof cell), &bytes),
              "cell");
        if (bytes > 0) buffer.append(cell.data(), cell.data() + bytes / 2);
      }
    }
    SQLFreeHandle(SQL_HANDLE_STMT, statement);
    return rows;
  }

 private:
  static void Check(SQLRETURN result, const char* what) {
    if (!SQL_SUCCEEDED(result) && result != SQL_NO_DATA) throw std::runtime_error(what);
  }

  [[nodiscard]] SQLHANDLE Executed(const std::string& sql) const {
    SQLHANDLE statement = nullptr;
    Check(SQLAllocHandle(SQL_HANDLE_STMT, connection_, &statement), "statement");
    std::u16string text = host::ToUtf16(sql);
    Check(SQLExecDirectW(statement, reinterpret_cast<SQLWCHAR*>(text.data()),
                         static_cast<SQLINTEGER>(text.size())),
          sql.c_str());
    return statement;
  }

  SQLHANDLE environment_ = nullptr;
  SQLHANDLE connection_ = nullptr;
};

}  // namespace tavrix::bench
