#include "book/odbc_connection.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include "book/connection_string.h"
#include "book/odbc_rows.h"
#include "book/odbc_text.h"
#include "book/schema.h"
#include "host/text.h"

namespace desk::book {

namespace {

/// The parameters of one run; drivers read them while the statement runs.
class Bound {
 public:
  Bound(OdbcLink& link, const OdbcHandle& statement, Values values)
      : link_(link), statement_(statement), cells_(values.size()) {
    for (std::size_t i = 0; i < values.size(); ++i) Bind(i, values[i]);
  }
  Bound(const Bound&) = delete;
  Bound& operator=(const Bound&) = delete;
  ~Bound() = default;

 private:
  struct Cell {
    SQLBIGINT whole = 0;
    SQLINTEGER small_whole = 0;
    double real = 0;
    std::u16string text;
    SQLLEN indicator = 0;
  };

  void Bind(std::size_t at, const host::Value& value) {
    Cell& cell = cells_[at];
    if (const auto* flag = std::get_if<bool>(&value.Raw())) return BindWhole(at, *flag ? 1 : 0);
    if (const auto* whole = std::get_if<std::int64_t>(&value.Raw())) return BindWhole(at, *whole);
    if (const auto* real = std::get_if<double>(&value.Raw())) return BindReal(at, *real);
    cell.indicator = SQL_NULL_DATA;
    if (!value.IsNull()) {
      cell.text = host::ToUtf16(value.ToText());
      cell.indicator = static_cast<SQLLEN>(cell.text.size() * sizeof(char16_t));
    }
    const SQLULEN length = std::max<SQLULEN>(cell.text.size(), 1);
    Pass(at, SQL_C_WCHAR, SQL_WVARCHAR, length, cell.text.data());
  }

  /// Access knows no whole numbers of 64 bits.
  void BindWhole(std::size_t at, std::int64_t number) {
    Cell& cell = cells_[at];
    if (link_.Server() != Flavor::kAccess) {
      cell.whole = number;
      return Pass(at, SQL_C_SBIGINT, SQL_BIGINT, 0, &cell.whole);
    }
    using Small = std::numeric_limits<SQLINTEGER>;
    if (number < Small::min() || number > Small::max()) {
      return BindReal(at, static_cast<double>(number));
    }
    cell.small_whole = static_cast<SQLINTEGER>(number);
    Pass(at, SQL_C_SLONG, SQL_INTEGER, 0, &cell.small_whole);
  }

  void BindReal(std::size_t at, double number) {
    cells_[at].real = number;
    Pass(at, SQL_C_DOUBLE, SQL_DOUBLE, 0, &cells_[at].real);
  }

  void Pass(std::size_t at, SQLSMALLINT from, SQLSMALLINT to, SQLULEN length, SQLPOINTER data) {
    link_.Check(
        SQLBindParameter(statement_.Get(), static_cast<SQLUSMALLINT>(at + 1), SQL_PARAM_INPUT, from,
                         to, length, 0, data, 0, &cells_[at].indicator),
        statement_);
  }

  OdbcLink& link_;
  const OdbcHandle& statement_;
  std::vector<Cell> cells_;
};

constexpr const char* kVersionRow = "schema_version";

/// What is asked of a server before its first statement: plain SQL texts, patience, reading only.
std::vector<std::string> FirstStatements(Flavor flavor, const Place& place) {
  const std::string patience = std::to_string(place.patience.count());
  std::vector<std::string> statements;
  switch (flavor) {
    case Flavor::kPostgres:
      statements = {"set standard_conforming_strings=on", "set lock_timeout=" + patience};
      if (place.access == Access::kReadOnly) {
        statements.emplace_back("set default_transaction_read_only=on");
      }
      break;
    case Flavor::kSqlServer:
      statements = {"set quoted_identifier on", "set lock_timeout " + patience};
      break;
    case Flavor::kMariaDb:
      statements = {"set sql_mode='TRADITIONAL,NO_BACKSLASH_ESCAPES,IGNORE_SPACE,ANSI_QUOTES'",
                    "set session transaction isolation level read committed",
                    "set innodb_lock_wait_timeout=" +
                        std::to_string(std::max<std::int64_t>(place.patience.count() / 1000, 1))};
      break;
    default:
      break;
  }
  return statements;
}

/// Asks whether a table of the current schema is there; empty where the catalogue has to be asked.
std::string TableQuery(Flavor flavor) {
  const char* schema = nullptr;
  if (flavor == Flavor::kPostgres) schema = "current_schema()";
  if (flavor == Flavor::kSqlServer) schema = "schema_name()";
  if (flavor == Flavor::kMariaDb) schema = "database()";
  if (schema == nullptr) return {};
  return std::string("select 1 from information_schema.tables where table_schema=") + schema +
         " and lower(table_name)=?";
}

}  // namespace

OdbcConnection::OdbcConnection(const Place& place) : place_(place) {
  Connect();
  read_only_ = place_.access == Access::kReadOnly || link_->Info(SQL_DATA_SOURCE_READ_ONLY) == "Y";
}

void OdbcConnection::Connect() {
  constexpr int kSeconds = 10;
  link_ = std::make_shared<OdbcLink>(std::string(DriverManagerText(place_.path)), kSeconds,
                                     place_.access == Access::kReadOnly);
  tables_.clear();
  try {
    for (const std::string& sql : FirstStatements(link_->Server(), place_)) (void)Run(sql, {});
    CheckTexts();
  } catch (...) {
    link_->GiveUp();  // nothing may be sent over a connection that is not set up
    throw;
  }
}

/// Some drivers cut texts behind certain characters, and a database in another character set loses
/// them: what is read there must not be saved again. "付" ends in a byte that one driver takes for
/// the first half of a pair.
void OdbcConnection::CheckTexts() {
  if (link_->Server() == Flavor::kOther) return;
  OdbcRows rows(link_, Run("select '应付款'", {}));
  if (rows.Next() && rows.Get(0).ToText() == "应付款") return;
  throw DatabaseError(Trouble::kRefused, "数据库或其 ODBC 驱动程序不能正确传送中文");
}

void OdbcConnection::MakeReady() {
  if (!link_->Dead() || in_transaction_) return;
  try {
    Connect();
  } catch (const DatabaseError& error) {
    throw DatabaseError(Trouble::kGone,
                        std::string("数据库服务器没有响应，请稍后再试：") + error.what());
  }
}

OdbcHandle OdbcConnection::Run(const std::string& sql, Values parameters) {
  try {
    if (link_->Dead()) {
      throw DatabaseError(Trouble::kGone, "与数据库服务器的连接已断开，这次操作没有完成");
    }
    OdbcHandle statement = link_->NewStatement();
    const Bound bound(*link_, statement, parameters);
    WideText text(sql);
    const SQLRETURN result =
        SQLExecDirectW(statement.Get(), text.Data(), static_cast<SQLINTEGER>(text.Length()));
    // An UPDATE or DELETE that met no row is fine.
    if (result != SQL_NO_DATA) link_->Check(result, statement);
    SQLFreeStmt(statement.Get(), SQL_RESET_PARAMS);  // what they point to goes now
    return statement;
  } catch (...) {
    failed_ = true;
    throw;
  }
}

std::unique_ptr<Rows> OdbcConnection::Query(const std::string& sql, Origin origin,
                                            Values parameters) {
  if (origin == Origin::kCaller) {
    const bool query = statements_.Check(sql) == StatementKind::kQuery;
    if (!query) throw DatabaseError(Trouble::kRefused, "这条语句不是查询");
  }
  MakeReady();
  return std::make_unique<OdbcRows>(link_, RunQuery(sql, parameters));
}

OdbcHandle OdbcConnection::RunQuery(const std::string& sql, Values parameters) {
  try {
    return Run(sql, parameters);
  } catch (const DatabaseError&) {
    if (!link_->Dead() || in_transaction_) throw;
    try {
      MakeReady();
    } catch (const DatabaseError&) {  // the caller reports that the connection was lost
    }
    if (link_->Dead()) throw;
  }
  return Run(sql, parameters);
}

std::int64_t OdbcConnection::Execute(const std::string& sql, Origin origin, Values parameters) {
  if (origin == Origin::kCaller) {
    statements_.Check(sql);
    if (read_only_) throw DatabaseError(Trouble::kReadOnly, "账簿是只读的，不能写入");
  }
  MakeReady();
  return Change(sql, parameters);
}

std::int64_t OdbcConnection::Change(const std::string& sql, Values parameters) {
  const OdbcHandle statement = Run(sql, parameters);
  SQLLEN rows = 0;
  link_->Check(SQLRowCount(statement.Get(), &rows), statement);
  return rows;
}

void OdbcConnection::Begin() {
  if (read_only_) throw DatabaseError(Trouble::kReadOnly, "账簿是只读的，不能写入");
  if (in_transaction_) throw DatabaseError(Trouble::kOther, "已经有一个没有结束的事务");
  MakeReady();
  const bool lockable = HasTable(kIdentifierTableName);
  link_->SetAutocommit(false);
  in_transaction_ = true;
  failed_ = false;
  if (!lockable) return;
  try {
    TakeWriteLock();
  } catch (...) {
    Rollback();
    throw;
  }
}

/// Whoever changes this row first goes first; all others wait for its transaction to end. Servers
/// have no other lock in common. MariaDB does not count a row that stays as it was.
void OdbcConnection::TakeWriteLock() {
  const host::Value row(kVersionRow);
  if (Change("update desk_identifier set last_id=last_id where table_name=?", {&row, 1}) > 0)
    return;
  if (!StoredVersion()) SetSchemaVersion(0);
}

void OdbcConnection::Commit() {
  try {
    if (failed_) throw DatabaseError(Trouble::kOther, "事务中有语句失败，全部更改已撤销");
    link_->End(SQL_COMMIT);
  } catch (...) {
    Rollback();
    throw;
  }
  in_transaction_ = false;
  try {
    link_->SetAutocommit(true);
  } catch (const DatabaseError&) {
    link_->GiveUp();  // what was committed stays
  }
}

void OdbcConnection::Rollback() noexcept {
  if (!in_transaction_) return;
  in_transaction_ = false;
  tables_.clear();  // tables that the transaction has made are gone
  try {
    link_->End(SQL_ROLLBACK);
    link_->SetAutocommit(true);
  } catch (const DatabaseError&) {
    // Nothing is kept on a connection that has gone; one that cannot go on is not used again.
    link_->GiveUp();
  }
}

std::string OdbcConnection::Driver() const {
  switch (link_->Server()) {
    case Flavor::kPostgres:
      return "postgresql";
    case Flavor::kSqlServer:
      return "sqlserver";
    case Flavor::kAccess:
      return "jet";
    case Flavor::kMariaDb:
      return "mariadb";
    default:
      return host::LowerCase(link_->Info(SQL_DBMS_NAME));
  }
}

bool OdbcConnection::HasTable(std::string_view table) {
  const std::string name = host::LowerCase(table);
  if (tables_.contains(name)) return true;
  MakeReady();
  if (!FindTable(name)) return false;
  tables_.insert(name);
  return true;
}

bool OdbcConnection::FindTable(const std::string& table) {
  const std::string query = TableQuery(link_->Server());
  if (!query.empty()) {
    const host::Value name(table);
    return OdbcRows(link_, Run(query, {&name, 1})).Next();
  }
  OdbcHandle statement = link_->NewStatement();
  link_->Check(SQLTablesW(statement.Get(), nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0),
               statement);
  OdbcRows rows(link_, std::move(statement));
  constexpr int kNameColumn = 2;
  while (rows.Next()) {
    if (host::EqualNoCase(rows.Get(kNameColumn).ToText(), table)) return true;
  }
  return false;
}

bool OdbcConnection::HasColumn(std::string_view table, std::string_view column) {
  MakeReady();
  const OdbcRows rows(link_, Run("select * from " + std::string(table) + " where 1=0", {}));
  for (int i = 0; i < rows.Columns(); ++i) {
    if (host::EqualNoCase(rows.ColumnName(i), column)) return true;
  }
  return false;
}

std::optional<int> OdbcConnection::StoredVersion() {
  const host::Value row(kVersionRow);
  const auto rows =
      Query("select last_id from desk_identifier where table_name=?", Origin::kDesk, {&row, 1});
  if (!rows->Next()) return {};
  return rows->Get(0).ToLong();
}

int OdbcConnection::SchemaVersion() {
  return HasTable(kIdentifierTableName) ? StoredVersion().value_or(0) : 0;
}

void OdbcConnection::SetSchemaVersion(int version) {
  MakeReady();
  const host::Value values[] = {version, kVersionRow};
  if (Change("update desk_identifier set last_id=? where table_name=?", values) > 0) return;
  if (StoredVersion()) return;
  (void)Change("insert into desk_identifier(last_id,table_name)values(?,?)", values);
}

}  // namespace desk::book
