#include "book/session/schema.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <utility>

#include "book/database/connection_string.h"
#include "book/session/journal_rules.h"
#include "book/session/ledger_rules.h"
#include "host/text.h"

namespace desk::book {

namespace {

using enum ColumnKind;

/// How an engine writes each kind of column, in the order of `ColumnKind`.
using Types = std::array<std::string_view, 9>;

constexpr Types kSqliteTypes = {"integer primary key",
                                "integer default 0",
                                "integer",
                                "smallint default 0",
                                "text default ''",
                                "text collate nocase",
                                "bigint default 0",
                                "double precision default 0",
                                "text not null collate nocase"};
// In the collation "C" an index serves a prefix search, and codes stand in the order of their
// digits.
constexpr Types kPostgresTypes = {
    "integer primary key", "integer default 0",  "integer",          "smallint default 0",
    "text default ''",     "text collate \"C\"", "bigint default 0", "double precision default 0",
    "text not null"};
constexpr Types kSqlServerTypes = {"int not null primary key",
                                   "int default 0",
                                   "int",
                                   "smallint default 0",
                                   "nvarchar(255) default ''",
                                   "nvarchar(40)",
                                   "bigint default 0",
                                   "float default 0",
                                   "nvarchar(60) not null"};
constexpr Types kAccessTypes = {
    "long not null primary key", "long default 0",       "long",
    "short default 0",           "text(255) default ''", "text(40)",
    "double default 0",          "double default 0",     "text(60) not null"};
constexpr Types kMariaDbTypes = {
    "int not null primary key", "int default 0",           "int",
    "smallint default 0",       "varchar(255) default ''", "varchar(40)",
    "bigint default 0",         "double default 0",        "varchar(60) not null"};

const Types& TypesOf(SqlDialect dialect) {
  switch (dialect) {
    case SqlDialect::kSqlite:
      return kSqliteTypes;
    case SqlDialect::kPostgres:
      return kPostgresTypes;
    case SqlDialect::kSqlServer:
      return kSqlServerTypes;
    case SqlDialect::kAccess:
      return kAccessTypes;
    case SqlDialect::kMariaDb:
      return kMariaDbTypes;
    case SqlDialect::kOther:
      break;
  }
  throw DatabaseError(ErrorKind::kRefused, "不知道这种数据库怎样建立账簿的表");
}

/// For two servers a second null is a duplicate unless the index leaves nulls out.
std::string IndexText(std::string_view index, SqlDialect dialect) {
  std::string text(index);
  if (index != kVoucherLineIndex) return text;
  if (dialect == SqlDialect::kSqlServer) text += " where voucher_number is not null";
  if (dialect == SqlDialect::kAccess) text += " with ignore null";
  return text;
}

/// What statements need and the server lacks. `len` counts UTF-16 units.
std::vector<std::string> Additions(SqlDialect dialect) {
  switch (dialect) {
    case SqlDialect::kPostgres:
      return {"create unique index gl_code_nocase on gl_code(lower(ccode))",
              "create function len(text) returns integer language sql immutable strict as $$select "
              "case when octet_length($1)=char_length($1) then char_length($1) else "
              "char_length($1)+char_length(regexp_replace($1,'[^\\U00010000-\\U0010FFFF]','',"
              "'g')) end$$"};
    case SqlDialect::kMariaDb:
      return {"create function len(t text) returns int deterministic return char_length(t)"};
    default:
      return {};
  }
}

void Append(std::string& list, std::string_view item) {
  if (!list.empty()) list += ",";
  list += item;
}

void Append(std::vector<std::string>& script, std::vector<std::string> more) {
  for (std::string& statement : more) script.push_back(std::move(statement));
}

std::string CreateText(const Table& table, SqlDialect dialect) {
  const Types& types = TypesOf(dialect);
  std::string columns;
  std::string key;
  for (const Column& column : table.columns) {
    Append(columns, std::string(column.name) + " " +
                        std::string(types[static_cast<std::size_t>(column.kind)]));
    if (column.kind == kKeyText) Append(key, column.name);
  }
  if (!key.empty()) columns += ",primary key(" + key + ")";
  return "create table " + std::string(table.name) + "(" + columns + ")";
}

void AppendTable(std::vector<std::string>& script, const Table& table, SqlDialect dialect) {
  script.push_back(CreateText(table, dialect));
  for (const std::string_view index : table.indexes) script.push_back(IndexText(index, dialect));
}

void Run(Connection& connection, const std::vector<std::string>& script) {
  for (const std::string& statement : script) connection.Execute(statement, Origin::kDesk);
}

/// Whoever changes accounts writes the history of them. The owner's own rights are not asked for.
constexpr const char* kGrantHistory =
    "do $$declare role text; begin for role in select distinct case grantee when 0 then 'public' "
    "else quote_ident(pg_get_userbyid(grantee)) end from pg_class,aclexplode(relacl) where "
    "oid='gl_code'::regclass and privilege_type in('INSERT','UPDATE','DELETE') loop execute 'grant "
    "select,insert on desk_command,desk_change,desk_moved to '||role; end loop; end$$";

void MakeHistory(Connection& connection) {
  if (connection.HasTable(kCommandTableName)) {
    // Version 5 had the tables without this index.
    Run(connection, {"create index if not exists desk_moved_code on desk_moved(to_code)"});
    return;
  }
  Run(connection, JournalTables(connection.Dialect()));
  if (connection.Dialect() == SqlDialect::kPostgres) Run(connection, {kGrantHistory});
}

/// The columns of the chart that the library reads and writes; the book of another maker must have
/// them. The other tables are asked for as tables only.
std::string MissingIn(Connection& connection, const Table& table) {
  const std::string name(table.name);
  if (!connection.HasTable(name)) return "账簿中没有表：" + name + "\n";
  if (&table != &SchemaTables()[0]) return {};
  std::string missing;
  for (const Column& column : table.columns) {
    if (connection.HasColumn(name, column.name)) continue;
    missing += "账簿的表 " + name + " 中没有列：" + std::string(column.name) + "\n";
  }
  return missing;
}

/// The controls keep keys in 32 bits.
std::string KeyBeyondBounds(Connection& connection, const Table& table) {
  const Column& key = table.columns.front();
  const std::string name(table.name);
  if (key.kind != kKey || !connection.HasTable(name) || !connection.HasColumn(name, key.name)) {
    return {};
  }
  using Bounds = std::numeric_limits<std::int32_t>;
  for (const char* end : {"max(", "min("}) {  // in two queries the engine looks at two rows alone
    const auto rows = connection.Query("select " + (end + std::string(key.name)) + ") from " + name,
                                       Origin::kDesk);
    const host::Value value = rows->Next() ? rows->Get(0) : host::Value();
    if (value.ToNumber() >= Bounds::min() && value.ToNumber() <= Bounds::max()) continue;
    return "账簿的表 " + name + " 的标识超出范围：" + value.ToText() + "\n";
  }
  return {};
}

}  // namespace

std::vector<std::string> SchemaScript(SqlDialect dialect) {
  std::vector<std::string> script;
  for (const Table& table : SchemaTables()) AppendTable(script, table, dialect);
  AppendTable(script, IdentifierTable(), dialect);
  Append(script, JournalTables(dialect));
  Append(script, Additions(dialect));
  Append(script, LedgerRules(dialect));
  Append(script, JournalRules(dialect));
  return script;
}

bool HasEmptySchema(Connection& connection) {
  return std::ranges::all_of(SchemaTables(), [&](const Table& table) {
    const std::string name(table.name);
    if (!connection.HasTable(name)) return false;
    const auto rows = connection.Query("select count(*) from " + name, Origin::kDesk);
    return rows->Next() && rows->Get(0).ToLong() == 0;
  });
}

void CreateSchema(Connection& connection, const std::function<void()>& load) {
  std::vector<std::string> script;
  if (!HasEmptySchema(connection)) script = SchemaScript(connection.Dialect());
  const auto is_table = [](const std::string& s) { return s.starts_with("create table "); };
  const auto rest = std::stable_partition(script.begin(), script.end(), is_table);
  Run(connection, {script.begin(), rest});
  if (load) load();
  Run(connection, {rest, script.end()});
  connection.SetSchemaVersion(kSchemaVersion);
}

void RenewSchema(Session& session) {
  Connection& connection = session.Own();
  const auto old = [&] {
    const int version = connection.SchemaVersion();
    return version > 0 && version < kSchemaVersion;
  };
  if (connection.ReadOnly() || !old()) return;
  Transaction transaction(session);
  if (!old()) return;  // another desk was quicker
  const SqlDialect dialect = connection.Dialect();
  Run(connection, DropJournalRules(dialect));
  Run(connection, DropEarlierRules(dialect));
  MakeHistory(connection);
  Run(connection, LedgerRules(dialect));
  Run(connection, JournalRules(dialect));
  connection.SetSchemaVersion(kSchemaVersion);
  transaction.Commit();
}

void EnsureIdentifierTable(Connection& connection) {
  if (connection.HasTable(kIdentifierTableName)) return;
  std::vector<std::string> script;
  AppendTable(script, IdentifierTable(), connection.Dialect());
  Run(connection, script);
}

void RefuseNoBook(const std::string& path) {
  if (IsConnectionString(path)) {
    throw DatabaseError(ErrorKind::kDamaged,
                        "数据库中没有账簿（没有科目表 gl_code）：" + ShortPlace(path));
  }
  throw DatabaseError(ErrorKind::kDamaged, "这个文件不是账簿（没有科目表 gl_code）：" + path);
}

std::string CheckSchema(Connection& connection, const std::string& path) {
  if (!connection.HasTable(SchemaTables()[0].name)) RefuseNoBook(path);
  if (connection.SchemaVersion() > kSchemaVersion) {
    throw DatabaseError(ErrorKind::kDamaged, "账簿由更新的版本建立，请先升级本软件：" + path);
  }
  std::string missing;
  for (const Table& table : SchemaTables()) missing += MissingIn(connection, table);
  for (const Table& table : {SchemaTables()[0], SchemaTables()[1]})
    missing += KeyBeyondBounds(connection, table);
  return missing;
}

}  // namespace desk::book
