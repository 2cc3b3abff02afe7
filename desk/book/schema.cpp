#include "book/schema.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <utility>

#include "book/connection_string.h"
#include "book/ledger_rules.h"
#include "host/text.h"

namespace desk::book {

namespace {

using enum ColumnKind;

constexpr Column kAccountColumns[] = {
    {"i_id", kKey},
    {"cclass", kText},
    {"cclass_engl", kText},
    {"cclassany", kText},
    {"cclassany_engl", kText},
    {"ccode", kCode},
    {"ccode_name", kText},
    {"ccode_engl", kText},
    {"igrade", kWhole},
    {"bproperty", kFlag},
    {"cbook_type", kText},
    {"cbook_type_engl", kText},
    {"chelp", kText},
    {"cexch_name", kText},
    {"cmeasure", kText},
    {"bperson", kFlag},
    {"bcus", kFlag},
    {"bsup", kFlag},
    {"bdept", kFlag},
    {"bitem", kFlag},
    {"cass_item", kText},
    {"br", kFlag},
    {"be", kFlag},
    {"cgather", kText},
    {"bend", kFlag},
    {"bexchange", kFlag},
    {"bcash", kFlag},
    {"bbank", kFlag},
    {"bused", kFlag},
    {"bd_c", kFlag},
    {"dbegin", kWhole},
    {"dend", kWhole},
    {"itrans", kWhole},
    {"bclose", kFlag},
    {"cother", kText},
    {"iotherused", kWhole},
    {"bcashitem", kFlag},
};
constexpr std::string_view kAccountIndexes[] = {
    "create unique index gl_code_code on gl_code(ccode)",
    "create index gl_code_class on gl_code(cclass,ccode)",
    "create index gl_code_name on gl_code(ccode_name)",
    "create index gl_code_help on gl_code(chelp)",
};

constexpr Column kVoucherColumns[] = {
    {"i_id", kKey},
    {"fiscal_year", kOptional},
    {"fiscal_period", kOptional},
    {"voucher_number", kOptional},
    {"line_number", kOptional},
    {"entry_date", kText},
    {"summary", kText},
    {"ccode", kCode},
    {"debit", kMoney},
    {"credit", kMoney},
    {"currency_name", kText},
    {"foreign_amount", kMoney},
    {"quantity", kNumber},
    {"department", kText},
    {"person", kText},
    {"customer", kText},
    {"supplier", kText},
    {"project", kText},
    {"prepared_by", kText},
};
// The unique key keeps two desks from giving one voucher number; it does not bind rows without one.
constexpr std::string_view kVoucherIndexes[] = {
    "create index gl_accvouch_code on gl_accvouch(ccode)",
    "create unique index gl_accvouch_line on "
    "gl_accvouch(fiscal_year,fiscal_period,voucher_number,line_number)",
};

constexpr Column kAuxiliaryColumns[] = {
    {"i_id", kKey},
    {"ccode", kCode},
    {"fiscal_year", kOptional},
    {"fiscal_period", kOptional},
    {"department", kText},
    {"person", kText},
    {"customer", kText},
    {"supplier", kText},
    {"project", kText},
    {"debit", kMoney},
    {"credit", kMoney},
};
// Neither ledger is unique by account and month: when an account's postings move to another code,
// two rows of one month may meet there. Readers add them up.
constexpr std::string_view kAuxiliaryIndexes[] = {
    "create index gl_accass_code on gl_accass(ccode,fiscal_year,fiscal_period)",
};

constexpr Column kTotalColumns[] = {
    {"i_id", kKey},    {"ccode", kCode},   {"fiscal_year", kOptional}, {"fiscal_period", kOptional},
    {"debit", kMoney}, {"credit", kMoney},
};
constexpr std::string_view kTotalIndexes[] = {
    "create index gl_accsum_code on gl_accsum(ccode,fiscal_year,fiscal_period)",
};

constexpr Column kCurrencyColumns[] = {{"币种ID", kKey}, {"外币名称", kText}, {"外币代号", kText}};
constexpr Column kUnitColumns[] = {{"单位ID", kKey}, {"名称", kText}, {"代码", kText}};
constexpr Column kSettingColumns[] = {
    {"system_code", kKeyText}, {"item_code", kKeyText}, {"item_value", kText}};
constexpr Column kObjectColumns[] = {{"progid", kKey}, {"billitem", kWhole}, {"title", kText}};
constexpr std::string_view kObjectIndexes[] = {
    "create index xt_objects_item on xt_objects(billitem)",
};

constexpr Table kTables[] = {
    {"gl_code", kAccountColumns, kAccountIndexes},
    {"gl_accvouch", kVoucherColumns, kVoucherIndexes},
    {"gl_accass", kAuxiliaryColumns, kAuxiliaryIndexes},
    {"gl_accsum", kTotalColumns, kTotalIndexes},
    {"tvxbz", kCurrencyColumns, {}},
    {"tvxjldw", kUnitColumns, {}},
    {"xt_accinformation", kSettingColumns, {}},
    {"xt_objects", kObjectColumns, kObjectIndexes},
};

// The desk's own: the last identifier that was given for a table. Callers cannot reach it.
constexpr Column kIdentifierColumns[] = {{"table_name", kKeyText}, {"last_id", kWhole}};
constexpr Table kIdentifierTable = {kIdentifierTableName, kIdentifierColumns, {}};

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

const Types& TypesOf(Flavor flavor) {
  switch (flavor) {
    case Flavor::kSqlite:
      return kSqliteTypes;
    case Flavor::kPostgres:
      return kPostgresTypes;
    case Flavor::kSqlServer:
      return kSqlServerTypes;
    case Flavor::kAccess:
      return kAccessTypes;
    case Flavor::kMariaDb:
      return kMariaDbTypes;
    case Flavor::kOther:
      break;
  }
  throw DatabaseError(Trouble::kRefused, "不知道这种数据库怎样建立账簿的表");
}

/// For two servers a second null is a duplicate unless the index leaves nulls out.
std::string IndexText(std::string_view index, Flavor flavor) {
  std::string text(index);
  if (index != kVoucherIndexes[1]) return text;
  if (flavor == Flavor::kSqlServer) text += " where voucher_number is not null";
  if (flavor == Flavor::kAccess) text += " with ignore null";
  return text;
}

/// What statements need and the server lacks. `len` counts UTF-16 units.
std::vector<std::string> Additions(Flavor flavor) {
  switch (flavor) {
    case Flavor::kPostgres:
      return {"create unique index gl_code_nocase on gl_code(lower(ccode))",
              "create function len(text) returns integer language sql immutable strict as $$select "
              "case when octet_length($1)=char_length($1) then char_length($1) else "
              "char_length($1)+char_length(regexp_replace($1,'[^\\U00010000-\\U0010FFFF]','',"
              "'g')) end$$"};
    case Flavor::kMariaDb:
      return {"create function len(t text) returns int deterministic return char_length(t)"};
    default:
      return {};
  }
}

void Append(std::string& list, std::string_view item) {
  if (!list.empty()) list += ",";
  list += item;
}

std::string CreateText(const Table& table, Flavor flavor) {
  const Types& types = TypesOf(flavor);
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

void AppendTable(std::vector<std::string>& script, const Table& table, Flavor flavor) {
  script.push_back(CreateText(table, flavor));
  for (const std::string_view index : table.indexes) script.push_back(IndexText(index, flavor));
}

void Run(Connection& connection, const std::vector<std::string>& script) {
  for (const std::string& statement : script) connection.Execute(statement, Origin::kDesk);
}

/// The columns of the chart that the library reads and writes; the book of another maker must have
/// them. The other tables are asked for as tables only.
std::string MissingIn(Connection& connection, const Table& table) {
  const std::string name(table.name);
  if (!connection.HasTable(name)) return "账簿中没有表：" + name + "\n";
  if (&table != &kTables[0]) return {};
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

std::span<const Table> SchemaTables() {
  return kTables;
}

const Table* FindSchemaTable(std::string_view name) {
  const auto found = std::ranges::find_if(
      kTables, [&](const Table& table) { return host::EqualNoCase(table.name, name); });
  return found == std::end(kTables) ? nullptr : &*found;
}

const Table& IdentifierTable() {
  return kIdentifierTable;
}

std::vector<std::string> SchemaScript(Flavor flavor) {
  std::vector<std::string> script;
  for (const Table& table : kTables) AppendTable(script, table, flavor);
  AppendTable(script, kIdentifierTable, flavor);
  for (std::string& addition : Additions(flavor)) script.push_back(std::move(addition));
  for (std::string& rule : LedgerRules(flavor)) script.push_back(std::move(rule));
  return script;
}

bool HasEmptySchema(Connection& connection) {
  return std::ranges::all_of(kTables, [&](const Table& table) {
    const std::string name(table.name);
    if (!connection.HasTable(name)) return false;
    const auto rows = connection.Query("select count(*) from " + name, Origin::kDesk);
    return rows->Next() && rows->Get(0).ToLong() == 0;
  });
}

void CreateSchema(Connection& connection, const std::function<void()>& load) {
  std::vector<std::string> script;
  if (!HasEmptySchema(connection)) script = SchemaScript(connection.Makes());
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
  Run(connection, DropEarlierRules(connection.Makes()));
  Run(connection, LedgerRules(connection.Makes()));
  connection.SetSchemaVersion(kSchemaVersion);
  transaction.Commit();
}

void EnsureIdentifierTable(Connection& connection) {
  if (connection.HasTable(kIdentifierTableName)) return;
  std::vector<std::string> script;
  AppendTable(script, kIdentifierTable, connection.Makes());
  Run(connection, script);
}

void RefuseNoBook(const std::string& path) {
  if (IsConnectionString(path)) {
    throw DatabaseError(Trouble::kDamaged,
                        "数据库中没有账簿（没有科目表 gl_code）：" + ShortPlace(path));
  }
  throw DatabaseError(Trouble::kDamaged, "这个文件不是账簿（没有科目表 gl_code）：" + path);
}

std::string CheckSchema(Connection& connection, const std::string& path) {
  if (!connection.HasTable(kTables[0].name)) RefuseNoBook(path);
  if (connection.SchemaVersion() > kSchemaVersion) {
    throw DatabaseError(Trouble::kDamaged, "账簿由更新的版本建立，请先升级本软件：" + path);
  }
  std::string missing;
  for (const Table& table : kTables) missing += MissingIn(connection, table);
  for (const Table& table : {kTables[0], kTables[1]}) missing += KeyBeyondBounds(connection, table);
  return missing;
}

}  // namespace desk::book
