#include <gmock/gmock.h>

#include "book/ledger/posting.h"
#include "editing/editor_test.h"
#include "host/calls.h"
#include "maintenance/view_test.h"
#include "sharing/shared_book.h"
#include "support/matchers.h"
#include "support/server_user.h"

namespace tavrix::sharing {
namespace {

using editing::Beside;
using editing::Edit;
using editing::Editor;
using editing::kNameBox;
using editing::Opening;
using namespace std::chrono_literals;

void PostBoth(const desk::book::Book& book, const std::string& debit, const std::string& credit) {
  (void)desk::book::Post(book.GetSession(),
                         {.year = 2026,
                          .month = 1,
                          .day = 1,
                          .entries = {{.code = debit, .debit = 5}, {.code = credit, .credit = 5}}});
}

class TwoDesks : public testing::TestWithParam<const char*> {
 protected:
  TwoDesks() : shared_(GetParam()), mine_(shared_.Open(100ms)), theirs_(shared_.Open()) {}
  void Theirs(const std::string& sql) const { test::Run(theirs_, sql); }
  /// What they do when my dialog has checked everything and begins to write.
  void BeforeMyWrite(std::function<void()> deed) {
    mine_.dialog->Message.Add([deed = std::move(deed)](const std::string& text) {
      if (text == "正在保存数据") deed();
    });
  }
  /// The one report that the dialog has raised.
  std::string Report() {
    EXPECT_EQ(mine_.reports.size(), 1U);
    const std::string text = mine_.reports.empty() ? "" : mine_.reports.back().text;
    mine_.reports.clear();
    return text;
  }
  /// Another desk adds an account below this one.
  void TheyAddBelow(const std::string& parent) const {
    Editor theirs(shared_.Open());
    theirs.Open(editing::Below(parent), [&] {
      theirs.SetName("新下级");
      theirs.Save();
    });
  }
  /// Says that the account is a leaf or not, in a chart without a fault.
  void ExpectLeaf(const std::string& code, bool leaf) const {
    EXPECT_EQ(Scalar(theirs_, "select bend from gl_code where ccode='" + code + "'"),
              leaf ? "1" : "0");
    EXPECT_EQ(FaultsOf(theirs_), editing::Texts());
  }
  SharedBook shared_;
  Editor mine_;
  desk::book::Book theirs_;
};
INSTANTIATE_TEST_SUITE_P(Engines, TwoDesks, testing::ValuesIn(SharedEngines()));

TEST_P(TwoDesks, ACodeTakenAfterItWasCheckedIsRefusedByTheKey) {
  mine_.Open(Beside("1001"), [&] {
    mine_.SetName("我的");
    mine_.SetCode("1005");
    bool done = false;
    BeforeMyWrite([&] {
      if (std::exchange(done, true)) return;
      const int id = theirs_.System()->NewIdentifier("gl_code", "i_id").id;
      Theirs("insert into gl_code(i_id,cclass,ccode,ccode_name,igrade,bend)values(" +
             std::to_string(id) + ",'资产','1005','他们的',1,1)");
    });
    mine_.Save();
    EXPECT_THAT(Report(), HasSubstr("科目编码重复"));
    EXPECT_TRUE(mine_.dialog->IsOpen());
    EXPECT_EQ(mine_.dialog->Txt(kNameBox).Text(), "我的");
    mine_.SetCode("1006");
    mine_.Save();
    EXPECT_FALSE(mine_.dialog->IsOpen());
  });
  EXPECT_EQ(test::AllRows(theirs_,
                          "select ccode,ccode_name from gl_code where igrade=1 and "
                          "cclass='资产' order by ccode"),
            (editing::Texts{"1001|库存现金", "1002|银行存款", "1005|他们的", "1006|我的"}));
  EXPECT_EQ(FaultsOf(theirs_), editing::Texts());
}

TEST_P(TwoDesks, ARowDeletedMeanwhileIsNotBelievedSaved) {
  mine_.Open(Edit(3), [&] {
    mine_.SetName("新名");
    BeforeMyWrite([&] { Theirs("delete from gl_code where i_id=3"); });
    mine_.Save();
    EXPECT_THAT(Report(), HasSubstr("找不到该科目"));
    EXPECT_TRUE(mine_.dialog->IsOpen());
    EXPECT_EQ(mine_.dialog->Txt(kNameBox).Text(), "新名");
  });
  EXPECT_TRUE(mine_.saved.empty());
  // And where the row goes between the dialog's last look and its write:
  EXPECT_THAT(host::ExecuteSql(*mine_.book.System(),
                               "update gl_code set cclass='资产',ccode_name='a' where i_id=3"),
              HasSubstr("已被其他用户删除"));
  EXPECT_EQ(
      host::ExecuteSql(*mine_.book.System(), "update gl_accsum set ccode='1' where ccode='2'"), "");
  EXPECT_EQ(Scalar(theirs_, "select count(*) from gl_code"), "5");
}

TEST_P(TwoDesks, ABookLockedForAMomentTakesTheSaveAfterwards) {
  mine_.Open(Edit(3), [&] {
    mine_.SetName("新名");
    {
      const desk::book::Transaction transaction(theirs_.GetSession());
      Theirs("update gl_code set chelp='x' where i_id=3");
      mine_.Save();
      EXPECT_THAT(Report(), HasSubstr("正被其他用户使用"));
      EXPECT_TRUE(mine_.dialog->IsOpen());
    }
    mine_.Save();
    EXPECT_FALSE(mine_.dialog->IsOpen());
  });
  EXPECT_EQ(Scalar(theirs_, "select ccode_name from gl_code where i_id=3"), "新名");
}

// Between any two statements of one save the other desk saves an account below or beside.
TEST_P(TwoDesks, PostingsEndTogetherOnOneLeafWhateverTheOtherAddsDuringASave) {
  struct Case {
    Opening mine;
    const char* code;
    const char* theirs;  ///< adds below this account
  };
  const Case cases[] = {{editing::Below("5001", "成本"), "50010001", "50010001"},
                        {editing::Below("5001", "成本"), "50010001", "5001"},
                        {Edit(3), "50010001", "50010001"}};
  for (const Case& c : cases) {
    bool reached = true;
    int gap = 0;
    for (; reached; ++gap) {
      const SharedBook shared(GetParam());
      Editor mine(shared.Open());
      Editor theirs(shared.Open());
      for (const char* code : {"1001", "10020001"}) PostBoth(theirs.book, code, "5001");
      reached = false;
      mine.Open(c.mine, [&] {
        mine.SetName("甲");
        mine.SetCode(c.code);
        int statement = -gap;
        mine.recorder.BeforeEach([&](const std::string&) {
          const bool there =
              Scalar(theirs.book, std::string("select i_id from gl_code where ccode='") + c.theirs +
                                      "'") != "(none)";
          if (!there || statement++ != 0) return;
          reached = true;
          theirs.Open(editing::Below(c.theirs), [&] {
            theirs.SetName("乙");
            theirs.Save();
          });
        });
        mine.Save();
      });
      EXPECT_EQ(FaultsOf(mine.book), editing::Texts()) << c.code << " " << c.theirs << " " << gap;
    }
    EXPECT_GT(gap, 5) << c.code;
  }
}

TEST_P(TwoDesks, AnAccountThatGetsAPostingWhileTheUserIsAskedIsNotDeleted) {
  test::ViewTest t(shared_.Open());
  t.Start();
  const auto before = t.Codes();
  t.Select("10020001");
  t.user.answers = {viewkit::UserPort::Answer::kYes};
  t.user.in_question = [&](const auto&) { PostBoth(theirs_, "10020001", "1001"); };
  EXPECT_FALSE(t.view.FileDelete());
  ASSERT_EQ(t.reports.size(), 1U);
  EXPECT_THAT(t.reports[0], HasSubstr("科目已经记账，不能删除"));
  EXPECT_EQ(t.Codes(), before);
  EXPECT_EQ(FaultsOf(theirs_), editing::Texts());
}

TEST_P(TwoDesks, AnAccountThatGetsASubAccountMeanwhileKeepsItsCode) {
  mine_.Open(Edit(3), [&] {
    mine_.SetCode("10020009");
    mine_.dialog->Message.Add([&](const std::string& text) {
      if (text != "正在保存数据") return;
      Theirs(
          "insert into gl_code(i_id,cclass,ccode,ccode_name,igrade,bend)values(90,'资产',"
          "'100200010001','他们的',3,1)");
    });
    mine_.Save();
    EXPECT_THAT(Report(), HasSubstr("科目已有下级，不能修改编码"));
    mine_.SetCode("10020001");
  });
  EXPECT_EQ(Scalar(theirs_, "select ccode from gl_code where i_id=3"), "10020001");
}

/// A desk whose user is about to delete an account, and says yes to each question.
class DeletingDesk : public test::ViewTest {
 public:
  DeletingDesk(desk::book::Book on, const std::string& code) : ViewTest(std::move(on)) {
    Start();
    Select(code);
    user.answers = {viewkit::UserPort::Answer::kYes, viewkit::UserPort::Answer::kYes};
  }
};

TEST_P(TwoDesks, AnAccountDeletedMeanwhileIsDeletedOnlyOnce) {
  DeletingDesk t(shared_.Open(), "10020001");
  t.user.in_question = [&](const auto&) { Theirs("delete from gl_code where i_id=3"); };
  EXPECT_TRUE(t.view.FileDelete());
  EXPECT_EQ(t.reports, test::Texts());
  ExpectLeaf("1002", false);
}

// While the question before a deletion stands open.
TEST_P(TwoDesks, AccountsThatComeWhileTheUserIsAskedAreNotDeleted) {
  DeletingDesk t(shared_.Open(), "1002");
  const auto before = t.Codes();
  t.user.in_question = [&](const auto&) { TheyAddBelow("10020001"); };
  EXPECT_FALSE(t.view.FileDelete());
  ASSERT_EQ(t.reports.size(), 1U);
  EXPECT_THAT(t.reports[0], HasSubstr("FileDelete->其他用户刚增加了科目 100200010001"));
  EXPECT_EQ(t.Codes(), before);
  EXPECT_EQ(FaultsOf(theirs_), editing::Texts());
  // Asked again, knowing of it, the user may delete them all.
  t.user.in_question = nullptr;
  t.reports.clear();
  ASSERT_TRUE(t.view.Refresh());
  t.Select("1002");
  EXPECT_TRUE(t.view.FileDelete());
  EXPECT_EQ(Scalar(theirs_, "select count(*) from gl_code where ccode like '1002%'"), "0");
}

TEST_P(TwoDesks, AParentThatGetsAnotherAccountMeanwhileStaysAParent) {
  Theirs("delete from gl_code where i_id=4");
  DeletingDesk t(shared_.Open(), "10020001");
  t.user.in_question = [&](const auto&) { TheyAddBelow("1002"); };
  EXPECT_TRUE(t.view.FileDelete());
  EXPECT_EQ(t.reports, test::Texts());
  ExpectLeaf("1002", false);
}

TEST_P(TwoDesks, TheLastTwoAccountsDeletedAtOnceLeaveALeaf) {
  DeletingDesk t(shared_.Open(), "10020001");
  t.user.in_question = [&](const auto&) {
    DeletingDesk theirs(shared_.Open(), "10020002");
    EXPECT_TRUE(theirs.view.FileDelete());
  };
  EXPECT_TRUE(t.view.FileDelete());
  ExpectLeaf("1002", true);
}

// Between the statements of my save the other desk deletes what it stands on, or what it has made.
TEST_P(TwoDesks, NoAccountLosesItsParentAndNoPostingItsAccountWhateverTheOtherDeletesDuringASave) {
  struct Case {
    Opening mine;
    const char* code;
    const char* gone;  ///< what they delete
  };
  const Case cases[] = {{editing::Below("5001", "成本"), "50010001", "5001"},
                        {editing::Below("5001", "成本"), "50010001", "50010001"},
                        {Edit(3), "50010001", "5001"},
                        {Edit(3), "10020009", "1002"}};
  for (const Case& c : cases) {
    bool reached = true;
    int gap = 0;
    for (; reached; ++gap) {
      const SharedBook shared(GetParam());
      Editor mine(shared.Open());
      test::ViewTest theirs(shared.Open());
      reached = false;
      bool posted = false;
      mine.Open(c.mine, [&] {
        mine.SetName("甲");
        mine.SetCode(c.code);
        int statement = -gap;
        mine.recorder.BeforeEach([&](const std::string&) {
          if (statement++ != 0) return;
          reached = true;
          theirs.Start();
          if (theirs.Grid().FindRow(c.gone, 1, 0) < 0) return;
          theirs.Select(c.gone);
          theirs.user.answers = {viewkit::UserPort::Answer::kYes};
          const bool deleted = theirs.view.FileDelete();
          if (!deleted || Scalar(theirs.book, "select bend from gl_code where ccode='5001'") != "1")
            return;
          PostBoth(theirs.book, "5001", "1001");
          posted = true;
        });
        mine.user.answers = {viewkit::UserPort::Answer::kNo};
        mine.Save();
      });
      const std::string where = std::string(c.code) + " " + c.gone + " " + std::to_string(gap);
      EXPECT_EQ(FaultsOf(mine.book), editing::Texts()) << where;
      if (posted) {
        EXPECT_EQ(test::AllRows(mine.book,
                                "select v.ccode from gl_accvouch v join gl_code a on "
                                "a.ccode=v.ccode where a.bend=1 order by 1")
                      .size(),
                  2U)
            << where;
      }
    }
    EXPECT_GT(gap, 3) << c.code;
  }
}

// A code that is used again: what is posted there now is not mine to move.
TEST_P(TwoDesks, PostingsOfAnAccountThatTookTheCodeStayWithIt) {
  Theirs("delete from gl_code where i_id=4");
  DeletingDesk t(shared_.Open(), "10020001");
  t.host.BeforeEach([&](const std::string& sql) {
    if (!sql.starts_with("update gl_code set bend=1")) return;
    Editor theirs(shared_.Open());
    theirs.Open(editing::Below("1002"), [&] {
      theirs.SetName("又一个");
      theirs.SetCode("10020001");
      theirs.Save();
    });
    PostBoth(theirs_, "10020001", "1001");
  });
  EXPECT_TRUE(t.view.FileDelete());
  EXPECT_EQ(test::AllRows(theirs_, "select ccode from gl_accvouch order by 1"),
            (editing::Texts{"1001", "10020001"}));
  EXPECT_EQ(FaultsOf(theirs_), editing::Texts());
}

TEST(ServerGone, TheReportNamesItTheViewKeepsItsRowsAndTheNextCommandWorks) {
  if (test::ServerPlace().empty()) GTEST_SKIP() << "TAVRIX_ODBC names no server";
  const SharedBook shared("postgresql");
  test::ServerUser me(shared.Place());
  test::ViewTest t(desk::book::Book::Open(me.Place()));
  t.Start();
  const auto before = t.Codes();
  t.Select("10020001");
  t.user.answers = {viewkit::UserPort::Answer::kYes, viewkit::UserPort::Answer::kYes};
  t.user.in_question = [&](const auto&) { me.Away(); };  // between the checks and the deletion
  EXPECT_FALSE(t.view.FileDelete());
  ASSERT_EQ(t.reports.size(), 1U);
  EXPECT_THAT(t.reports[0], testing::StartsWith("FileDelete->与数据库服务器的连接已断开"));
  EXPECT_EQ(t.Codes(), before);
  EXPECT_FALSE(t.view.FileDelete());
  EXPECT_THAT(t.reports.back(), HasSubstr("数据库服务器没有响应"));
  EXPECT_EQ(t.Codes(), before);
  me.Back();
  t.reports.clear();
  t.user.in_question = nullptr;
  EXPECT_TRUE(t.view.FileDelete());
  // A load empties its page before it asks; the pages behind the one that failed keep their rows.
  me.Away();
  EXPECT_TRUE(t.view.Refresh());
  ASSERT_EQ(t.reports.size(), 1U);
  EXPECT_THAT(t.reports[0], testing::StartsWith("DoRefresh与数据库服务器的连接已断开"));
  EXPECT_EQ(t.Codes(1).size(), 4U);
  EXPECT_EQ(t.user.wait_depth, 0);
  me.Back();
  t.reports.clear();
  EXPECT_TRUE(t.view.Refresh());
  EXPECT_EQ(t.reports, test::Texts());
  EXPECT_EQ(t.Codes().size(), before.size() - 1);
}

}  // namespace
}  // namespace tavrix::sharing
