// Taking commands back and doing them again.

#include <gmock/gmock.h>

#include <algorithm>
#include <random>

#include "book/journal/command_text.h"
#include "book/journal/undo.h"
#include "book/ledger/posting.h"
#include "book/session/rules_pause.h"
#include "editing/editor_test.h"
#include "host/calls.h"
#include "sharing/bookkeeper.h"
#include "sharing/shared_book.h"
#include "support/matchers.h"

namespace tavrix::sharing {
namespace {

using book::CommandKind;

/// All that an undo must bring back.
Texts StateOf(const book::Book& of) {
  Texts state = AllRows(of, "select * from gl_code order by i_id");
  for (const char* ledger : {"gl_accvouch", "gl_accass", "gl_accsum"}) {
    for (std::string& row : AllRows(of, std::string("select * from ") + ledger + " order by i_id"))
      state.push_back(std::move(row));
  }
  return state;
}

class UndoTest : public testing::TestWithParam<const char*> {
 protected:
  [[nodiscard]] static std::vector<book::HistoryEntry> History(const book::Book& of) {
    return book::ReadHistory(of.GetSession());
  }
  /// What menus say is what the whole history comes to.
  static void ExpectStepsOf(const book::Book& in) {
    const auto told = [](const std::optional<book::HistoryEntry>& entry) {
      return entry ? std::to_string(entry->id) + " " + book::DeedText(*entry) : std::string();
    };
    const book::HistorySteps steps = book::ReadSteps(in.GetSession());
    const auto history = History(in);
    EXPECT_EQ(told(steps.undo), told(book::NextToUndo(history)));
    EXPECT_EQ(told(steps.redo), told(book::NextToRedo(history)));
  }
  static void UndoLast(const book::Book& in) {
    ExpectStepsOf(in);
    const auto entry = book::NextToUndo(History(in));
    ASSERT_TRUE(entry);
    (void)book::UndoCommand(in.GetSession(), entry->id);
  }
  static std::string Refusal(const book::Book& in, std::int64_t command) {
    try {
      (void)book::UndoCommand(in.GetSession(), command);
      return {};
    } catch (const book::DatabaseError& error) {
      return error.what();
    }
  }

  SharedBook shared_{GetParam()};
  book::Book book_ = shared_.Open();
};
INSTANTIATE_TEST_SUITE_P(Engines, UndoTest, testing::ValuesIn(SharedEngines()));

// Two desks, each of which takes back what the other has done.
TEST_P(UndoTest, EverythingComesBackByteForByteAndGoesAgain) {
  for (const unsigned seed : {1U, 2U}) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const SharedBook shared(GetParam());
    Bookkeeper desks[] = {{shared.Open(), random}, {shared.Open(), random}};
    const book::Book look = shared.Open();
    for (const char* code : {"1001", "10020001", "2202", "1001", "10020002", "1001", "2202"}) {
      for (const char* ledger : {"gl_accvouch", "gl_accass", "gl_accsum"}) {
        test::AddPosting(look, ledger, code);
      }
    }
    std::vector<Texts> states = {StateOf(look)};
    std::size_t commands = 0;
    for (int i = 0; i < 24; ++i) {
      desks[i % 2].Act();
      if (History(look).size() == commands) continue;
      commands = History(look).size();
      states.push_back(StateOf(look));
      ASSERT_EQ(ChartFaultsOf(look), Texts()) << "the test itself broke the chart";
    }
    ASSERT_GT(states.size(), 15U);
    for (std::size_t i = states.size() - 1; i-- > 0;) {
      ASSERT_NO_THROW(UndoLast(desks[i % 2].Book())) << i;
      ASSERT_EQ(StateOf(look), states[i]) << i;
    }
    EXPECT_FALSE(book::NextToUndo(History(look)));
    for (std::size_t i = 1; i < states.size(); ++i) {
      const auto entry = book::NextToRedo(History(look));
      ASSERT_TRUE(entry) << i;
      ExpectStepsOf(look);
      (void)book::UndoCommand(desks[i % 2].Book().GetSession(), entry->id);
      ASSERT_EQ(StateOf(look), states[i]) << i;
    }
    EXPECT_FALSE(book::NextToRedo(History(look)));
    UndoLast(look);
    EXPECT_EQ(StateOf(look), states[states.size() - 2])
        << "what was done again can be undone again";
  }
}

TEST_P(UndoTest, WhatOthersHaveDoneSinceForbidsIt) {
  test::AddPosting(book_, "gl_accsum", "1001");
  editing::Editor mine(shared_.Open());
  const auto add = [&](const std::string& parent) {
    mine.Open(editing::Below(parent), [&] {
      mine.SetName("新");
      mine.Save();
    });
    return History(book_).front().id;
  };
  const std::int64_t first = add("1001");   // 10010001, which takes the posting
  const std::int64_t second = add("1002");  // 10020003
  const book::Book theirs = shared_.Open();
  theirs.GetSession().SetUser("张三");
  const auto they = [&](const std::string& sql) {
    EXPECT_EQ(host::ExecuteSql(*theirs.System(), sql), "");
  };
  they("update gl_code set ccode_name='改' where ccode='10020003'");
  EXPECT_THAT(Refusal(book_, second),
              testing::AllOf(HasSubstr("不能撤销：科目 10020003 之后又被 张三 修改过（20")));
  they("delete from gl_code where ccode='10020003'");
  EXPECT_THAT(Refusal(book_, second), HasSubstr("之后又被 张三 删除"));
  test::AddPosting(theirs, "gl_accsum", "10010001");
  const Texts before = StateOf(book_);
  EXPECT_THAT(Refusal(book_, first), HasSubstr("科目 10010001 有分录"));
  EXPECT_EQ(StateOf(book_), before);
  they("delete from gl_code where ccode='10020001'");
  const std::int64_t deletion = History(book_).front().id;
  they("insert into gl_code(i_id,cclass,ccode,igrade,bend)values(77,'资产','10020001',2,1)");
  EXPECT_THAT(Refusal(book_, deletion), HasSubstr("编码 10020001 现在是另一个科目的"));
  they("delete from gl_code where ccode like '1002%'");
  EXPECT_THAT(Refusal(book_, deletion), HasSubstr("科目 10020001 的上级科目不存在"));
  // What does not touch it does not forbid it, in whatever order.
  UndoLast(book_);
  EXPECT_EQ(Refusal(book_, History(book_).at(1).id), "这次操作已经撤销");
  test::Run(
      theirs,
      "delete from gl_accsum where ccode='10010001' and i_id=(select max(i_id) from gl_accsum)");
  EXPECT_EQ(Refusal(book_, first), "");
  EXPECT_EQ(Scalar(book_, "select ccode from gl_accsum"), "1001");
  EXPECT_EQ(ChartFaultsOf(book_), Texts());
}

// Vouchers leave totals that came with a merge alone; other programs may add to them.
TEST_P(UndoTest, AMergeIsUndoneAfterPostingsUnlessItsTotalsHaveGrown) {
  const auto post = [&](const char* code) {
    (void)book::Post(book_.GetSession(),
                     {.year = 2026,
                      .month = 5,
                      .day = 2,
                      .entries = {{.code = code, .debit = 100}, {.code = "5001", .credit = 100}}});
  };
  post("10020001");
  {
    book::Transaction transaction(book_.GetSession());
    book::JournalCommand command(book_.GetSession(), CommandKind::kMerge);
    EXPECT_EQ(command.MovePostings("10020001", "10020002"), 2);
    test::Run(book_, "delete from gl_code where ccode='10020001'");
    transaction.Commit();
  }
  const std::int64_t merge = book_.GetSession().LastCommand();
  for (int i = 0; i < 2; ++i) post("10020002");
  const std::string totals = "select ccode,debit from gl_accsum where debit<>0 order by i_id";
  EXPECT_EQ(AllRows(book_, totals), Texts({"10020002|100", "10020002|200"}));
  EXPECT_EQ(FaultsOf(book_), Texts());
  const auto add = [&](const char* amount) {
    test::Run(book_, "update gl_accsum set debit=debit+" + std::string(amount) +
                         " where ccode='10020002' and debit<200");
  };
  add("1");
  EXPECT_EQ(Refusal(book_, merge), "不能撤销：科目 10020002 的分录之后又有变动");
  add("-1");
  EXPECT_EQ(Refusal(book_, merge), "");
  EXPECT_EQ(AllRows(book_, totals), Texts({"10020001|100", "10020002|200"}));
  EXPECT_EQ(FaultsOf(book_), Texts());
}

// What other programs do may look like something else: a REPLACE like an addition. And what changes
// nothing in the end stands in nobody's way.
TEST_P(UndoTest, OtherProgramsChangesStayAndDoNotBlock) {
  EXPECT_EQ(host::ExecuteSql(*book_.System(), "update gl_code set chelp='a' where i_id=1"), "");
  const std::int64_t own = book_.GetSession().LastCommand();
  test::Run(book_, "update gl_code set chelp='b' where i_id=2");
  const std::int64_t other = History(book_).front().id;
  EXPECT_THAT(Refusal(book_, other), HasSubstr("其他程序"));
  EXPECT_EQ(book::NextToUndo(History(book_))->id, own);
  {
    book::Transaction transaction(book_.GetSession());
    const book::JournalCommand command(book_.GetSession(), CommandKind::kOther);
    test::Run(book_, "update gl_code set chelp='c' where i_id=2");
    test::Run(book_, "update gl_code set chelp='b' where i_id=2");
    transaction.Commit();
  }
  EXPECT_EQ(book::NextToUndo(History(book_))->id, own);
  UndoLast(book_);
  EXPECT_EQ(AllRows(book_, "select chelp from gl_code where i_id<3 order by i_id"),
            Texts({"", "b"}));
  {
    book::Transaction transaction(book_.GetSession());
    const book::JournalCommand command(book_.GetSession(), CommandKind::kOther);
    test::Run(book_, "update gl_code set chelp='c' where i_id=2");
    test::Run(book_, "update gl_code set chelp='b' where i_id=2");
    transaction.Commit();
  }
  EXPECT_TRUE(book::ReadSteps(book_.GetSession()).redo);
  ExpectStepsOf(book_);
}

// Postings that have come back must not follow the next code on, whether the history has counted
// them, so that they are looked for by their rows, or not.
TEST_P(UndoTest, CodesThatWentRoundGoBack) {
  for (const char* code : {"1001", "2202", "5001"}) test::AddPosting(book_, "gl_accsum", code);
  const Texts before = StateOf(book_);
  for (const int counted : {0, 3}) {
    {
      book::Transaction transaction(book_.GetSession());
      book::RulesPause pause(book_.GetSession());
      book::JournalCommand command(book_.GetSession(), CommandKind::kRenumber);
      const std::pair<std::string, std::string> steps[] = {
          {"5001", "~"}, {"2202", "5001"}, {"1001", "2202"}, {"~", "1001"}};
      for (const auto& [from, to] : steps) {
        for (const std::string table : {"gl_code", "gl_accsum"}) {
          test::Run(book_,
                    "update " + table + " set ccode='" + to + "' where ccode='" + from + "'");
        }
      }
      command.NoteFollowed("gl_accsum", counted);
      pause.Resume();
      transaction.Commit();
    }
    EXPECT_NE(StateOf(book_), before);
    UndoLast(book_);
    EXPECT_EQ(StateOf(book_), before);
  }
}

// The account above has got another one below it since.
TEST_P(UndoTest, FlagsOfLeavesFollowTheChartAsItIsNow) {
  const std::string insert = "insert into gl_code(i_id,cclass,ccode,igrade,bend)values(";
  for (const char* row : {"71,'资产','10010001',2,1)", "72,'资产','10010002',2,1)"}) {
    EXPECT_EQ(host::ExecuteSql(*book_.System(), insert + row), "");
    EXPECT_EQ(host::ExecuteSql(*book_.System(), "update gl_code set bend=0 where ccode='1001'"),
              "");
  }
  EXPECT_EQ(Refusal(book_, History(book_).at(1).id), "");
  EXPECT_EQ(ChartFaultsOf(book_), Texts());
  UndoLast(book_);
  EXPECT_EQ(ChartFaultsOf(book_), Texts());
  EXPECT_EQ(Scalar(book_, "select bend from gl_code where ccode='1001'"), "1");
}

TEST_P(UndoTest, CancellingLeavesEverythingAsItWas) {
  EXPECT_EQ(host::ExecuteSql(*book_.System(), "update gl_code set ccode='2209' where ccode='2202'"),
            "");
  const Texts before = StateOf(book_);
  const std::int64_t command = History(book_).front().id;
  const book::Progress stop = [](const book::WorkState& state) {
    return state.step != "正在移动分录";
  };
  EXPECT_THROW((void)book::UndoCommand(book_.GetSession(), command, stop), book::WorkCancelled);
  EXPECT_EQ(StateOf(book_), before);
  EXPECT_EQ(History(book_).size(), 1U);
}

}  // namespace
}  // namespace tavrix::sharing
