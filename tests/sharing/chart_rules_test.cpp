#include <gmock/gmock.h>

#include "host/calls.h"
#include "sharing/shared_book.h"

namespace tavrix::sharing {
namespace {

using testing::HasSubstr;
using Texts = std::vector<std::string>;

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
  EXPECT_EQ(FaultsOf(book_), Texts());
  // A code of no level has no parent to ask for.
  EXPECT_EQ(refusal(insert + "91,'资产','100299',0,1)"), "");
  EXPECT_EQ(refusal("delete from gl_code where i_id=91"), "");
  EXPECT_EQ(refusal("delete from gl_code where ccode like '1002%'"), "");
  EXPECT_EQ(FaultsOf(book_), Texts());
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
  EXPECT_EQ(host::ExecuteSql(*book.System(), "delete from gl_code where ccode like '10030001%'"),
            "");
}

TEST_P(ChartRules, ABookOfTheVersionBeforeGetsThem) {
  const bool server = std::string(GetParam()) == "postgresql";
  const Texts younger =
      server ? Texts{"trigger gl_code_flag on gl_code",  "trigger gl_code_added on gl_code",
                     "function gl_code_set_flag()",      "function gl_code_find_parents()",
                     "trigger gl_code_moved on gl_code", "trigger gl_code_deleted on gl_code",
                     "function gl_code_lengths()"}
             : Texts{"trigger gl_code_flag", "trigger gl_code_added", "trigger gl_code_left",
                     "trigger gl_code_last", "view gl_code_length",   "table desk_lost_parent"};
  for (const std::string& object : younger) test::Run(book_, "drop " + object);
  book_.GetSession().Own().SetSchemaVersion(2);
  const desk::book::Book renewed = shared_.Open();
  EXPECT_EQ(host::ExecuteSql(*renewed.System(), "delete from gl_code where i_id=2"),
            "科目还有下级，不能删除");
  EXPECT_EQ(host::ExecuteSql(*renewed.System(), "delete from gl_code where ccode like '1002%'"),
            "");
}

}  // namespace
}  // namespace tavrix::sharing
