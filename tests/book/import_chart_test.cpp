#include "book/exchange/import_chart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "book/exchange/export_chart.h"
#include "book/journal/command_text.h"
#include "book/journal/undo.h"
#include "book/text_import.h"
#include "support/matchers.h"
#include "support/odd_chart.h"
#include "support/test_book.h"

namespace desk::book {
namespace {

using tavrix::test::BrokenRules;
using tavrix::test::WholeChart;
using testing::AllOf;

class ImportChartTest : public testing::TestWithParam<std::string> {};
INSTANTIATE_TEST_SUITE_P(Engines, ImportChartTest,
                         testing::ValuesIn(tavrix::test::EnginesAtHand()));

TEST_P(ImportChartTest, WhatIsExportedComesBackUnchanged) {
  const Book from = MakeBookOn(GetParam(), tavrix::test::OddAccounts(1500));
  tavrix::test::AddOddColumns(from);
  const std::vector<std::string> chart = WholeChart(from);
  ASSERT_EQ(chart.size(), 1500U);
  const Source source = Read(ChartAsCsv(ReadAccounts(from.GetSession())));

  EXPECT_EQ(PlanOf(from, source).Count(ImportState::kSame), 1500U);
  const Book to = MakeBookOn(GetParam(), {});
  Import(to, source);
  EXPECT_EQ(WholeChart(to), chart);
  EXPECT_THAT(BrokenRules(to), IsEmpty());

  // Changed to and fro, it is what it was.
  const Source less = Read("编码,名称,封存,部门核算\n1001,'a',否,是\n100101,b,是,是\n");
  EXPECT_EQ(Import(from, less).Count(ImportState::kChange), 2U);
  EXPECT_NE(WholeChart(from), chart);
  EXPECT_EQ(Import(from, source).Count(ImportState::kChange), 2U);
  EXPECT_EQ(WholeChart(from), chart);
}

TEST_P(ImportChartTest, EachLineChangesItsOwnFields) {
  const Book book = MakeBookOn(GetParam(), tavrix::test::OddAccounts(1500));
  const std::vector<std::string> chart = WholeChart(book);
  const Source source = Read(ChartAsCsv(ReadAccounts(book.GetSession())));
  const char* fields[] = {"ccode_name=ccode_name||'x'", "bclose=1-bclose", "chelp=chelp||'y'",
                          "ccode_engl='',bsup=1-bsup", "cother=cother||'\"{,}\\'"};
  int each = 1;
  for (const std::string field : fields) {
    tavrix::test::Run(
        book, "update gl_code set " + field + " where i_id%" + std::to_string(++each) + "=1");
  }
  EXPECT_GT(Import(book, source).Count(ImportState::kChange), 700U);
  EXPECT_EQ(WholeChart(book), chart);
}

TEST_P(ImportChartTest, ARefusalByTheBookNamesTheLine) {
  const Book book = MakeBookOn(GetParam());
  const bool server = book.GetSession().Own().Dialect() == SqlDialect::kPostgres;
  const std::string when = " on gl_code for each row when (new.ccode_name='不行') ";
  if (server) {
    tavrix::test::Run(book,
                      "create function no_such_name()returns trigger language plpgsql as "
                      "$$begin raise exception '名称不行'; end$$");
  }
  for (const std::string change : {"insert", "update"}) {
    tavrix::test::Run(book, "create trigger no_" + change + " before " + change + when +
                                (server ? "execute function no_such_name()"
                                        : "begin select raise(abort,'名称不行'); end"));
  }
  const std::vector<std::string> before = WholeChart(book);
  for (const char* last : {"2202,不行\n", "1009,不行\n"}) {
    try {
      Import(book, Read("编码,名称,类别\n1001,甲,\n1003,乙,资产\n1002,丙,\n" + std::string(last)));
      ADD_FAILURE() << last;
    } catch (const DatabaseError& error) {
      EXPECT_THAT(error.what(), AllOf(StartsWith("第 5 行的科目 " + std::string(last, 4)),
                                      HasSubstr("名称不行")));
    }
    EXPECT_EQ(WholeChart(book), before);
  }
}

TEST_P(ImportChartTest, WhatIsRefusedInLargePortionsOnlyIsRefusedWithItsReason) {
  const Book book = MakeBookOn(GetParam());
  if (book.GetSession().Own().Dialect() != SqlDialect::kPostgres) return;
  tavrix::test::Run(book,
                    "create function only_few()returns trigger language plpgsql as $$begin if "
                    "(select count(*)>10 and max(ccode)>'6' from added) then raise exception "
                    "'too many'; end if; return null; end$$");
  tavrix::test::Run(book,
                    "create trigger only_few after insert on gl_code referencing new table as "
                    "added for each statement execute function only_few()");
  std::string file = "编码,名称,类别\n";
  for (int i = 0; i < 40; ++i) {
    file += std::to_string((i < 20 ? 1100 : 6000) + i) + ",新," + (i < 20 ? "资产\n" : "损益\n");
  }
  const std::vector<std::string> before = WholeChart(book);
  try {
    Import(book, Read(file));
    ADD_FAILURE();
  } catch (const DatabaseError& error) {
    EXPECT_THAT(error.what(), HasSubstr("too many"));
  }
  EXPECT_EQ(WholeChart(book), before);
}

TEST_P(ImportChartTest, AnUndoPutsTheCodeRuleBack) {
  const Book book = MakeBookOn(GetParam(), {});
  Session& session = book.GetSession();
  const std::string rule = book.Setting("system", "kmbm");
  Source source = Read("编码,名称,类别\n101,甲,资产\n10101,乙,\n");
  source.options.code_rule = "32";
  Import(book, source);
  const std::vector<std::string> chart = WholeChart(book);
  const auto import = session.LastCommand();
  EXPECT_EQ(OutcomeText(session, import), "导入科目：新增 2 个；编码规则由 " + rule + " 改为 32");

  const auto undo = UndoCommand(session, import);
  EXPECT_EQ(book.Setting("system", "kmbm"), rule);
  EXPECT_THAT(OutcomeText(session, undo), HasSubstr("编码规则由 32 改为 " + rule));
  const auto redo = UndoCommand(session, undo);
  EXPECT_EQ(book.Setting("system", "kmbm"), "32");
  EXPECT_EQ(WholeChart(book), chart);

  // Accounts that have come since keep the rule that they follow, and one that was set meanwhile
  // forbids what follows another.
  const auto undone = UndoCommand(session, redo);
  Import(book, Read("编码,名称,类别\n1001,丙,资产\n"));
  try {
    static_cast<void>(UndoCommand(session, undone));
    ADD_FAILURE();
  } catch (const DatabaseError& error) {
    EXPECT_THAT(error.what(), HasSubstr("编码规则"));
  }
  EXPECT_EQ(book.Setting("system", "kmbm"), rule);
  static_cast<void>(UndoCommand(session, session.LastCommand()));
  static_cast<void>(UndoCommand(session, undone));
  Import(book, Read("编码,名称,类别\n102,丁,资产\n"));
  const auto history = ReadHistory(session);
  static_cast<void>(UndoCommand(session, history.at(1).id));
  EXPECT_EQ(book.Setting("system", "kmbm"), "32");
  EXPECT_THAT(AllRows(book, "select ccode from gl_code"), ElementsAre("102"));
}

TEST_P(ImportChartTest, AddsBelowLeavesOfTheBook) {
  const Book book = MakeBookOn(GetParam());
  Import(book, Read("编码,名称\n10020101,支行 A\n100101,'备用'\n10020102,支行 B\n"));
  EXPECT_THAT(BrokenRules(book), IsEmpty());
  EXPECT_THAT(AllRows(book,
                      "select ccode,bend,igrade from gl_code where ccode like '100%' "
                      "order by ccode"),
              ElementsAre("1001|0|1", "100101|1|2", "1002|0|1", "100201|0|2", "10020101|1|3",
                          "10020102|1|3", "100202|1|2"));
}

TEST_P(ImportChartTest, AllOrNothing) {
  const Book book = MakeBookOn(GetParam());
  const std::vector<std::string> before = WholeChart(book);
  const Source source = Read(ChartAsCsv({}) + "1001,改名\n100101,新\n9001,新,损益\n");
  // Cancelled after each number of reports there are.
  for (int reports = 0;; ++reports) {
    int left = reports;
    try {
      Import(book, source, [&](const WorkState&) { return left-- > 0; });
      break;
    } catch (const WorkCancelled&) {
      ASSERT_LT(reports, 10);
    }
    EXPECT_EQ(WholeChart(book), before);
  }
  EXPECT_NE(WholeChart(book), before);
  EXPECT_THAT(BrokenRules(book), IsEmpty());
}

TEST_P(ImportChartTest, WhatOthersHaveChangedMeanwhileIsNotOverwritten) {
  const Book book = MakeBookOn(GetParam());
  const Source source = Read("编码,名称\n1001,甲\n100101,乙\n");
  const ImportPlan plan = PlanOf(book, source);
  for (const char* change : {"update gl_code set ccode_name='他人' where ccode='1001'",
                             "delete from gl_code where ccode='1001'"}) {
    tavrix::test::Run(book, change);
    const std::vector<std::string> theirs = WholeChart(book);
    try {
      ImportChart(book.GetSession(), source.table, source.options, plan);
      ADD_FAILURE() << change;
    } catch (const DatabaseError& error) {
      EXPECT_THAT(error.what(), HasSubstr("其他用户"));
    }
    EXPECT_EQ(WholeChart(book), theirs);
  }
}

}  // namespace
}  // namespace desk::book
