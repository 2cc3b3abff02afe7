#include "book/session/identifiers.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "book/session/schema.h"
#include "host/text.h"

namespace desk::book {

namespace {

bool HasKey(const Table& table, const std::string& column) {
  return std::ranges::any_of(table.columns, [&](const Column& c) {
    return c.kind == ColumnKind::kKey && host::EqualNoCase(c.name, column);
  });
}

const Table& TableWithKey(const std::string& table, const std::string& column) {
  const Table* found = FindSchemaTable(table);
  if (found != nullptr && HasKey(*found, column)) return *found;
  throw DatabaseError(ErrorKind::kRefused, "不能为 " + table + "." + column + " 分配标识");
}

constexpr std::int64_t kMax = std::numeric_limits<std::int32_t>::max();

[[noreturn]] void RefuseExhausted(const std::string& table) {
  throw DatabaseError(ErrorKind::kOther, "表 " + table + " 的标识已经用完");
}

/// Another program may have stored any number.
std::int64_t IdentifierOf(const host::Value& value, const std::string& table) {
  const double number = value.ToNumber();
  if (!(number <= static_cast<double>(kMax))) RefuseExhausted(table);
  return static_cast<std::int64_t>(std::max(number, 0.0));
}

std::optional<std::int64_t> LastGiven(Connection& connection, const host::Value& table) {
  const auto rows = connection.Query("select last_id from desk_identifier where table_name=?",
                                     Origin::kDesk, {&table, 1});
  if (!rows->Next()) return {};
  return IdentifierOf(rows->Get(0), table.ToText());
}

/// Rows may have come in past the counter, by an import or another program.
std::int64_t GreatestStored(Connection& connection, const Table& table, const std::string& column) {
  const auto rows =
      connection.Query("select max(" + column + ") from " + std::string(table.name), Origin::kDesk);
  return rows->Next() ? IdentifierOf(rows->Get(0), std::string(table.name)) : 0;
}

void Note(Connection& connection, const host::Value& table, std::int64_t last, bool known) {
  const host::Value values[] = {last, table};
  connection.Execute(known ? "update desk_identifier set last_id=? where table_name=?"
                           : "insert into desk_identifier(last_id,table_name)values(?,?)",
                     Origin::kDesk, values);
}

}  // namespace

std::int32_t ReserveIdentifiers(Connection& connection, const std::string& table,
                                const std::string& column, int count) {
  const Table& found = TableWithKey(table, column);
  const host::Value name(found.name);
  EnsureIdentifierTable(connection);
  const auto given = LastGiven(connection, name);
  const std::int64_t greatest = GreatestStored(connection, found, column);
  const std::int64_t last = std::max(given.value_or(0), greatest);
  if (last > kMax - count) RefuseExhausted(table);
  Note(connection, name, last + count, given.has_value());
  return static_cast<std::int32_t>(last + 1);
}

std::int32_t NewIdentifier(Session& session, const std::string& table, const std::string& column) {
  Transaction transaction(session);
  const std::int32_t id = ReserveIdentifiers(session.Own(), table, column, 1);
  transaction.Commit();
  if (TableWithKey(table, column).name == SchemaTables().front().name) session.NoteGiven(id);
  return id;
}

}  // namespace desk::book
