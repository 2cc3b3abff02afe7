#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "book/database/connection_string.h"
#include "book/engines.h"
#include "book/ledger/posting.h"
#include "book/odbc/wire_text.h"
#include "book/session/schema.h"
#include "host/calls.h"
#include "support/matchers.h"
#include "support/server_user.h"
#include "support/test_book.h"

namespace desk::book {
namespace {

TEST(ConnectionString, IsToldFromAFileAndShownWithoutItsPassword) {
  for (const char* text : {"Driver={X};Server=y", "dsn=books", "ODBC;DSN=books", "FileDSN=a.dsn"}) {
    EXPECT_TRUE(IsConnectionString(text)) << text;
  }
  for (const char* text : {"", ":memory:", "C:\\账簿\\driver.book", "dsn.book", "/tmp/odbc"}) {
    EXPECT_FALSE(IsConnectionString(text)) << text;
  }
  EXPECT_EQ(DriverText("odbc;DSN=books"), "DSN=books");
  EXPECT_EQ(ShownPlace("ODBC;Driver={a;b};Uid=me;PWD={s;=e};Password=x;Port=1"),
            "ODBC;Driver={a;b};Uid=me;PWD=***;Password=***;Port=1");
  EXPECT_EQ(ShownPlace("C:\\pwd=x.book"), "C:\\pwd=x.book");
  for (const char* text :
       {"DSN=a;Pwd={x}}y;z;zy};Port=1", "DSN=a; Pwd = {x;y};Port=1", "DSN=a;Pwd=x;y z;Port=1",
        "DSN=a;pqopt={sslpassword=xyz};Port=1", "Server=a;Uid=b;Pwd=xyz;Port=1",
        "host=a password=x;y=z user=b", "user=b;password=x y=z", "host=a password='x;y=z",
        "postgresql://a:x;y=z@b/c?d", "password = 'x\\' y;z=' host=a",
        " Driver={a};SslPwd=xyz;Port=1", "odbc;UserPassword={x;y;z;Port=1"}) {
    EXPECT_TRUE(IsConnectionString(text)) << text;
    EXPECT_EQ(ShownPlace(text).find_first_of("xyz"), std::string::npos) << ShownPlace(text);
    EXPECT_TRUE(HoldsSecret(text)) << text;
  }
  for (const char* text : {"DSN=books;Uid=a", "host = a  dbname=b", "postgresql://a@b/c"}) {
    EXPECT_FALSE(HoldsSecret(text)) << text;
  }
  EXPECT_EQ(ShortPlace("Driver={a};SERVER=b.c; Database ={d;e};Pwd=x;"), "d;e（b.c）");
  EXPECT_EQ(ShortPlace("DSN=books;Pwd=x"), "books");
  EXPECT_EQ(ShortPlace("Driver={a;b};Pwd=x;"), "Driver={a;b};Pwd=***;");
}

TEST(ConnectionString, OnlyAnOpenWayToAnotherMachineIsWarnedOf) {
  for (const char* here :
       {"localhost", "LOCALHOST", "127.0.0.1", "::1", "/run/postgresql", "127.0.0.1,localhost"}) {
    EXPECT_TRUE(IsThisMachine(here)) << here;
  }
  for (const char* other : {"pg1", "localhost.example.com", "127.0.0.1,pg1", "10.0.0.1"}) {
    EXPECT_FALSE(IsThisMachine(other)) << other;
  }
  const char* const place = "Driver={a};Server=pg1;Database=b;Uid=c;Pwd=xyz;";
  EXPECT_THAT(WireWarning(Wire::kPlain, place),
              testing::AllOf(HasSubstr("“pg1”"), testing::Not(HasSubstr("xyz"))));
  for (const Wire wire : {Wire::kNone, Wire::kUnknown, Wire::kLocal, Wire::kEncrypted}) {
    EXPECT_EQ(WireWarning(wire, place), "");
  }
}

/// What the script of an engine in docs/schema must hold.
std::string ScriptText(SqlDialect dialect) {
  std::string text;
  for (const std::string& statement : SchemaScript(dialect)) text += statement + ";\n";
  return text;
}

TEST(SchemaScriptTest, TheDocumentedScriptsMakeTheTablesThatTheDeskMakes) {
  const std::pair<const char*, SqlDialect> scripts[] = {{"postgresql", SqlDialect::kPostgres},
                                                        {"sqlserver", SqlDialect::kSqlServer},
                                                        {"access", SqlDialect::kAccess},
                                                        {"mariadb", SqlDialect::kMariaDb}};
  for (const auto& [name, dialect] : scripts) {
    std::ifstream file(std::string(TAVRIX_SOURCE "/docs/schema/") + name + ".sql",
                       std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    EXPECT_EQ(text, ScriptText(dialect)) << name;
  }
  EXPECT_THROW((void)SchemaScript(SqlDialect::kOther), DatabaseError);
}

/// On the server that the environment names.
class ServerTest : public testing::Test {
 protected:
  void SetUp() override {
    if (tavrix::test::ServerPlace().empty()) GTEST_SKIP() << "TAVRIX_ODBC names no server";
    place_ = tavrix::test::NewServerPlace();
  }
  [[nodiscard]] Book CreateBook() const {
    return Book::Create(place_, {.accounts = tavrix::test::FewAccounts()});
  }
  [[nodiscard]] Book OpenHasty(Access access = Access::kReadWrite) const {
    return Book::Open(
        {.path = place_, .access = access, .patience = std::chrono::milliseconds(50)});
  }
  static std::string Failure(const std::function<void()>& action, ErrorKind* reason = nullptr) {
    try {
      action();
      return {};
    } catch (const DatabaseError& error) {
      if (reason != nullptr) *reason = error.Kind();
      return error.what();
    }
  }
  std::string place_;
};

TEST_F(ServerTest, ABookIsMadeOnceAndComesBack) {
  EXPECT_THAT(Failure([&] { (void)Book::Open(place_); }), HasSubstr("gl_code"));
  {
    Book book = CreateBook();
    book.SetSetting("system", "kmbm", "422");
  }
  EXPECT_THAT(Failure([&] { (void)CreateBook(); }), HasSubstr("已经有账簿"));
  Book book = Book::Open(place_);
  EXPECT_EQ(book.Faults(), "");
  EXPECT_EQ(book.Driver(), "postgresql");
  EXPECT_FALSE(book.ReadOnly());
  EXPECT_EQ(host::SettingText(*book.System(), "kmbm"), "422");
  EXPECT_EQ(Scalar(book, "select count(*) from gl_code"), "8");
  book.SetDriver("jet");
  EXPECT_EQ(host::QueryScalar(*book.System(),
                              "Select TOP 1 ccode From gl_code Where ccode Like '1002*' ORDER BY "
                              "ccode desc")
                .ToText(),
            "100202");
}

TEST_F(ServerTest, TablesThatAnAdministratorHasMadeAreFilledOnce) {
  const auto administrator = EngineFor(place_).Open({.path = place_});
  for (const std::string& statement : SchemaScript(SqlDialect::kPostgres)) {
    administrator->Execute(statement, Origin::kDesk);
  }
  EXPECT_EQ(Scalar(CreateBook(), "select count(*) from gl_code"), "8");
  EXPECT_THAT(Failure([&] { (void)CreateBook(); }), HasSubstr("已经有账簿"));
  EXPECT_EQ(Book::Open(place_).System()->NewIdentifier("gl_code", "i_id").id, 9);
}

TEST_F(ServerTest, AFailedCreationLeavesNothing) {
  const Account twice = {.code = "1001", .name = "a", .category = "资产"};
  ErrorKind reason = ErrorKind::kOther;
  EXPECT_THAT(Failure(
                  [&] {
                    (void)Book::Create(place_, {.accounts = {twice, twice}});
                  },
                  &reason),
              HasSubstr("科目编码重复"));
  EXPECT_EQ(reason, ErrorKind::kDuplicate);
  EXPECT_EQ(Scalar(CreateBook(), "select count(*) from gl_code"), "8");
}

TEST_F(ServerTest, AnUnreachableServerIsNamedWithoutThePassword) {
  const std::string text = Failure([] {
    (void)Book::Open(
        "Driver={PostgreSQL Unicode};Server=127.0.0.1;Port=1;Database=x;Uid=u;Pwd=p9;");
  });
  EXPECT_THAT(text, testing::AllOf(HasSubstr("不能连接数据库服务器"), HasSubstr("Pwd=***")));
  EXPECT_THAT(text, testing::Not(HasSubstr("p9")));
  EXPECT_THAT(Failure([] { (void)Book::Open("Driver={no such};"); }), HasSubstr("ODBC 数据源"));
}

TEST_F(ServerTest, ValuesOfEveryKindPassUnharmed) {
  const Book book = CreateBook();
  Connection& connection = book.GetSession().Own();
  std::string text = "'\\%_?😀";
  for (int i = 0; i < 3000; ++i) text += i % 7 == 0 ? "😀" : "科目";
  const host::Value values[] = {9'007'199'254'740'993, -0.125, host::Value(), text};
  connection.Execute(
      "insert into gl_accvouch(i_id,debit,quantity,fiscal_year,summary)values(1,?,?,?,?)",
      Origin::kDesk, values);
  const auto rows = connection.Query(
      "select debit,quantity,fiscal_year,summary,sum(debit)over(),'' from gl_accvouch where "
      "summary=?",
      Origin::kDesk, Values(values).last(1));
  ASSERT_TRUE(rows->Next());
  EXPECT_EQ(std::get<std::int64_t>(rows->Get(0).Raw()), 9'007'199'254'740'993);
  EXPECT_EQ(std::get<double>(rows->Get(1).Raw()), -0.125);
  EXPECT_TRUE(rows->Get(2).IsNull());
  EXPECT_EQ(rows->Get(3).ToText(), text);
  EXPECT_EQ(std::get<std::int64_t>(rows->Get(4).Raw()), 9'007'199'254'740'993);
  EXPECT_EQ(rows->Get(5).ToText(), "");
  host::RowSet set(6);
  RowSetSink sink(set);
  rows->ReadAll(sink);
  EXPECT_EQ(set.Rows(), 1U);
  EXPECT_EQ(set.Text(0, 3), text);
  EXPECT_TRUE(set.IsNull(0, 2));
}

TEST_F(ServerTest, WhatLooksLikeAMarkOfOdbcInATextIsText) {
  const Book book = CreateBook();
  EXPECT_EQ(host::ExecuteSql(*book.System(),
                             "update gl_code set ccode_name='付{fn now()}?$1\\',"
                             "chelp='-- /* ?' where i_id=1"),
            "");
  EXPECT_EQ(Scalar(book, "select ccode_name||chelp from gl_code where i_id=1"),
            "付{fn now()}?$1\\-- /* ?");
}

TEST_F(ServerTest, ErrorsAreTextsAndTheBookGoesOn) {
  const Book book = CreateBook();
  const auto error_of = [&](const std::string& sql) {
    return host::ExecuteSql(*book.System(), sql);
  };
  EXPECT_THAT(error_of("insert into gl_code(i_id,ccode)values(99,'1001')"),
              HasSubstr("科目编码重复"));
  EXPECT_THAT(error_of("update gl_code set ccode_name='a'b' where i_id=1"),
              HasSubstr("单引号位置不对"));
  EXPECT_THAT(error_of("update gl_code set ccode_name=where i_id=1"), HasSubstr("语法错误"));
  EXPECT_THAT(error_of("update gl_code set nothing=1"), HasSubstr("没有这个列"));
  EXPECT_EQ(error_of("delete from gl_code where i_id=99"), "");
  EXPECT_EQ(error_of("delete from gl_code where i_id=1;"), "");
  tavrix::test::Run(book, "drop table tvxbz");
  EXPECT_THAT(Failure([&] { (void)host::QueryRows(*book.System(), "select 币种ID from tvxbz"); }),
              HasSubstr("没有这个表"));
  EXPECT_THAT(Failure([&] { (void)host::QueryRows(*book.System(), "delete from gl_code"); }),
              HasSubstr("不是查询"));
  EXPECT_EQ(Scalar(book, "select count(*) from gl_code"), "7");
}

TEST_F(ServerTest, LenCountsAsTheOtherServersDo) {
  const Book book = CreateBook();
  EXPECT_EQ(Scalar(book, "select len('科目a')"), "3");
  EXPECT_EQ(Scalar(book, "select len('😀a')"), "3");
  EXPECT_EQ(Scalar(book, "select len('')"), "0");
  EXPECT_EQ(Scalar(book, "select len(null)"), "(null)");
}

TEST_F(ServerTest, CodesAreUniqueWithoutCaseAndAPrefixSearchUsesTheKey) {
  const Book book = CreateBook();
  EXPECT_EQ(host::ExecuteSql(*book.System(), "update gl_code set ccode='a1' where i_id=1"), "");
  EXPECT_THAT(host::ExecuteSql(*book.System(), "update gl_code set ccode='A1' where i_id=2"),
              HasSubstr("科目编码重复"));
  tavrix::test::Run(book, "set enable_seqscan=off");
  EXPECT_THAT(tavrix::test::AllRows(
                  book, "explain select count(i_id) from gl_code where ccode like '1002%'"),
              testing::Contains(HasSubstr("ccode >= '1002'")));
}

TEST_F(ServerTest, AReadOnlyBookReadsAndSaysWhyItDoesNotWrite) {
  (void)CreateBook();
  const Book book = OpenHasty(Access::kReadOnly);
  tavrix::test::ExpectReadOnly(book);
  EXPECT_THAT(Failure([&] { tavrix::test::Run(book, "delete from gl_code"); }), HasSubstr("只读"));
}

TEST_F(ServerTest, ALockedBookSaysSoAndWorksAgain) {
  const Book other = CreateBook();
  const Book book = OpenHasty();
  const std::string sql = "update gl_code set chelp='x' where i_id=1";
  {
    const Transaction transaction(other.GetSession());
    tavrix::test::Run(other, sql);
    EXPECT_THAT(host::ExecuteSql(*book.System(), sql), HasSubstr("正被其他用户使用"));
    EXPECT_THAT(book.System()->NewIdentifier("gl_code", "i_id").error, HasSubstr("其他用户"));
    EXPECT_EQ(host::QueryScalar(*book.System(), "select count(*) from gl_code").ToLong(), 8);
  }
  EXPECT_EQ(host::ExecuteSql(*book.System(), sql), "");
  EXPECT_EQ(book.System()->NewIdentifier("gl_code", "i_id").id, 9);
}

TEST_F(ServerTest, ATransactionWithAFailedStatementIsNeverCommitted) {
  const Book book = CreateBook();
  {
    Transaction transaction(book.GetSession());
    tavrix::test::Run(book, "delete from gl_code where i_id=1");
    EXPECT_NE(Failure([&] { tavrix::test::Run(book, "delete from nothing"); }), "");
    EXPECT_NE(Failure([&] { transaction.Commit(); }), "");
  }
  EXPECT_EQ(Scalar(book, "select count(*) from gl_code"), "8");
  EXPECT_EQ(book.System()->NewIdentifier("gl_code", "i_id").id, 9);
}

TEST_F(ServerTest, ABookOfOthersGetsTheDesksTableWhenItIsNeeded) {
  {
    const Book made = CreateBook();
    tavrix::test::Run(made, "drop trigger gl_code_turn on gl_code");
    tavrix::test::Run(made, "drop table desk_identifier");
  }
  const Book book = Book::Open(place_);
  EXPECT_EQ(book.Faults(), "");
  const Voucher refused = {
      .year = 2026,
      .month = 1,
      .day = 5,
      .entries = {{.code = "1001", .debit = 1}, {.code = "1002", .credit = 1}}};
  EXPECT_THAT(Failure([&] { (void)Post(book.GetSession(), refused); }), HasSubstr("不是明细科目"));
  EXPECT_EQ(book.System()->NewIdentifier("gl_code", "i_ID").id, 9);
  EXPECT_EQ(book.System()->NewIdentifier("gl_code", "i_ID").id, 10);
}

TEST_F(ServerTest, AVoucherIsPostedWholeOrNotAtAll) {
  const Book book = CreateBook();
  const Voucher voucher = {.year = 2026,
                           .month = 1,
                           .day = 5,
                           .prepared_by = "a",
                           .entries = {{.summary = "s", .code = "1001", .debit = 100},
                                       {.summary = "s", .code = "100201", .credit = 100}}};
  EXPECT_EQ(Post(book.GetSession(), voucher), 1);
  EXPECT_EQ(Post(book.GetSession(), voucher), 2);
  EXPECT_EQ(Scalar(book, "select debit from gl_accsum where ccode='1001'"), "200");
  Voucher wrong = voucher;
  wrong.entries[1].code = "1002";
  EXPECT_NE(Failure([&] { (void)Post(book.GetSession(), wrong); }), "");
  EXPECT_EQ(Scalar(book, "select count(*) from gl_accvouch"), "4");
}

TEST_F(ServerTest, AfterTheServerWentAwayTheNextStatementsConnectAnew) {
  (void)CreateBook();
  tavrix::test::ServerUser user(place_);
  const Book book = Book::Open(user.Place());
  const std::string sql = "update gl_code set chelp=chelp||'x' where i_id=1";
  user.Away();
  EXPECT_THAT(host::ExecuteSql(*book.System(), sql), HasSubstr("连接已断开"));
  EXPECT_THAT(host::ExecuteSql(*book.System(), sql), HasSubstr("没有响应"));
  EXPECT_THAT(book.System()->NewIdentifier("gl_code", "i_id").error, HasSubstr("没有响应"));
  user.Back();
  EXPECT_EQ(host::ExecuteSql(*book.System(), sql), "");
  // A query can be sent again; a change that may have been carried out cannot.
  user.Away();
  user.Back();
  EXPECT_EQ(Scalar(book, "select chelp from gl_code where i_id=1"), "kcxjx");
  {
    Transaction transaction(book.GetSession());
    tavrix::test::Run(book, sql);
    user.Away();
    user.Back();
    ErrorKind reason = ErrorKind::kOther;
    EXPECT_NE(Failure([&] { tavrix::test::Run(book, sql); }, &reason), "");
    EXPECT_EQ(reason, ErrorKind::kGone);
    EXPECT_NE(Failure([&] { tavrix::test::Run(book, sql); }), "") << "half a transaction";
    EXPECT_NE(Failure([&] { transaction.Commit(); }), "");
  }
  EXPECT_EQ(Scalar(book, "select chelp from gl_code where i_id=1"), "kcxjx");
  EXPECT_EQ(book.System()->NewIdentifier("gl_code", "i_id").id, 9);
}

}  // namespace
}  // namespace desk::book
