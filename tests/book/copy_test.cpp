#include "book/copy.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "book/engines.h"
#include "book/files/paths.h"
#include "book/sample.h"
#include "book/session/identifiers.h"
#include "book/session/schema.h"
#include "support/matchers.h"
#include "support/test_book.h"

namespace desk::book {
namespace {

class CopyTest : public testing::Test {
 protected:
  [[nodiscard]] std::string File(const std::string& name) const { return folder_.File(name); }
  static std::int64_t RowsOf(const std::vector<CopiedTable>& tables, const std::string& name) {
    for (const CopiedTable& table : tables) {
      if (table.name == name) return table.rows;
    }
    return -1;
  }
  static std::string Failure(const std::string& from, const std::string& to) {
    try {
      (void)CopyBook(from, to);
      return {};
    } catch (const DatabaseError& error) {
      return error.what();
    }
  }
  static void AddPostings(const Book& book, int number) {
    tavrix::test::Run(book,
                      "with recursive n(i) as (select 1 union all select i+1 from n where i<" +
                          std::to_string(number) +
                          ") insert into gl_accvouch(i_id,ccode,quantity) select "
                          "i,'1001',0.3 from n");
  }
  /// The postings that reports would be made of.
  static std::vector<std::string> Totals(const Book& book) {
    return tavrix::test::AllRows(book,
                                 "select ccode,fiscal_year,fiscal_period,sum(debit),sum(credit) "
                                 "from gl_accvouch group by ccode,fiscal_year,fiscal_period order "
                                 "by ccode,fiscal_year,fiscal_period");
  }
  /// What an array of texts or a number's text could take for something else.
  static constexpr const char* kOddTexts =
      "update gl_accvouch set summary=case i_id%8 when 0 then null when 1 then 'NULL' when 2 then "
      "'' "
      "when 3 then '{a,b}' when 4 then '\\' when 5 then '\"' when 6 then ' a ' else "
      "'两'||char(10)||'行' end";
  static constexpr const char* kOddNumbers =
      "update gl_accvouch set quantity=case i_id%6 when 0 then 0.1 when 1 then 1e-5 when 2 then "
      "123456789012.25 when 3 then 1e300 when 4 then -0.30000000000000004 else null end, "
      "debit=case "
      "when i_id=1 then 9007199254740993 else debit end";
  static constexpr const char* kOdd =
      "select i_id,summary,quantity,debit from gl_accvouch order by i_id";

  /// Copies the sample book to `there` and from there into a file again.
  void GoAndReturn(const std::string& there) {
    const std::string home = File("示例.book");
    int next = 0;
    std::vector<std::string> totals;
    std::vector<std::string> odd;
    {
      const Book sample = CreateSampleBook(home, StandardChart::kEnterprise);
      tavrix::test::Run(sample, "update gl_code set chelp='a\"b|😀', bproperty=-1 where i_id=1");
      tavrix::test::Run(sample, kOddTexts);
      tavrix::test::Run(sample, kOddNumbers);
      next = NewIdentifier(sample.GetSession(), "gl_code", "i_id") + 1;
      totals = Totals(sample);
      odd = tavrix::test::AllRows(sample, kOdd);
    }
    const auto copied = CopyBook(home, there);
    EXPECT_GT(RowsOf(copied, "gl_code"), 150);
    EXPECT_GT(RowsOf(copied, "gl_accvouch"), 50);
    const std::string again = File("再次.book");
    EXPECT_EQ(RowsOf(CopyBook(there, again), "gl_accvouch"), RowsOf(copied, "gl_accvouch"));
    for (const std::string& place : {there, again}) {
      const Book book = Book::Open(place);
      EXPECT_EQ(book.Faults(), "");
      EXPECT_EQ(Totals(book), totals);
      EXPECT_EQ(Scalar(book, "select chelp from gl_code where i_id=1"), "a\"b|😀");
      EXPECT_EQ(tavrix::test::AllRows(book, kOdd), odd);
      EXPECT_EQ(book.Setting("system", "kmbm"), "4222");
      EXPECT_EQ(NewIdentifier(book.GetSession(), "gl_code", "i_id"), next);
    }
    EXPECT_NE(Failure(home, there), "") << "a book is there already";
  }
  TempFolder folder_;
};

TEST_F(CopyTest, AFileComesWholeIntoAnother) {
  GoAndReturn(File("b.book"));
}

TEST_F(CopyTest, AFileComesWholeToTheServerAndBack) {
  if (tavrix::test::ServerPlace().empty()) GTEST_SKIP() << "TAVRIX_ODBC names no server";
  GoAndReturn(tavrix::test::NewServerPlace());
}

TEST_F(CopyTest, ARowThatTheServerRefusesIsNamedAndNothingStays) {
  if (tavrix::test::ServerPlace().empty()) GTEST_SKIP() << "TAVRIX_ODBC names no server";
  const std::string place = tavrix::test::NewServerPlace();
  {
    const Book book = Book::Create(File("a.book"), {.accounts = tavrix::test::FewAccounts()});
    tavrix::test::Run(book, "update gl_code set igrade='二' where i_id=4");
  }
  EXPECT_THAT(Failure(File("a.book"), place), HasSubstr("gl_code 中 i_id=4"));
  EXPECT_NE(Failure(File("none.book"), place), "");
  EXPECT_THAT(Failure(place, File("none.book")), HasSubstr("数据库中没有账簿"));
  tavrix::test::Run(Book::Open(File("a.book")), "update gl_code set igrade=2 where i_id=4");
  EXPECT_EQ(Failure(File("a.book"), place), "");
}

TEST_F(CopyTest, OfManyRowsTheOneThatIsRefusedIsNamed) {
  if (tavrix::test::ServerPlace().empty()) GTEST_SKIP() << "TAVRIX_ODBC names no server";
  const std::string place = tavrix::test::NewServerPlace();
  {
    const Book book = Book::Create(File("a.book"));
    AddPostings(book, 12000);
    tavrix::test::Run(book, "update gl_accvouch set debit='许多' where i_id=6789");
  }
  EXPECT_THAT(Failure(File("a.book"), place), HasSubstr("gl_accvouch 中 i_id=6789 的行"));
}

TEST_F(CopyTest, ARowThatTheServerKeepsOtherwiseIsFound) {
  if (tavrix::test::ServerPlace().empty()) GTEST_SKIP() << "TAVRIX_ODBC names no server";
  AddPostings(Book::Create(File("a.book")), 10);
  for (const char* change : {"new.summary=null", "new.quantity=0.30000000000000004",
                             "new.person=chr(31)", "return null"}) {
    const std::string place = tavrix::test::NewServerPlace();
    {
      const auto server = EngineFor(place).Open({.path = place});
      const auto run = [&](const std::string& sql) { server->Execute(sql, Origin::kDesk); };
      for (const std::string& sql : SchemaScript(server->Dialect())) run(sql);
      run("create function spoil() returns trigger language plpgsql as $$begin " +
          std::string(change) + ";return new;end$$");
      run("create trigger spoil before insert on gl_accvouch for each row when (new.i_id=7) "
          "execute function spoil()");
    }
    EXPECT_THAT(Failure(File("a.book"), place), HasSubstr("不一致：gl_accvouch")) << change;
    EXPECT_EQ(Scalar(Book::Open(place), "select count(*) from gl_accvouch"), "0") << change;
  }
}

TEST_F(CopyTest, ACancelledCopyLeavesNothing) {
  {
    const Book book = CreateSampleBook(File("a.book"), StandardChart::kEnterprise);
    tavrix::test::Run(book, "delete from gl_accvouch");
    AddPostings(book, 6000);  // so that some are under way when it ends
  }
  std::vector<std::string> places = {File("b.book")};
  if (!tavrix::test::ServerPlace().empty()) places.push_back(tavrix::test::NewServerPlace());
  for (const std::string& place : places) {
    // Once at the start of each table, copied and compared.
    int steps = 0;
    (void)CopyBook(File("a.book"), File("whole.book"), [&](const CopyState& state) {
      EXPECT_LE(state.done, state.all);
      return ++steps > 0;
    });
    std::filesystem::remove(PathOf(File("whole.book")));
    EXPECT_GE(steps, 30);
    for (int last = 1; last <= steps; last += 9) {
      int step = 0;
      try {
        (void)CopyBook(File("a.book"), place, [&](const CopyState&) { return ++step < last; });
        ADD_FAILURE() << "not cancelled at step " << last;
      } catch (const DatabaseError& error) {
        EXPECT_STREQ(error.what(), "复制已取消");
      }
      EXPECT_THROW((void)Book::Open(place), DatabaseError);
    }
    EXPECT_EQ(Failure(File("a.book"), place), "");
  }
  for (const auto& entry : std::filesystem::directory_iterator(PathOf(folder_.Path()))) {
    EXPECT_EQ(PathText(entry.path().filename()).find(".new"), std::string::npos) << entry.path();
  }
}

TEST_F(CopyTest, AFailedCopyLeavesNoFile) {
  {
    const Book book = Book::Create(File("a.book"), {.accounts = tavrix::test::FewAccounts()});
    // The copy's key refuses what this book lets in.
    tavrix::test::Run(book, "drop index gl_code_code");
    tavrix::test::Run(book, "update gl_code set ccode='1001' where ccode='2202'");
  }
  EXPECT_THAT(Failure(File("a.book"), File("b.book")), HasSubstr("科目编码重复"));
  EXPECT_FALSE(std::filesystem::exists(PathOf(File("b.book"))));
}

}  // namespace
}  // namespace desk::book
