#include "book/copy.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>

#include "book/connection_string.h"
#include "book/schema.h"
#include "book/session.h"

namespace desk::book {

namespace {

/// A table of the book with the columns that are copied.
struct Part {
  std::string table;
  std::vector<std::string> columns;

  [[nodiscard]] std::string List(const std::string& separator) const {
    std::string list;
    for (const std::string& column : columns) list += (list.empty() ? "" : separator) + column;
    return list;
  }
  /// The version of the schema is the new book's own.
  [[nodiscard]] std::string Query() const {
    const bool identifiers = table == kIdentifierTableName;
    return "select " + List(",") + " from " + table +
           (identifiers ? " where table_name<>'schema_version'" : "");
  }
  [[nodiscard]] std::string Insert() const {
    std::string marks;
    for (std::size_t i = 0; i < columns.size(); ++i) marks += i == 0 ? "?" : ",?";
    return "insert into " + table + "(" + List(",") + ")values(" + marks + ")";
  }
};

/// What the source has of `table`; without columns when it has nothing.
Part PartOf(Connection& source, const Table& table) {
  Part part{.table = std::string(table.name), .columns = {}};
  if (!source.HasTable(table.name)) return part;
  for (const Column& column : table.columns) {
    if (source.HasColumn(table.name, column.name)) part.columns.emplace_back(column.name);
  }
  return part;
}

std::vector<host::Value> RowOf(const Rows& rows) {
  std::vector<host::Value> row;
  row.reserve(static_cast<std::size_t>(rows.Columns()));
  for (int column = 0; column < rows.Columns(); ++column) row.push_back(rows.Get(column));
  return row;
}

std::int64_t CopyRows(Connection& source, Connection& target, const Part& part) {
  const std::string insert = part.Insert();
  const auto rows = source.Query(part.Query(), Origin::kDesk);
  std::int64_t count = 0;
  for (; rows->Next(); ++count) {
    const std::vector<host::Value> row = RowOf(*rows);
    try {
      target.Execute(insert, Origin::kDesk, row);
    } catch (const DatabaseError& error) {
      throw DatabaseError(error.Reason(), "不能复制表 " + part.table + " 中 " +
                                              part.columns.front() + "=" + row.front().ToText() +
                                              " 的行：" + error.what());
    }
  }
  return count;
}

/// One number for each row, in the order of the numbers: engines sort texts in different ways.
std::vector<std::size_t> Digests(Connection& connection, const Part& part) {
  std::vector<std::size_t> digests;
  const auto rows = connection.Query(part.Query(), Origin::kDesk);
  std::string text;
  while (rows->Next()) {
    text.clear();
    for (const host::Value& value : RowOf(*rows)) {
      const std::string cell = value.ToText();
      text += value.IsNull() ? "-" : std::to_string(cell.size()) + ":" + cell;
    }
    digests.push_back(std::hash<std::string>()(text));
  }
  std::ranges::sort(digests);
  return digests;
}

CopiedTable Copy(Connection& source, Connection& target, const Part& part) {
  CopiedTable copied{.name = part.table, .rows = 0};
  if (part.columns.empty()) return copied;
  copied.rows = CopyRows(source, target, part);
  const auto sent = Digests(source, part);
  if (sent != Digests(target, part) || sent.size() != static_cast<std::size_t>(copied.rows)) {
    throw DatabaseError(Trouble::kOther, "复制后的数据与原来的不一致：" + part.table);
  }
  return copied;
}

std::vector<CopiedTable> Fill(Session& source, Session& target) {
  // A book that cannot be written does not change either.
  std::unique_ptr<Transaction> still;
  if (!source.Own().ReadOnly()) still = std::make_unique<Transaction>(source);
  Transaction transaction(target);
  CreateSchema(target.Own());
  std::vector<CopiedTable> copied;
  for (const Table& table : SchemaTables()) {
    copied.push_back(Copy(source.Own(), target.Own(), PartOf(source.Own(), table)));
  }
  copied.push_back(Copy(source.Own(), target.Own(), PartOf(source.Own(), IdentifierTable())));
  transaction.Commit();
  return copied;
}

}  // namespace

std::vector<CopiedTable> CopyBook(const std::string& from, const std::string& to) {
  Session source(EngineFor(from).Open({.path = from}));
  (void)CheckSchema(source.Own(), ShownPlace(from));
  std::vector<CopiedTable> copied;
  (void)EngineFor(to).Make(to, [&](Session& target) { copied = Fill(source, target); });
  return copied;
}

}  // namespace desk::book
