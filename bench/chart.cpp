#include "chart.h"

#include <sqlite3.h>

#include <array>
#include <cstdio>
#include <memory>
#include <stdexcept>

#include "host/account.h"

namespace tavrix::bench {

namespace {

struct Finalizer {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, Finalizer>;

Statement Prepare(sqlite3* handle, const std::string& sql) {
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v2(handle, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
    throw std::runtime_error(sqlite3_errmsg(handle));
  }
  return Statement(statement);
}

std::string Digits(int number, int width) {
  std::array<char, 16> text;
  std::snprintf(text.data(), text.size(), "%0*d", width, number);
  return text.data();
}

class ChartWriter {
 public:
  ChartWriter(const Connection& connection, int accounts)
      : connection_(connection), left_(accounts) {}

  void Write() {
    for (int first = 1; left_ > 0; ++first) {
      category_ = host::kCategories[static_cast<std::size_t>(first) % host::kCategories.size()];
      WriteBelow(Digits(1000 + first, 4), 1);
    }
  }

 private:
  void WriteBelow(const std::string& code, int level) {
    constexpr std::array kChildren = {0, 9, 10, 0};
    if (left_ == 0) return;
    --left_;
    const int children = kChildren[static_cast<std::size_t>(level)];
    const std::string id = std::to_string(++id_);
    connection_.Run(
        "insert into gl_code(i_ID,cclass,ccode,ccode_name,igrade,bproperty,cbook_type,bend)"
        "values(" +
        id + ",'" + std::string(category_) + "','" + code + "','科目名称" + id + "'," +
        std::to_string(level) + ",1,'金额式'," + (children == 0 ? "1)" : "0)"));
    for (int child = 1; child <= children; ++child) WriteBelow(code + Digits(child, 3), level + 1);
  }

  const Connection& connection_;
  std::string_view category_;
  int left_;
  int id_ = 0;
};

}  // namespace

Connection::Connection(const std::string& path) {
  if (sqlite3_open_v2(path.c_str(), &handle_, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
    throw std::runtime_error("cannot open " + path);
  }
  Run("PRAGMA cache_size=-32000");
}

Connection::~Connection() {
  sqlite3_close_v2(handle_);
}

void Connection::Run(const std::string& sql) const {
  const Statement statement = Prepare(handle_, sql);
  while (sqlite3_step(statement.get()) == SQLITE_ROW) {
  }
  if (sqlite3_errcode(handle_) != SQLITE_OK && sqlite3_errcode(handle_) != SQLITE_DONE) {
    throw std::runtime_error(sqlite3_errmsg(handle_));
  }
}

int Connection::FetchAndCopy(const std::string& sql, std::string& buffer) const {
  const Statement statement = Prepare(handle_, sql);
  const int columns = sqlite3_column_count(statement.get());
  int rows = 0;
  for (; sqlite3_step(statement.get()) == SQLITE_ROW; ++rows) {
    for (int column = 0; column < columns; ++column) {
      const auto* text = static_cast<const char*>(
          static_cast<const void*>(sqlite3_column_text(statement.get(), column)));
      const auto bytes = static_cast<std::size_t>(sqlite3_column_bytes(statement.get(), column));
      if (text != nullptr) buffer.append(text, bytes);
    }
  }
  return rows;
}

long Connection::CacheUsed() const {
  int now = 0;
  int most = 0;
  sqlite3_db_status(handle_, SQLITE_DBSTATUS_CACHE_USED, &now, &most, 0);
  return now;
}

void FillChart(const std::string& path, int accounts) {
  const Connection connection(path);
  connection.Run("begin");
  connection.Run("delete from gl_code");
  ChartWriter(connection, accounts).Write();
  connection.Run("commit");
}

void FillPostings(const Connection& connection, const std::string& code, long count) {
  connection.Run("begin");
  connection.Run(
      "with recursive n(i) as (select 1 union all select i+1 from n where i<" +
      std::to_string(count) +
      ") insert into gl_accvouch(i_id,ccode,fiscal_year,fiscal_period,voucher_number,line_number) "
      "select i,'" +
      code + "',2026,1,i,1 from n");
  connection.Run("commit");
}

void FillSubtree(const Connection& connection, const std::string& root, long count) {
  connection.Run("begin");
  connection.Run(
      "with recursive n(i) as (select 0 union all select i+1 from n where i<" +
      std::to_string(count - 1) +
      ") insert into gl_code(i_ID,cclass,ccode,ccode_name,igrade,bend) " +
      "select 1000000+i,'资产',case when i=0 then '" + root + "' else '" + root +
      "'||substr('000000'||i,-6) end,'下级',case when i=0 then 1 else 3 end,i<>0 from n");
  connection.Run("commit");
}

}  // namespace tavrix::bench
