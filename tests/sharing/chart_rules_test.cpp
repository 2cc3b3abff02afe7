#include <gmock/gmock.h>

#include "book/session/schema.h"
#include "editing/editor_test.h"
#include "host/calls.h"
#include "maintenance/view_test.h"
#include "sharing/shared_book.h"
#include "support/matchers.h"

namespace tavrix::sharing {
namespace {

class ChartRules : public testing::TestWithParam<const char*> {
 protected:
  SharedBook shared_{GetParam()};
  desk::book::Book book_ = shared_.Open();
};
INSTANTIATE_TEST_SUITE_P(Engines, ChartRules, testing::ValuesIn(SharedEngines()));

// The rules as any program meets them, statement by statement.
TEST_P(ChartRules, TheBookItselfKeepsParentsAndFlags) {
  const auto refusal = [&](const std::string& sql) {
    return host::ExecuteSql(*book_.System(), sql);
  };
  const std::string insert = "insert into gl_code(i_id,cclass,ccode,igrade,bend)values(";
  EXPECT_EQ(refusal(insert + "90,'资产','10030001',2,1)"), "上级科目不存在，可能已被其他用户删除");
  EXPECT_THAT(refusal("update gl_code set ccode='10030001' where i_id=3"),
              HasSubstr("上级科目不存在"));
  EXPECT_EQ(refusal("delete from gl_code where i_id=2"), "科目还有下级，不能删除");
  EXPECT_THAT(refusal("delete from gl_code where ccode='1002' or ccode='10020001'"),
              HasSubstr("科目还有下级"));
  for (const char* sql : {"update gl_code set bend=1 where ccode='1002'",
                          "update gl_code set bend=0 where ccode='1001'"}) {
    EXPECT_EQ(refusal(sql), "");
  }
  EXPECT_EQ(refusal("update gl_code set ccode=null where i_id=1"), "科目编码不能为空");
  EXPECT_EQ(refusal("insert into gl_code(i_id,bend)values(90,1)"), "科目编码不能为空");
  EXPECT_EQ(FaultsOf(book_), Texts());
  // A code of no level has no parent to ask for.
  EXPECT_EQ(refusal(insert + "91,'资产','100299',0,1)"), "");
  EXPECT_EQ(refusal("delete from gl_code where i_id=91"), "");
  EXPECT_EQ(refusal("delete from gl_code where ccode like '1002%'"), "");
  EXPECT_EQ(FaultsOf(book_), Texts());
}

// Every character may stand in a code, also those that sort behind all of ASCII.
TEST_P(ChartRules, AParentIsOneWhateverItsAccountsCodesGoOnWith) {
  test::AddPosting(book_, "gl_accsum", "1001");
  editing::Editor mine(shared_.Open());
  mine.Open(editing::Below("1001"), [&] {
    mine.SetName("一级");
    mine.SetCode("1001一二三四");
    mine.Save();
  });
  test::Run(book_,
            "insert into gl_code(i_id,cclass,ccode,igrade,bend)values(90,'负债','2202~1',0,1)");
  test::Run(book_, "update gl_code set bend=0 where ccode='2202'");
  EXPECT_EQ(
      test::Scalar(book_, "select count(*) from gl_code where ccode in('1001','2202') and bend=0"),
      "2");
  EXPECT_EQ(test::Scalar(book_, "select ccode from gl_accsum"), "1001一二三四");
  EXPECT_THAT(host::ExecuteSql(*mine.book.System(), "delete from gl_code where ccode='1001'"),
              HasSubstr("科目还有下级"));
}

// The question names what the list shows.
TEST_P(ChartRules, AccountsThatCameSinceTheListWasReadAreNotDeleted) {
  test::ViewTest t(shared_.Open());
  t.Start();
  {
    editing::Editor theirs(shared_.Open());
    theirs.Open(editing::Below("10020001"), [&] {
      theirs.SetName("新下级");
      theirs.Save();
    });
  }
  t.user.answers.assign(4, viewkit::UserPort::Answer::kYes);
  t.Select("10020001");
  EXPECT_FALSE(t.view.FileDelete());
  ASSERT_EQ(t.reports.size(), 1U);
  EXPECT_THAT(t.reports[0], HasSubstr("其他用户刚增加了科目 100200010001"));
  EXPECT_EQ(FaultsOf(book_), Texts());
  // What has come meanwhile elsewhere, or from this desk, is in nobody's way.
  const int own = t.book.System()->NewIdentifier("gl_code", "i_id").id;
  EXPECT_EQ(host::ExecuteSql(*t.book.System(),
                             "insert into gl_code(i_id,cclass,ccode,igrade,bend)values(" +
                                 std::to_string(own) + ",'资产','100200020001',3,1)"),
            "");
  t.Select("10020002");
  EXPECT_TRUE(t.view.FileDelete());
  ASSERT_TRUE(t.view.Refresh());
  t.Select("10020001");
  EXPECT_TRUE(t.view.FileDelete());
  EXPECT_EQ(test::Scalar(book_, "select count(*) from gl_code where ccode like '1002%'"), "1");
}

// A chart that was wrong before opens, and can be worked on.
TEST_P(ChartRules, WhatWasWrongBeforeIsNotRefused) {
  test::Run(book_, "update xt_accinformation set item_value='' where item_code='kmbm'");
  test::Run(book_,
            "insert into gl_code(i_id,cclass,ccode,igrade,bend)values(90,'资产','10030001',2,1)");
  test::Run(
      book_,
      "insert into gl_code(i_id,cclass,ccode,igrade,bend)values(91,'资产','100300010001',3,1)");
  test::Run(book_, "update xt_accinformation set item_value='4444' where item_code='kmbm'");
  const desk::book::Book book = shared_.Open();
  EXPECT_EQ(host::ExecuteSql(*book.System(), "update gl_code set ccode_name='x' where i_id=90"),
            "");
  EXPECT_EQ(host::ExecuteSql(*book.System(),
                             "update gl_code set ccode='10030001',ccode_name='y' where i_id=90"),
            "");
  EXPECT_EQ(host::ExecuteSql(*book.System(),
                             "insert into gl_code(i_id,cclass,ccode,igrade,bend)values(92,'资产',"
                             "'1003',1,1)"),
            "");
  EXPECT_EQ(test::Scalar(book, "select bend from gl_code where i_id=92"), "0");
  EXPECT_EQ(host::ExecuteSql(*book.System(), "delete from gl_code where ccode like '10030001%'"),
            "");
}

// Two books in one database, and a connection that is for the other one.
TEST(ChartRulesOnAServer, KeepToTheBookWhoseTableChanges) {
  if (test::ServerPlace().empty()) GTEST_SKIP() << "TAVRIX_ODBC names no server";
  const SharedBook here("postgresql");
  const SharedBook there("postgresql");
  const desk::book::Book mine = here.Open();
  const desk::book::Book other = there.Open();
  for (const desk::book::Book* book : {&mine, &other}) test::AddPosting(*book, "gl_accsum", "1001");
  test::Run(other, "update " + test::Scalar(mine, "select current_schema()") +
                       ".gl_code set ccode='1009' where ccode='1001'");
  EXPECT_EQ(test::Scalar(mine, "select ccode from gl_accsum"), "1009");
  EXPECT_EQ(test::Scalar(other, "select ccode from gl_accsum"), "1001");
  EXPECT_THAT(test::Scalar(other, "show search_path"),
              HasSubstr(test::Scalar(other, "select current_schema()")));
}

// At other levels of isolation two changes that exclude each other would both stand.
TEST(ChartRulesOnAServer, HoldWhateverTheServersLevelOfIsolation) {
  if (test::ServerPlace().empty()) GTEST_SKIP() << "TAVRIX_ODBC names no server";
  const SharedBook shared("postgresql");
  std::string place = shared.Place();
  const std::string settings = "ConnSettings={";
  ASSERT_NE(place.find(settings), std::string::npos);
  place.insert(place.find(settings) + settings.size(),
               "set default_transaction_isolation to 'repeatable read';");
  const desk::book::Book book = desk::book::Book::Open(place);
  EXPECT_EQ(test::Scalar(book, "show transaction_isolation"), "read committed");
  const std::string sql = "update gl_code set ccode='1009' where ccode='1001'";
  test::Run(book, "set default_transaction_isolation='serializable'");
  EXPECT_THAT(host::ExecuteSql(*book.System(), sql), HasSubstr("read committed"));
  test::Run(book, "set default_transaction_isolation='read uncommitted'");
  EXPECT_EQ(host::ExecuteSql(*book.System(), sql), "");
}

TEST_P(ChartRules, ABookOfAVersionBeforeGetsThem) {
  const bool server = std::string(GetParam()) == "postgresql";
  const Texts younger =
      server ? Texts{"trigger gl_code_flag on gl_code",  "trigger gl_code_added on gl_code",
                     "function gl_code_set_flag()",      "function gl_code_find_parents()",
                     "trigger gl_code_moved on gl_code", "trigger gl_code_deleted on gl_code",
                     "function gl_code_lengths()"}
             : Texts{"trigger gl_code_flag", "trigger gl_code_added", "trigger gl_code_left",
                     "trigger gl_code_last", "view gl_code_length",   "table desk_lost_parent"};
  for (const int version : {3, 2}) {
    if (version == 2) {
      for (const std::string& object : younger) test::Run(book_, "drop " + object);
    }
    book_.GetSession().Own().SetSchemaVersion(version);
    EXPECT_EQ(shared_.Open().GetSession().Own().SchemaVersion(), desk::book::kSchemaVersion);
  }
  const desk::book::Book renewed = shared_.Open();
  EXPECT_EQ(host::ExecuteSql(*renewed.System(), "delete from gl_code where i_id=2"),
            "科目还有下级，不能删除");
  EXPECT_EQ(host::ExecuteSql(*renewed.System(), "delete from gl_code where ccode like '1002%'"),
            "");
}

}  // namespace
}  // namespace tavrix::sharing
