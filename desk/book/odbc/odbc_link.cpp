#include "book/odbc/odbc_link.h"

#include <array>

#include "book/odbc/odbc_error.h"
#include "book/odbc/odbc_parameters.h"
#include "book/odbc/odbc_text.h"

namespace desk::book {

namespace {

/// Small numbers pass as pointers.
SQLPOINTER Number(std::uintptr_t number) {
  return reinterpret_cast<SQLPOINTER>(number);  // NOLINT(performance-no-int-to-ptr)
}

OdbcHandle NewEnvironment() {
  OdbcHandle environment(SQL_HANDLE_ENV, nullptr);
  SQLSetEnvAttr(environment.Get(), SQL_ATTR_ODBC_VERSION, Number(SQL_OV_ODBC3), 0);
  return environment;
}

}  // namespace

OdbcHandle::OdbcHandle(SQLSMALLINT kind, SQLHANDLE parent) : kind_(kind) {
  if (!SQL_SUCCEEDED(SQLAllocHandle(kind, parent, &handle_))) {
    handle_ = nullptr;
    throw DatabaseError(ErrorKind::kOther, "ODBC 不能使用");
  }
}

OdbcLink::OdbcLink(const std::string& connection_string, int seconds, bool read_only)
    : environment_(NewEnvironment()), connection_(SQL_HANDLE_DBC, environment_.Get()) {
  SQLSetConnectAttrW(Get(), SQL_ATTR_LOGIN_TIMEOUT, Number(static_cast<std::uintptr_t>(seconds)),
                     SQL_IS_UINTEGER);
  if (read_only) {
    SQLSetConnectAttrW(Get(), SQL_ATTR_ACCESS_MODE, Number(SQL_MODE_READ_ONLY), SQL_IS_UINTEGER);
  }
  WideText text(connection_string);
  Check(SQLDriverConnectW(Get(), nullptr, text.Data(), static_cast<SQLSMALLINT>(text.Length()),
                          nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT));
  flavor_ = FlavorOf(Info(SQL_DBMS_NAME));
}

OdbcLink::~OdbcLink() {
  SQLDisconnect(Get());
}

std::string OdbcLink::Info(SQLUSMALLINT what) const {
  std::array<SQLWCHAR, 128> text{};
  SQLSMALLINT bytes = 0;
  const SQLRETURN result =
      SQLGetInfoW(Get(), what, text.data(), static_cast<SQLSMALLINT>(sizeof text), &bytes);
  if (!SQL_SUCCEEDED(result)) return {};
  return FromWide(text.data(), static_cast<std::size_t>(bytes) / sizeof(SQLWCHAR));
}

void OdbcLink::SetAutocommit(bool on) {
  Check(SQLSetConnectAttrW(Get(), SQL_ATTR_AUTOCOMMIT,
                           Number(on ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF), SQL_IS_UINTEGER));
}

void OdbcLink::End(SQLSMALLINT how) {
  Check(SQLEndTran(SQL_HANDLE_DBC, Get(), how));
}

OdbcHandle OdbcLink::Run(const std::string& sql, Values parameters) {
  OdbcHandle statement(SQL_HANDLE_STMT, Get());
  const OdbcParameters bound(*this, statement, parameters);
  WideText text(sql);
  SetRunning(statement.Get());
  const SQLRETURN result =
      SQLExecDirectW(statement.Get(), text.Data(), static_cast<SQLINTEGER>(text.Length()));
  SetRunning(nullptr);
  // An UPDATE or DELETE that met no row is fine.
  if (result != SQL_NO_DATA) Check(result, statement);
  SQLFreeStmt(statement.Get(), SQL_RESET_PARAMS);  // what they point to goes now
  return statement;
}

OdbcHandle OdbcLink::Tables() {
  OdbcHandle statement(SQL_HANDLE_STMT, Get());
  Check(SQLTablesW(statement.Get(), nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0), statement);
  return statement;
}

std::int64_t OdbcLink::ChangedRows(const OdbcHandle& statement) {
  SQLLEN rows = 0;
  Check(SQLRowCount(statement.Get(), &rows), statement);
  return rows;
}

void OdbcLink::SetRunning(SQLHANDLE statement) {
  const std::scoped_lock lock(cancelling_);  // a statement that is being cancelled stays
  running_ = statement;
}

void OdbcLink::Cancel() noexcept {
  const std::scoped_lock lock(cancelling_);
  if (running_ != nullptr) SQLCancel(running_);
}

void OdbcLink::Check(SQLRETURN result, const OdbcHandle& statement) {
  if (!SQL_SUCCEEDED(result)) Fail(SQL_HANDLE_STMT, statement.Get());
}

void OdbcLink::Check(SQLRETURN result) {
  if (!SQL_SUCCEEDED(result)) Fail(SQL_HANDLE_DBC, Get());
}

void OdbcLink::Fail(SQLSMALLINT kind, SQLHANDLE handle) {
  const auto error = OdbcError(kind, handle, flavor_);
  SQLUINTEGER dead = SQL_CD_FALSE;
  SQLGetConnectAttrW(Get(), SQL_ATTR_CONNECTION_DEAD, &dead, SQL_IS_UINTEGER, nullptr);
  if (error.Kind() == ErrorKind::kGone) dead_ = true;
  if (dead == SQL_CD_TRUE && !dead_) {
    dead_ = true;
    throw DatabaseError(ErrorKind::kGone,
                        std::string("与数据库服务器的连接已断开：") + error.what());
  }
  throw DatabaseError(error);
}

}  // namespace desk::book
