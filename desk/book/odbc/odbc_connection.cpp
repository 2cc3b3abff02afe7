#include "book/odbc/odbc_connection.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "book/database/connection_string.h"
#include "book/database/tables.h"
#include "book/odbc/odbc_text.h"
#include "host/text.h"

namespace desk::book {

namespace {

constexpr const char* kVersionRow = "schema_version";

/// PostgreSQL ends a statement that takes longer.
std::string TimeLimitStatement(std::chrono::milliseconds limit) {
  return "set statement_timeout=" + std::to_string(limit.count());
}

/// What is asked of a server before its first statement: plain SQL texts, patience, reading only.
std::vector<std::string> FirstStatements(SqlDialect dialect, const Place& place) {
  const std::string patience = std::to_string(place.patience.count());
  std::vector<std::string> statements;
  switch (dialect) {
    case SqlDialect::kPostgres:
      statements = {"set standard_conforming_strings=on",
                    "set default_transaction_isolation='read committed'",
                    "set lock_timeout=" + patience, TimeLimitStatement(place.time_limit)};
      if (place.access == Access::kReadOnly) {
        statements.emplace_back("set default_transaction_read_only=on");
      }
      break;
    case SqlDialect::kSqlServer:
      statements = {"set quoted_identifier on", "set lock_timeout " + patience};
      break;
    case SqlDialect::kMariaDb:
      statements = {
          "set sql_mode='TRADITIONAL,NO_BACKSLASH_ESCAPES,IGNORE_SPACE,ANSI_QUOTES,"
          "PIPES_AS_CONCAT'",
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
std::string TableQuery(SqlDialect dialect) {
  const char* schema = nullptr;
  if (dialect == SqlDialect::kPostgres) schema = "current_schema()";
  if (dialect == SqlDialect::kSqlServer) schema = "schema_name()";
  if (dialect == SqlDialect::kMariaDb) schema = "database()";
  if (schema == nullptr) return {};
  return std::string("select 1 from information_schema.tables where table_schema=") + schema +
         " and lower(table_name)=?";
}

}  // namespace

OdbcConnection::OdbcConnection(const Place& place) : place_(place) {
  Connect();
}

void OdbcConnection::Connect() {
  tables_.clear();
  channel_ = std::make_shared<OdbcChannel>(DriverText(place_.path), place_);
  try {
    SetUp();
  } catch (...) {
    channel_->GiveUp();  // nothing may be sent over a connection that is not set up
    throw;
  }
}

void OdbcConnection::SetUp() {
  const bool asked = place_.access == Access::kReadOnly || Info(SQL_DATA_SOURCE_READ_ONLY) == "Y";
  why_read_only_ = asked ? "账簿是只读的，不能写入" : "";
  for (const std::string& sql : FirstStatements(Dialect(), place_)) (void)Read(sql, {});
  JudgeServer();
}

void OdbcConnection::JudgeServer() {
  if (Dialect() == SqlDialect::kPostgres) JudgePostgres();
  CheckTexts();
}

/// A standby, and a role that may change nothing in the chart, serve for reading. A connection that
/// comes from the server's own address does not leave the machine, nor does one without addresses,
/// nor one to this machine, whatever takes it from there.
void OdbcConnection::JudgePostgres() {
  const auto rows = Read(
      "select current_setting('server_encoding'),"
      "(select cast(ssl as integer) from pg_stat_ssl where pid=pg_backend_pid()),"
      "cast(inet_client_addr() is not distinct from inet_server_addr() as integer),"
      "cast(current_setting('transaction_read_only')='on' as integer),"
      "(select cast(has_any_column_privilege(oid,'insert,update') or "
      "has_table_privilege(oid,'delete') as integer) from pg_class where relname='gl_code' and "
      "relkind in ('r','p','v') and pg_table_is_visible(oid))",
      {});
  if (!rows->Next()) return;
  if (rows->Get(0).ToText() == "SQL_ASCII") {
    throw DatabaseError(ErrorKind::kRefused,
                        "数据库的字符集是 SQL_ASCII，不能可靠地保存中文，请使用 UTF8 的数据库");
  }
  const auto is = [&](int column, int number) {
    const host::Value value = rows->Get(column);
    return !value.IsNull() && value.ToLong() == number;
  };
  const std::string server = ServerName(place_.path);
  const bool here = is(2, 1) || (!server.empty() && IsThisMachine(server));
  const Wire before = std::exchange(wire_, here ? Wire::kLocal : Wire::kPlain);
  if (is(1, 1)) wire_ = Wire::kEncrypted;
  // Whoever cut the wire may want to read along on the next one.
  if (before == Wire::kEncrypted && wire_ != before) {
    wire_ = before;
    throw DatabaseError(ErrorKind::kRefused, "连接先前已加密，现在没有加密，因此没有重新连接");
  }
  if (ReadOnly()) return;
  if (is(3, 1)) why_read_only_ = "数据库服务器或用户只准读取，账簿不能写入";
  if (is(4, 0)) why_read_only_ = "数据库用户没有修改账簿的权限，账簿只能查看";
}

void OdbcConnection::CheckWritable() const {
  if (ReadOnly()) throw DatabaseError(ErrorKind::kReadOnly, why_read_only_);
}

/// Some drivers cut texts behind certain characters, and a database in another character set loses
/// them: what is read there must not be saved again. "付" ends in a byte that one driver takes for
/// the first half of a pair.
void OdbcConnection::CheckTexts() {
  if (Dialect() == SqlDialect::kOther) return;
  const auto rows = Read("select '应付款'", {});
  if (rows->Next() && rows->Get(0).ToText() == "应付款") return;
  throw DatabaseError(ErrorKind::kRefused, "数据库或其 ODBC 驱动程序不能正确传送中文");
}

void OdbcConnection::SetTimeLimit(std::chrono::milliseconds limit) {
  if (limit == place_.time_limit) return;
  place_.time_limit = limit;
  channel_->SetTimeLimit(limit);
  if (Dialect() == SqlDialect::kPostgres && !channel_->Dead())
    (void)Read(TimeLimitStatement(limit), {});
}

std::string OdbcConnection::Info(SQLUSMALLINT what) const {
  return channel_->Call([what](OdbcLink& link) { return link.Info(what); });
}

void OdbcConnection::MakeReady() {
  if (!channel_->Dead() || in_transaction_) return;
  try {
    Connect();
  } catch (const DatabaseError& error) {
    throw DatabaseError(ErrorKind::kGone,
                        std::string("数据库服务器没有响应，请稍后再试：") + error.what());
  }
}

std::unique_ptr<OdbcRows> OdbcConnection::Read(const std::string& sql, Values parameters) {
  try {
    const std::vector<host::Value> values(parameters.begin(), parameters.end());
    auto reader = channel_->Call([sql, values](OdbcLink& link) {
      return std::make_shared<OdbcReader>(link, link.Run(sql, values));
    });
    return std::make_unique<OdbcRows>(channel_, std::move(reader));
  } catch (...) {
    failed_ = true;
    throw;
  }
}

std::unique_ptr<Rows> OdbcConnection::Query(const std::string& sql, Origin origin,
                                            Values parameters) {
  if (origin == Origin::kCaller) {
    const bool query = statements_.Check(sql) == StatementKind::kQuery;
    if (!query) throw DatabaseError(ErrorKind::kRefused, "这条语句不是查询");
  }
  MakeReady();
  return ReadAgain(sql, parameters);
}

std::unique_ptr<OdbcRows> OdbcConnection::ReadAgain(const std::string& sql, Values parameters) {
  try {
    return Read(sql, parameters);
  } catch (const DatabaseError&) {
    if (!channel_->Lost() || in_transaction_) throw;
    try {
      MakeReady();
    } catch (const DatabaseError&) {  // the caller reports that the connection was lost
    }
    if (channel_->Dead()) throw;
  }
  return Read(sql, parameters);
}

std::int64_t OdbcConnection::Execute(const std::string& sql, Origin origin, Values parameters) {
  if (origin == Origin::kCaller) {
    statements_.Check(sql);
    CheckWritable();
  }
  MakeReady();
  return Change(sql, parameters);
}

std::int64_t OdbcConnection::Change(const std::string& sql, Values parameters) {
  return FinishChange(StartChange(sql, {parameters.begin(), parameters.end()}));
}

Ending OdbcConnection::Start(const std::string& sql, std::vector<host::Value> parameters) {
  MakeReady();
  return [this, change = StartChange(sql, std::move(parameters))] { (void)FinishChange(change); };
}

OdbcConnection::PendingChange OdbcConnection::StartChange(const std::string& sql,
                                                          std::vector<host::Value> parameters) {
  return channel_->Start([sql, values = std::move(parameters)](OdbcLink& link) {
    const OdbcHandle statement = link.Run(sql, values);
    return link.ChangedRows(statement);
  });
}

std::int64_t OdbcConnection::FinishChange(const PendingChange& change) {
  try {
    return channel_->Finish(change);
  } catch (const DatabaseError& error) {
    failed_ = true;
    FailChange(error);
  }
}

void OdbcConnection::FailChange(const DatabaseError& error) {
  if (!channel_->GivenUp()) throw DatabaseError(error);
  throw DatabaseError(ErrorKind::kGone, error.what() + std::string("，这次操作是否完成不得而知"));
}

void OdbcConnection::SetAutocommit(bool on) {
  (void)channel_->Call([on](OdbcLink& link) {
    link.SetAutocommit(on);
    return true;
  });
}

void OdbcConnection::End(SQLSMALLINT how) {
  (void)channel_->Call([how](OdbcLink& link) {
    link.End(how);
    return true;
  });
}

void OdbcConnection::Begin() {
  CheckWritable();
  if (in_transaction_) throw DatabaseError(ErrorKind::kOther, "已经有一个没有结束的事务");
  MakeReady();
  const bool lockable = HasTable(kIdentifierTableName);
  SetAutocommit(false);
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
    if (failed_) throw DatabaseError(ErrorKind::kOther, "事务中有语句失败，全部更改已撤销");
    End(SQL_COMMIT);
  } catch (const DatabaseError& error) {
    Rollback();
    FailChange(error);
  }
  in_transaction_ = false;
  try {
    SetAutocommit(true);
  } catch (const DatabaseError&) {
    channel_->GiveUp();  // what was committed stays
  }
}

void OdbcConnection::Rollback() noexcept {
  if (!in_transaction_) return;
  in_transaction_ = false;
  tables_.clear();  // tables that the transaction has made are gone
  try {
    End(SQL_ROLLBACK);
    SetAutocommit(true);
  } catch (const DatabaseError&) {
    // Nothing is kept on a connection that has gone; one that cannot go on is not used again.
    channel_->GiveUp();
  }
}

std::string OdbcConnection::Driver() const {
  switch (channel_->Server()) {
    case SqlDialect::kPostgres:
      return "postgresql";
    case SqlDialect::kSqlServer:
      return "sqlserver";
    case SqlDialect::kAccess:
      return "jet";
    case SqlDialect::kMariaDb:
      return "mariadb";
    default:
      return host::LowerCase(Info(SQL_DBMS_NAME));
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
  const std::string query = TableQuery(channel_->Server());
  if (!query.empty()) {
    const host::Value name(table);
    return Read(query, {&name, 1})->Next();
  }
  auto reader = channel_->Call(
      [](OdbcLink& link) { return std::make_shared<OdbcReader>(link, link.Tables()); });
  OdbcRows rows(channel_, std::move(reader));
  constexpr int kNameColumn = 2;
  while (rows.Next()) {
    if (host::EqualNoCase(rows.Get(kNameColumn).ToText(), table)) return true;
  }
  return false;
}

bool OdbcConnection::HasColumn(std::string_view table, std::string_view column) {
  MakeReady();
  const auto rows = Read("select * from " + std::string(table) + " where 1=0", {});
  for (int i = 0; i < rows->Columns(); ++i) {
    if (host::EqualNoCase(rows->ColumnName(i), column)) return true;
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
