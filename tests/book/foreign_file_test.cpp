// Files that are no sound books: opening one changes nothing, and never hangs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>

#ifndef _WIN32
#include <sys/stat.h>
#endif

#include "book/files/files.h"
#include "book/files/paths.h"
#include "book/ledger/posting.h"
#include "book/ledger/trial_balance.h"
#include "book/session/schema.h"
#include "host/calls.h"
#include "host/non_copyable.h"
#include "support/matchers.h"
#include "support/test_book.h"

namespace desk::book {
namespace {

namespace fs = std::filesystem;
namespace test = tavrix::test;

/// A database as another program opens it.
class Foreign : private tavrix::host::NonCopyable {
 public:
  explicit Foreign(const std::string& path) {
    EXPECT_EQ(sqlite3_open(path.c_str(), &handle_), SQLITE_OK);
  }
  ~Foreign() { sqlite3_close(handle_); }
  void Do(const std::string& sql) const {
    EXPECT_EQ(sqlite3_exec(handle_, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(handle_);
  }

 private:
  sqlite3* handle_ = nullptr;
};

constexpr const char* kLetters =
    "create table letters(id integer primary key, text);"
    "with recursive n(i) as (select 1 union all select i+1 from n where i<500) "
    "insert into letters select i,hex(randomblob(200)) from n;";

class ForeignFileTest : public testing::Test {
 protected:
  using Files = std::map<std::string, std::string>;

  [[nodiscard]] std::string File() const { return folder_.File("账簿.book"); }
  /// Every file of the folder with its bytes.
  [[nodiscard]] Files Bytes() const {
    Files files;
    for (const auto& entry : fs::directory_iterator(PathOf(folder_.Path()))) {
      files[PathText(entry.path().filename())] =
          entry.is_regular_file() ? ReadFile(entry.path()) : "(no file)";
    }
    return files;
  }
  /// What a database leaves on the disk when its program is killed after `start` and `then`.
  void Leave(const std::string& start, const std::string& then) const {
    const TempFolder elsewhere;
    const std::string file = elsewhere.File("x");
    const Foreign foreign(file);
    foreign.Do(start);
    foreign.Do(then);
    for (const char* suffix : {"", "-wal", "-journal"}) {
      if (fs::exists(PathOf(file + suffix)))
        fs::copy(PathOf(file + suffix), PathOf(File() + suffix));
    }
  }
  void LeaveLaterBook(bool in_log) const {
    const TempFolder elsewhere;
    const std::string file = elsewhere.File("x");
    const Book book = Book::Create(file, {.accounts = test::FewAccounts()});
    test::Run(book, "pragma wal_checkpoint(truncate)");
    test::Run(book, "pragma user_version=99");
    if (!in_log) test::Run(book, "pragma wal_checkpoint(truncate)");
    for (const char* suffix : {"", "-wal"}) {
      fs::copy(PathOf(file + suffix), PathOf(File() + suffix));
    }
  }
  [[nodiscard]] std::string Failure(Access access = Access::kReadWrite) const {
    const auto start = std::chrono::steady_clock::now();
    std::string text;
    try {
      (void)Book::Open({.path = File(), .access = access});
    } catch (const DatabaseError& error) {
      text = error.what();
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
    return text;
  }
  TempFolder folder_;
};

TEST_F(ForeignFileTest, OpeningKeepsEveryByteOfWhatIsNoBook) {
  struct Case {
    const char* name;
    std::function<void()> leave;
    const char* told;
  };
  const auto write = [&](const std::string& content) {
    std::ofstream(PathOf(File()), std::ios::binary) << content;
  };
  const Case cases[] = {
      {"nothing in it", [&] { write(""); }, "不是账簿"},
      {"nothing in it, beside a log",
       [&] {
         write("");
         std::ofstream(PathOf(File() + "-wal"), std::ios::binary) << std::string(5000, 'x');
       },
       "不是账簿"},
      {"a letter", [&] { write(std::string(5000, 'x')); }, "不是账簿"},
      {"only a header", [&] { write(std::string("SQLite format 3") + '\0'); }, "不是账簿"},
      {"another's database", [&] { Foreign(File()).Do(kLetters); }, "gl_code"},
      {"one with a log, closed",
       [&] { Foreign(File()).Do("pragma journal_mode=wal;" + std::string(kLetters)); }, "gl_code"},
      {"killed with a log", [&] { Leave("pragma journal_mode=wal", kLetters); }, "gl_code"},
      {"killed in a transaction",
       [&] {
         Leave(kLetters, "pragma cache_size=5;begin;update letters set text=hex(randomblob(300))");
       },
       "gl_code"},
      {"of a later version", [&] { LeaveLaterBook(false); }, "更新的版本"},
      {"of a later version, in the log", [&] { LeaveLaterBook(true); }, "更新的版本"},
  };
  for (const Case& c : cases) {
    for (const auto& entry : fs::directory_iterator(PathOf(folder_.Path()))) fs::remove(entry);
    c.leave();
    const Files before = Bytes();
    for (const Access access : {Access::kReadWrite, Access::kReadOnly}) {
      EXPECT_THAT(Failure(access), HasSubstr(c.told)) << c.name;
      EXPECT_TRUE(Bytes() == before) << c.name;
    }
  }
}

TEST_F(ForeignFileTest, ABookWhoseDeskWasKilledOpensWithAllOfItsLog) {
  {
    const TempFolder elsewhere;
    const std::string file = elsewhere.File("x");
    const Book book = Book::Create(file, {.accounts = test::FewAccounts()});
    test::Run(book, "update gl_code set chelp='last' where i_id=1");
    for (const char* suffix : {"", "-wal"}) {
      fs::copy(PathOf(file + suffix), PathOf(File() + suffix));
    }
  }
  EXPECT_EQ(Scalar(Book::Open(File()), "select chelp from gl_code where i_id=1"), "last");
}

// The file alone has no table of accounts any more: what the program did is undone from its
// journal.
TEST_F(ForeignFileTest, ABookWhoseProgramWasKilledInAChangeOpensAsItWasBefore) {
  std::string tables;
  std::string more;
  for (int i = 0; i < 100; ++i) {
    std::string columns = "(a";
    for (int k = 0; k < 20; ++k) columns += ",column_number_" + std::to_string(k);
    tables += "create table other" + std::to_string(i) + columns + ");";
    more += "create table more" + std::to_string(i) + columns + ");";
  }
  const TempFolder elsewhere;
  const std::string made = elsewhere.File("x");
  (void)Book::Create(made, {.accounts = test::FewAccounts()});
  {
    const Foreign foreign(made);
    foreign.Do("pragma journal_mode=delete;" + tables);
    foreign.Do("pragma cache_size=5;begin;alter table gl_code rename to gl_code_old;" + more +
               "update gl_code_old set ccode_name=hex(randomblob(3000))");
    for (const char* suffix : {"", "-journal"}) {
      fs::copy(PathOf(made + suffix), PathOf(File() + suffix));
    }
  }
  EXPECT_GT(fs::file_size(PathOf(File() + "-journal")), 0U);
  const Files before = Bytes();
  EXPECT_THAT(Failure(Access::kReadOnly), HasSubstr("没有完成的更改"));
  EXPECT_TRUE(Bytes() == before);
  EXPECT_EQ(Scalar(Book::Open(File()), "select ccode_name from gl_code where i_id=1"), "库存现金");
  EXPECT_FALSE(fs::exists(PathOf(File() + "-journal")));
}

TEST_F(ForeignFileTest, ViewsThatNeverEndAreRefusedInSeconds) {
  const std::pair<const char*, const char*> endless[] = {{"xt_accinformation", ""},
                                                         {"gl_code", " where i<0"}};
  for (const auto& [table, condition] : endless) {
    (void)Book::Create(File(), {.accounts = test::FewAccounts()});
    std::string columns;
    for (const Column& column : FindSchemaTable(table)->columns) {
      columns += (columns.empty() ? "" : ",") + std::string("i as ") + std::string(column.name);
    }
    Foreign(File()).Do("pragma user_version=0;drop table " + std::string(table) + ";create view " +
                       table +
                       " as with recursive n(i) as (select 1 union all select i+1 from n) select " +
                       columns + " from n" + condition);
    EXPECT_THAT(Failure(), HasSubstr(table));
    fs::remove(PathOf(File()));
  }
  // Views that end serve.
  (void)Book::Create(File(), {.accounts = test::FewAccounts()});
  Foreign(File()).Do(
      "alter table tvxbz rename to currencies;"
      "create view tvxbz as with recursive n(i) as (select 1 union all select i+1 from n where "
      "i<9) "
      "select * from currencies,n where i=1;"
      "create table changes(what);create trigger audit after update on gl_code begin "
      "insert into changes select old.ccode_name from currencies where 0 union select 'x'; end");
  const Book book = Book::Open(File());
  EXPECT_EQ(host::QueryRows(*book.System(), "select 币种ID from tvxbz")->EndOfFile(), true);
  EXPECT_EQ(host::ExecuteSql(*book.System(), "update gl_code set chelp='a' where i_id=1"), "");
  EXPECT_EQ(Scalar(book, "select count(*) from changes"), "1");
}

#ifndef _WIN32
TEST_F(ForeignFileTest, WhatIsNoFileIsRefusedAtOnce) {
  ASSERT_EQ(mkfifo(File().c_str(), 0600), 0);
  EXPECT_THAT(Failure(), HasSubstr("无法打开账簿文件"));
  for (const char* device : {"/dev/zero", "/dev/null", "/dev"}) {
    fs::remove(PathOf(File()));
    fs::create_symlink(device, PathOf(File()));
    EXPECT_THAT(Failure(), HasSubstr("无法打开账簿文件")) << device;
  }
}
#endif

TEST_F(ForeignFileTest, NumbersBeyondAllBoundsAreNamed) {
  const auto failure = [](const std::function<void()>& deed) {
    try {
      deed();
      return std::string();
    } catch (const DatabaseError& error) {
      return std::string(error.what());
    }
  };
  const Book book = Book::Create(File(), {.accounts = test::FewAccounts()});
  const Voucher voucher = {
      .year = 2026,
      .month = 1,
      .day = 1,
      .entries = {{.code = "1001", .debit = 5}, {.code = "2202", .credit = 5}}};
  for (const char* number : {"2147483647", "1099511627776", "1e300"}) {
    test::Run(book, "delete from gl_accvouch");
    test::Run(book,
              std::string("insert into gl_accvouch(i_id,fiscal_year,fiscal_period,voucher_number,"
                          "ccode)values(1,2026,1,") +
                  number + ",'1001')");
    EXPECT_THAT(failure([&] { (void)Post(book.GetSession(), voucher); }), HasSubstr("凭证号"))
        << number;
  }
  test::Run(book, "delete from gl_accvouch");
  test::Run(book, "update gl_code set i_id=1099511627776 where i_id=1");
  EXPECT_THAT(book.System()->NewIdentifier("gl_code", "i_id").error, HasSubstr("用完"));
  EXPECT_THAT(Book::Open(File()).Faults(), HasSubstr("1099511627776"));
  test::Run(book, "update gl_code set i_id=-2147483649 where i_id>1000");
  EXPECT_THAT(Book::Open(File()).Faults(), HasSubstr("-2147483649"));
  test::Run(book, "update gl_code set i_id=1 where i_id<0");
  test::Run(book, "update desk_identifier set last_id=1e300");
  EXPECT_THAT(book.System()->NewIdentifier("gl_code", "i_id").error, HasSubstr("用完"));
  test::Run(book,
            "insert into gl_accsum(i_id,ccode,fiscal_year,fiscal_period,debit)"
            "values(1,'1001',2026,1,1e300),(2,'1001',3000000000,1,5)");
  EXPECT_EQ(PostedMonths(book.GetSession()), (std::vector<Month>{{2026, 1}}));
  EXPECT_THAT(failure([&] { (void)ReadTrialBalance(book.GetSession(), {}); }), HasSubstr("金额"));
}

TEST_F(ForeignFileTest, ReplacingARowHeedsTheRulesOfDeleting) {
  const Book book = Book::Create(File(), {.accounts = test::FewAccounts()});
  tavrix::test::AddPosting(book, "gl_accvouch", "1001");
  const auto rows = tavrix::test::AllRows(book, "select i_id,ccode,bend from gl_code order by 1");
  for (const char* sql : {"insert or replace into gl_code(i_id,ccode)values(1,'1009')",
                          "replace into gl_code(i_id,ccode)values(99,'1001')",
                          "insert or replace into gl_code(i_id,ccode)values(2,'1009')",
                          "update or replace gl_code set ccode='1001' where i_id=5",
                          "update or replace gl_code set i_id=1 where i_id=5"}) {
    EXPECT_NE(host::ExecuteSql(*book.System(), sql), "") << sql;
    EXPECT_EQ(tavrix::test::AllRows(book, "select i_id,ccode,bend from gl_code order by 1"), rows)
        << sql;
  }
}

}  // namespace
}  // namespace desk::book
