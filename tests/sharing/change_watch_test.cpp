#include "book/session/change_watch.h"

#include <gtest/gtest.h>

#include "book/ledger/posting.h"
#include "sharing/shared_book.h"

namespace tavrix::sharing {
namespace {

using desk::book::ChangeWatch;

class Watching : public testing::TestWithParam<const char*> {
 protected:
  static void Post(const desk::book::Book& book) {
    (void)desk::book::Post(book.GetSession(), {.year = 2026,
                                               .month = 1,
                                               .day = 1,
                                               .entries = {{.code = "1001", .debit = 5},
                                                           {.code = "2202", .credit = 5}}});
  }
  static void OthersChange(const desk::book::Book& theirs, ChangeWatch& watch) {
    EXPECT_FALSE(watch.Look().accounts);
    // The same rows, another text in one of them: no number of rows and no identifier tells.
    theirs.GetSession().Execute("update gl_code set ccode_name='农行' where i_id=3");
    EXPECT_TRUE(watch.Look().accounts);
    EXPECT_FALSE(watch.Look().accounts) << "told once";
    theirs.GetSession().Execute("delete from gl_code where i_id=4");
    EXPECT_TRUE(watch.Look().accounts);
  }
  SharedBook shared_{GetParam()};
  desk::book::Book mine_ = shared_.Open();
};
INSTANTIATE_TEST_SUITE_P(Engines, Watching, testing::ValuesIn(SharedEngines()));

TEST_P(Watching, OthersChangesAreSeenOnceOwnOnesAreNot) {
  ChangeWatch watch(mine_.GetSession());
  const desk::book::Book theirs = shared_.Open();
  OthersChange(theirs, watch);
  mine_.GetSession().Execute("update gl_code set ccode_name='现金' where i_id=1");
  watch.Note();
  EXPECT_FALSE(watch.Look().accounts);
  // What comes between the noting and the reading is seen afterwards: rather twice than never.
  mine_.GetSession().Execute("update gl_code set ccode_name='库存现金' where i_id=1");
  theirs.GetSession().Execute("update gl_code set ccode_name='应付' where ccode='2202'");
  EXPECT_TRUE(watch.Look().accounts);
}

TEST_P(Watching, PostingsOfOthersLeaveTheChartAlone) {
  ChangeWatch watch(mine_.GetSession());
  const desk::book::Book theirs = shared_.Open();
  Post(theirs);
  const ChangeWatch::Seen seen = watch.Look();
  EXPECT_TRUE(seen.postings);
  EXPECT_FALSE(seen.accounts);
  EXPECT_FALSE(watch.Look().Any());
}

TEST_P(Watching, AResultHalfReadDoesNotHideAChange) {
  ChangeWatch watch(mine_.GetSession());
  const auto half =
      mine_.System()->GetDatabase()->OpenSql("select ccode from gl_code", 1)->OpenRecordset();
  const desk::book::Book theirs = shared_.Open();
  theirs.GetSession().Execute("update gl_code set ccode_name='x' where i_id=1");
  EXPECT_TRUE(watch.Look().accounts);
}

TEST_P(Watching, ABookWithoutAHistoryIsWatchedToo) {
  if (std::string(GetParam()) != "sqlite") GTEST_SKIP() << "its count of changes comes late";
  for (const std::string& rule :
       test::AllRows(mine_, "select name from sqlite_master where type='trigger'")) {
    test::Run(mine_, "drop trigger " + rule);
  }
  test::Run(mine_, "drop table desk_command");
  // Opened for reading: it gets no history again.
  const desk::book::Book again =
      desk::book::Book::Open({.path = shared_.Place(), .access = desk::book::Access::kReadOnly});
  ASSERT_FALSE(again.GetSession().KeepsHistory());
  ChangeWatch watch(again.GetSession());
  test::Run(mine_, "update gl_code set ccode_name='农行' where i_id=3");
  EXPECT_TRUE(watch.Look().accounts);
  mine_.SetSetting("desk", "company", "别的");
  EXPECT_FALSE(watch.Look().accounts);
}

}  // namespace
}  // namespace tavrix::sharing
