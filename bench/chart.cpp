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

void Bind(sqlite3_stmt* statement, int position, std::string_view text) {
  sqlite3_bind_text(statement, position, text.data(), static_cast<int>(text.size()),
                    SQLITE_TRANSIENT);
}

class ChartWriter {
 public:
  ChartWriter(sqlite3* handle, int accounts)
      : insert_(Prepare(handle,
                        "insert into gl_code(i_ID,cclass,ccode,ccode_name,igrade,bproperty,"
                        "cbook_type,bend)values(?,?,?,?,?,1,'金额式',?)")),
        children_(accounts > 500000 ? 99 : 9),
        left_(accounts) {}

  void Write() {
    for (int first = 1; left_ > 0; ++first) {
      category_ = host::kCategories[static_cast<std::size_t>(first) % host::kCategories.size()];
      WriteBelow(Digits(1000 + first, 4), 1);
    }
  }

 private:
  void WriteBelow(const std::string& code, int level) {
    constexpr int kGrandchildren = 10;
    if (left_ == 0) return;
    --left_;
    const int children = level == 1 ? children_ : level == 2 ? kGrandchildren : 0;
    sqlite3_stmt* insert = insert_.get();
    sqlite3_bind_int(insert, 1, ++id_);
    Bind(insert, 2, category_);
    Bind(insert, 3, code);
    Bind(insert, 4, "科目名称" + std::to_string(id_));
    sqlite3_bind_int(insert, 5, level);
    sqlite3_bind_int(insert, 6, children == 0 ? 1 : 0);
    if (sqlite3_step(insert) != SQLITE_DONE) {
      throw std::runtime_error(sqlite3_errmsg(sqlite3_db_handle(insert)));
    }
    sqlite3_reset(insert);
    for (int child = 1; child <= children; ++child) WriteBelow(code + Digits(child, 3), level + 1);
  }

  Statement insert_;
  std::string_view category_;
  int children_;  ///< of a first-level account
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

int Connection::StepAndRead(const std::string& sql) const {
  const Statement statement = Prepare(handle_, sql);
  const int columns = sqlite3_column_count(statement.get());
  int rows = 0;
  for (; sqlite3_step(statement.get()) == SQLITE_ROW; ++rows) {
    for (int column = 0; column < columns; ++column) {
      if (sqlite3_column_text(statement.get(), column) == nullptr) continue;
      read_ += sqlite3_column_bytes(statement.get(), column);
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
  // Without a code rule nothing is asked of each single account.
  connection.Run("update xt_accinformation set item_value='' where item_code='kmbm'");
  ChartWriter(connection.Handle(), accounts).Write();
  connection.Run("update xt_accinformation set item_value='4333' where item_code='kmbm'");
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

void FillVouchers(const Connection& connection, long count) {
  connection.Run("begin");
  connection.Run("create temporary table leaf as select ccode from gl_code where bend=1");
  connection.Run(
      "with recursive n(i) as (select 1 union all select i+1 from n where i<" +
      std::to_string(count) +
      ")insert into gl_accvouch(i_id,fiscal_year,fiscal_period,voucher_number,line_number,"
      "entry_date,summary,ccode,debit,credit,currency_name,foreign_amount,quantity,department,"
      "person,customer,supplier,project,prepared_by)"
      "select i,2026,1+(i-1)/4%12,(i-1)/4,1+(i-1)%4,'2026-01-15','收到货款 '||i,"
      "(select ccode from leaf where rowid=1+i*7919%(select count(*) from leaf)),"
      "case when i%2=0 then i*17%1000000 else 0 end,case when i%2=0 then 0 else i*17%1000000 end,"
      "'',0,i%8*0.25,'销售部','','客户 '||i%500,'','','张三' from n");
  connection.Run("commit");
}

void FillSubtree(const Connection& connection, const std::string& root, long count) {
  connection.Run("begin");
  connection.Run("with recursive n(i) as (select 0 union all select i+1 from n where i<" +
                 std::to_string(count - 2) +
                 "),a(i,code,below) as (select i,substr('000'||(i/1000+1),-3),i%1000 from n)"
                 "insert into gl_code(i_ID,cclass,ccode,ccode_name,igrade,bend) "
                 "select 999999,'资产','" +
                 root +
                 "','上级',1,0 union all "
                 "select 1000000+i,'资产','" +
                 root +
                 "'||code||case when below=0 then '' else substr('000'||below,-3) end,'下级',"
                 "case when below=0 then 2 else 3 end,below<>0 from a");
  connection.Run("commit");
}

}  // namespace tavrix::bench
