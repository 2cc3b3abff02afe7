#include <gmock/gmock.h>

#include <algorithm>
#include <set>

#include "book/chart/batch.h"
#include "book/chart/merge.h"
#include "book/chart/move_accounts.h"
#include "book/ledger/posting.h"
#include "book/session/journal_rules.h"
#include "book/session/ledger_rules.h"
#include "sharing/random_chart.h"
#include "sharing/shared_book.h"
#include "support/matchers.h"

namespace tavrix::sharing {
namespace {

using desk::book::Session;

class ChartMerges : public testing::TestWithParam<const char*> {};
INSTANTIATE_TEST_SUITE_P(Engines, ChartMerges, testing::ValuesIn(SharedEngines()));

TEST_P(ChartMerges, AMergeMovesPostingsOrSaysWhatTheyWouldLose) {
  std::vector<desk::book::Account> accounts = test::FewAccounts();
  accounts[2].department = true;  // 100201
  const auto book = test::MakeBookOn(GetParam(), accounts);
  Session& session = book.GetSession();
  const auto merge = [&](const std::string& from, const std::string& into) {
    return Refusal([&] { MergeAccounts(session, PlanMerge(session, from, into)); });
  };
  const auto post = [&](const std::string& code, const std::string& department) {
    (void)Post(session,
               {.year = 2026,
                .month = 1,
                .day = 1,
                .entries = {{.code = code, .debit = 5, .auxiliary = {.department = department}},
                            {.code = "1001", .credit = 5}}});
  };
  post("100201", "甲");
  post("100202", "");
  EXPECT_THAT(merge("100201", "100202"), HasSubstr("不按部门核算，会丢失"));
  EXPECT_THAT(merge("100202", "100201"), HasSubstr("没有部门"));
  EXPECT_THAT(merge("1002", "1001"), HasSubstr("不是明细科目"));
  EXPECT_THAT(merge("1001", "1001"), HasSubstr("自己"));
  test::Run(book, "update gl_code set bclose=1 where ccode='50010101'");
  EXPECT_THAT(merge("100202", "50010101"), HasSubstr("已经封存"));
  test::Run(book, "update gl_code set cgather='100202' where ccode in('2202','1002')");
  const std::string sums = "select sum(debit),sum(credit),count(*) from gl_accsum";
  const Texts before = test::AllRows(book, sums);
  EXPECT_EQ(merge("100202", "1001"), "");
  EXPECT_EQ(test::AllRows(book, sums), before);
  EXPECT_EQ(
      test::AllRows(book, "select sum(debit),sum(credit) from gl_accvouch where ccode='1001'"),
      Texts{"5|10"});
  EXPECT_EQ(test::Scalar(book, "select cgather from gl_code where ccode='2202'"), "1001");
  EXPECT_THAT(PlanMerge(session, "100201", "1001").notes, IsEmpty());  // refused
  test::Run(book, "update gl_code set bdept=1,bsup=0 where ccode='2202'");
  EXPECT_THAT(PlanMerge(session, "100201", "2202").notes,
              testing::ElementsAre("1002 银行存款 成为明细科目"));
  EXPECT_EQ(merge("100201", "2202"), "");
  EXPECT_THAT(test::BrokenRules(book), IsEmpty());
}

// Whatever is chosen: what stays has a reason, and nothing more could have gone.
TEST_P(ChartMerges, ABatchDeletesAllThatCanGo) {
  for (unsigned seed = 100; seed < 100 + ChartsOn(GetParam()); ++seed) {
    SCOPED_TRACE(seed);
    RandomChart chart(GetParam(), seed);
    test::Run(chart.Book(), "update gl_code set cgather='' where i_id%2=0");
    const auto listed = desk::book::ReadBatchChart(chart.GetSession());
    std::set<std::size_t> chosen;
    for (int i = 0; i < 4; ++i) chosen.insert(chart.Below(listed.accounts.size()));
    const auto plan = PlanBatch(listed, desk::book::BatchAction::kDelete, chosen);
    const auto gone = ChangeBatch(chart.GetSession(), listed, plan, chosen);
    ASSERT_EQ(static_cast<std::size_t>(gone), plan.changing);
    ASSERT_THAT(test::BrokenRules(chart.Book()), IsEmpty());
    for (const auto& row : plan.rows) {
      const std::string code = listed.accounts[row.account].code;
      ASSERT_EQ(
          test::Scalar(chart.Book(), "select count(*) from gl_code where ccode='" + code + "'"),
          row.changes ? "0" : "1");
      if (row.changes) continue;
      std::string held =
          "select count(*) from gl_code where ccode>'" + code + "' and ccode<'" + code + "~'";
      std::string used = "select count(*) from gl_code where cgather='" + code + "'";
      std::string posted = "select count(*) from gl_accvouch where ccode='" + code + "'";
      for (const char* ledger : {"gl_accass", "gl_accsum"})
        posted += " union all select count(*) from " + std::string(ledger) + " where ccode='" +
                  code + "'";
      const Texts counts =
          test::AllRows(chart.Book(), held + " union all " + used + " union all " + posted);
      EXPECT_TRUE(std::ranges::any_of(counts, [](const auto& count) { return count != "0"; }))
          << code << row.reason;
    }
  }
}

// The book of another maker has neither the desk's own tables nor its rules, and may hold nulls.
TEST_P(ChartMerges, BooksOfOtherMakersAreKeptInOrderToo) {
  const SharedBook shared(GetParam());
  {
    const auto made = shared.Open();
    auto& connection = made.GetSession().Own();
    for (const auto& script : {desk::book::DropJournalRules(connection.Dialect()),
                               desk::book::DropEarlierRules(connection.Dialect())}) {
      for (const std::string& sql : script) test::Run(made, sql);
    }
    connection.SetSchemaVersion(0);
    for (const char* table : {"desk_identifier", "desk_command", "desk_change", "desk_moved"}) {
      test::Run(made, std::string("drop table ") + table);
    }
    test::Run(made,
              "insert into gl_accvouch(i_id,ccode,department,currency_name,foreign_amount,quantity)"
              "values(1,'10020002',null,null,null,null)");
    test::Run(made, "update gl_code set bdept=1 where ccode='10020001'");
    test::Run(made, "update gl_code set cexch_name='美元',bexchange=1 where ccode='1001'");
    test::Run(made,
              "insert into gl_code(i_id,cclass,ccode,igrade,bend)values(7,'成本','50010001',2,1)");
    test::Run(made, "update gl_code set bend=0 where ccode='5001'");
  }
  const auto book = shared.Open();
  Session& session = book.GetSession();
  const auto merge = [&](const std::string& from, const std::string& into) {
    return Refusal([&] { MergeAccounts(session, PlanMerge(session, from, into)); });
  };
  EXPECT_THAT(merge("10020002", "10020001"), HasSubstr("没有部门"));
  EXPECT_THAT(merge("10020002", "1001"), HasSubstr("没有“美元”"));
  EXPECT_EQ(Refusal([&] {
              const auto subtree = desk::book::ReadMovedSubtree(session, "10020002");
              MoveAccounts(session, PlanMove(session, subtree, "1005"),
                           desk::book::CommandKind::kMove);
              const auto listed = desk::book::ReadBatchChart(session);
              const auto plan = PlanBatch(listed, desk::book::BatchAction::kDelete, {2});
              ChangeBatch(session, listed, plan, {2});
            }),
            "");
  EXPECT_EQ(merge("50010001", "1005"), "");
  EXPECT_THAT(ChartFaultsOf(book), IsEmpty());
  EXPECT_EQ(test::AllRows(book, "select ccode from gl_code order by ccode"),
            (Texts{"1001", "1002", "1005", "2202", "5001"}));
}

TEST_P(ChartMerges, ABatchSealsWithAllBelowAndRefusesWhatOthersChanged) {
  const SharedBook shared(GetParam());
  const auto book = shared.Open();
  const auto listed = desk::book::ReadBatchChart(book.GetSession());
  const auto change = [&](desk::book::BatchAction action) {
    return ChangeBatch(book.GetSession(), listed, PlanBatch(listed, action, {1}), {1});
  };
  EXPECT_EQ(change(desk::book::BatchAction::kSeal), 3);
  EXPECT_EQ(
      test::Scalar(book, "select count(*) from gl_code where bclose=1 and ccode like '1002%'"),
      "3");
  EXPECT_THAT(Refusal([&] { change(desk::book::BatchAction::kSeal); }), HasSubstr("其他用户"));
  test::AddPosting(shared.Open(), "gl_accsum", "10020002");
  EXPECT_THAT(Refusal([&] { change(desk::book::BatchAction::kDelete); }), HasSubstr("其他用户"));
  EXPECT_EQ(test::Scalar(book, "select count(*) from gl_code"), "6");
}

}  // namespace
}  // namespace tavrix::sharing
