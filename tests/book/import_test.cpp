#include "book/exchange/import_chart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "book/exchange/csv.h"
#include "book/exchange/export_chart.h"
#include "book/exchange/text_encoding.h"
#include "support/odd_chart.h"
#include "support/test_book.h"

namespace desk::book {
namespace {

using tavrix::test::AllRows;
using tavrix::test::BrokenRules;
using tavrix::test::MakeBook;
using tavrix::test::MakeBookOn;
using tavrix::test::Scalar;
using tavrix::test::WholeChart;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// A file as it is read when nobody says otherwise.
struct Source {
  SourceTable table;
  ImportOptions options;
};

Source Read(const std::string& bytes) {
  const std::string text = Decoded(bytes, FindEncoding(bytes));
  Source source{.table = ReadCsv(text, FindSeparator(text)), .options = {}};
  source.options.header = FindHeader(source.table);
  source.options.columns = source.options.header
                               ? MatchHeader(source.table.rows[*source.options.header])
                               : GuessColumns(source.table);
  return source;
}

ImportPlan PlanOf(const Book& book, const Source& source) {
  return PlanImport(book.GetSession(), source.table, source.options);
}

ImportPlan Import(const Book& book, const Source& source, const Progress& progress = {}) {
  ImportPlan plan = PlanOf(book, source);
  ImportChart(book.GetSession(), source.table, source.options, plan, progress);
  return plan;
}

/// Each line in short: its number, state and note.
std::vector<std::string> Told(const ImportPlan& plan) {
  std::vector<std::string> told;
  for (const ImportLine& line : plan.lines) {
    constexpr const char* kStates[] = {" + ", " ~ ", " = ", " ! "};
    told.push_back(std::to_string(line.number) + kStates[static_cast<int>(line.state)] +
                   NoteOf(line));
  }
  return told;
}

TEST(ColumnMatch, HeadersAreKnownInBothLanguagesBelowTitles) {
  const Source source = Read(
      "某某公司科目表,,,,\n,,,,\nAccount Code,科目名称（中文）,Ｔｙｐｅ,余额 方向,是否封存\n"
      "1001,现金,资产,借,\n");
  ASSERT_EQ(source.options.header, std::optional<std::size_t>(1));
  const ColumnMap& map = source.options.columns;
  EXPECT_EQ(map.FieldAt(0), AccountField::kCode);
  EXPECT_EQ(map.FieldAt(1), AccountField::kName);
  EXPECT_EQ(map.FieldAt(2), AccountField::kCategory);
  EXPECT_EQ(map.FieldAt(3), AccountField::kDebit);
  EXPECT_EQ(map.FieldAt(4), AccountField::kSealed);
  // Every title that is written is known again, and means one field only.
  for (const FieldInfo& info : Fields()) EXPECT_EQ(FieldOfHeader(info.title), info.field);
}

TEST(ColumnMatch, WithoutHeaderCodesAndNamesAreSeen) {
  const Source source = Read("借,1001,库存现金\n借,1002,银行存款\n贷,2001,短期借款\n");
  EXPECT_FALSE(source.options.header.has_value());
  EXPECT_EQ(source.options.columns.FieldAt(1), AccountField::kCode);
  EXPECT_EQ(source.options.columns.FieldAt(2), AccountField::kName);
}

TEST(ImportPlan, SaysOfEachLineWhatItWouldDoAndWhy) {
  const Book book = MakeBook();
  tavrix::test::AddPosting(book, "gl_accvouch", "1001");
  const Source source = Read(
      "编码,名称,类别,方向,助记码,客户往来,封存\n"
      "1001,现金,,,kcxj,,是\n"          // changes two fields
      "1002,银行存款,资产,借,yhck,,\n"  // as it is
      "1003.01,在途资金,,,,,\n"         // a point between the levels; its parent comes later
      "1003,存放同业,资产,,,,\n"
      "1002,银行,,,,,\n"      // a second time
      ",合计,,,,,\n"          // no code
      "10031,短,,,,,\n"       // of no level
      "300101,无上级,,,,,\n"  // its parent is nowhere
      "100101,备用金,,,,,\n"  // its parent has been posted to
      "10030201,深,,,,,\n"    // its parent is missing
      "1004,,,,,,\n"          // no name
      "1005,错类,类别,,,,\n"
      "100501,其下,,,,,\n"  // its parent is refused
      "7001,未知,,,,,\n"    // nobody knows the category
      "2203,预收账款,,,,x,也许\n"
      "22020１,暂估,,,,√,\n");  // full width; all from its parent
  const ImportPlan plan = PlanOf(book, source);
  EXPECT_THAT(Told(plan),
              ElementsAre("2 ~ 科目名称：库存现金 → 现金；封存：否 → 是", "3 = ", "4 + ", "5 + ",
                          "6 ! 与第 3 行的编码重复", "7 ! 没有科目编码",
                          "8 ! 编码有 5 位，按编码规则应当是 4、6、8、10 位",
                          "9 ! 上级科目 3001 不在账簿和文件中",
                          "10 ! 上级科目 1001 已经记账，请先在科目表中为它增加第一个下级科目",
                          "11 ! 上级科目 100302 不在账簿和文件中", "12 ! 没有科目名称",
                          "13 ! 没有“类别”这个科目类别", "14 ! 上级科目 1005 被拒绝",
                          "15 ! 没有科目类别，也没有上级科目可以参照",
                          "16 ! “封存”不能是“也许”，应当是“是”或“否”", "17 + "));
  const ImportLine& last = plan.lines.back();
  EXPECT_EQ(last.account.Code(), "220201");
  EXPECT_EQ(last.account.Text(AccountField::kCategory), "负债");
  EXPECT_FALSE(last.account.Flag(AccountField::kDebit));
  EXPECT_TRUE(last.account.Flag(AccountField::kCustomer));
  EXPECT_EQ(plan.lines[2].account.Code(), "100301");
  EXPECT_THAT(plan.new_parents, ElementsAre("2202"));

  // Mnemonics are proposed where there would be none.
  Source asked = source;
  asked.options.fill_mnemonics = true;
  const ImportPlan filled = PlanOf(book, asked);
  EXPECT_EQ(filled.lines[3].account.Text(AccountField::kMnemonic), "cfty");
  EXPECT_EQ(filled.lines[1].account.Text(AccountField::kMnemonic), "yhck");
  EXPECT_EQ(plan.lines[3].account.Text(AccountField::kMnemonic), "");
}

TEST(ImportPlan, EmptyBookTakesTheRuleOfTheCodes) {
  const Book book = MakeBook({}, "4222");
  Source source = Read("code,name,type\n101,Cash,Asset\n101-01,Box,\n101-01-001,Drawer,\n");
  source.options.code_rule = ProposeCodeRule(source.table, source.options);
  EXPECT_EQ(source.options.code_rule, "323");
  const ImportPlan plan = Import(book, source);
  EXPECT_EQ(plan.Count(ImportState::kAdd), 3U);
  EXPECT_EQ(book.Setting("system", "kmbm"), "323");
  EXPECT_THAT(BrokenRules(book), IsEmpty());
  EXPECT_EQ(Scalar(book, "select bend from gl_code where ccode='10101'"), "0");

  // A book with accounts keeps its own.
  source.options.code_rule = "9";
  EXPECT_FALSE(PlanOf(book, source).changes_rule);
}

TEST(ImportPlan, CodesAreTakenByTheirPartsAndNothingElse) {
  const Book book = MakeBook();
  const ImportPlan plan =
      PlanOf(book, Read("编码,名称\n1001.0,库存现金\n1003.01.01,细\n1003-01,中\n"
                        "1003,上\n1003.1,不足\n1.00101E+5,科学\n1.001E3,科学\n"
                        "1001'1,引号\n100301.02,合\n"));
  EXPECT_THAT(Told(plan),
              ElementsAre("2 = ", "3 + ", "4 + ", "5 + ", "6 ! 编码中有字母和数字以外的字符",
                          "7 ! 编码是科学计数法的数字，请在表格中改成文本",
                          "8 ! 编码是科学计数法的数字，请在表格中改成文本",
                          "9 ! 编码中有字母和数字以外的字符", "10 ! 编码中有字母和数字以外的字符"));
  EXPECT_EQ(plan.lines[1].account.Code(), "10030101");
  const Source numbers = Read("编码,名称\n1001.0,甲\n100101.0,乙\n");
  EXPECT_EQ(ProposeCodeRule(numbers.table, numbers.options), "42");

  // Codes of its own a book keeps.
  tavrix::test::Run(book, "update gl_code set ccode='10.1' where ccode='1001'");
  EXPECT_THAT(Told(PlanOf(book, Read("编码,名称\n10.1,钱\n"))),
              ElementsAre("2 ~ 科目名称：库存现金 → 钱"));
}

TEST(ImportPlan, ABadRuleIsNotTakenOver) {
  const Book book = MakeBook({}, "4222");
  Source source = Read("编码,名称,类别\n1001,现金,资产\n");
  for (const char* rule : {"4-2-2", "40", "a", "99999"}) {
    source.options.code_rule = rule;
    const ImportPlan plan = PlanOf(book, source);
    EXPECT_FALSE(plan.changes_rule) << rule;
    EXPECT_EQ(plan.Count(ImportState::kRefuse), 1U) << rule;
  }
}

TEST(ImportPlan, CategoriesFollowTheBranchAndPagesTheCurrency) {
  const Book book = MakeBook();
  EXPECT_THAT(
      Told(PlanOf(book, Read("编码,名称,类别,外币,单位\n1002,银行存款,负债,否,\n"
                             "100203,三行,负债,,\n100204,四行,资产,美元,台\n"
                             "1001,库存现金,,美元,\n2202,应付账款,,是,\n"))),
      ElementsAre("2 ! 有下级的科目不能在导入时改变类别",
                  "3 ! 类别“负债”与上级科目的类别“资产”不同", "4 + ",
                  "5 ~ 账页格式：金额式 → 金额外币式；外币核算：否 → 是；币种：（空） → 美元",
                  "6 ! “币种”应当是名称，不能是“是”"));
}

TEST(ImportPlan, WhatIsOddInTheBookComesBackAsItIs) {
  const Book book = MakeBook();
  tavrix::test::Run(book,
                    "update gl_code set cclass='资产类',cbook_type='老式',cexch_name='美元',"
                    "bexchange=0,ccode_engl='" +
                        std::string(300, 'x') + "' where ccode='1001'");
  const Source source = Read(ChartAsCsv(ReadRecords(book.GetSession())));
  EXPECT_EQ(PlanOf(book, source).Count(ImportState::kSame), 8U);
}

TEST(ImportPlan, ARefusedAccountLeavesItsParentALeaf) {
  const Book book = MakeBook();
  const ImportPlan plan = Import(book, Read("编码,名称,封存\n10020101,坏,也许\n1001,现金,\n"));
  EXPECT_THAT(plan.new_parents, IsEmpty());
  EXPECT_EQ(Scalar(book, "select bend from gl_code where ccode='100201'"), "1");
}

TEST(ExportChart, CsvHoldsNoFormulas) {
  const Book book = MakeBook({{.code = "1001", .name = "=1+1", .category = "资产", .help = "-x"},
                              {.code = "1002", .name = "'@a", .category = "资产"}});
  const std::string csv = ChartAsCsv(ReadRecords(book.GetSession()));
  EXPECT_THAT(csv, HasSubstr("1001,'=1+1,资产,借,'-x,"));
  EXPECT_THAT(csv, HasSubstr("1002,''@a,"));
  EXPECT_EQ(PlanOf(book, Read(csv)).Count(ImportState::kSame), 2U);
}

class ImportChartTest : public testing::TestWithParam<std::string> {};
INSTANTIATE_TEST_SUITE_P(Engines, ImportChartTest,
                         testing::ValuesIn(tavrix::test::EnginesAtHand()));

TEST_P(ImportChartTest, WhatIsExportedComesBackUnchanged) {
  const Book from = MakeBookOn(GetParam(), tavrix::test::OddAccounts(1500));
  tavrix::test::AddOddColumns(from);
  const std::vector<std::string> chart = WholeChart(from);
  ASSERT_EQ(chart.size(), 1500U);
  const Source source = Read(ChartAsCsv(ReadRecords(from.GetSession())));

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

TEST(ExportChart, HtmlEscapesAndIndents) {
  const Book book = MakeBook();
  tavrix::test::Run(book, "update gl_code set ccode_name='<b>&\"x' where ccode='100201'");
  const std::string html = ChartAsHtml(ReadRecords(book.GetSession()), {"科目表", "A & B"});
  EXPECT_THAT(html, HasSubstr("<td>100201</td><td class=\"n\" "
                              "style=\"padding-left:1.4em\">&lt;b&gt;&amp;&quot;x</td>"));
  EXPECT_THAT(html, HasSubstr("<p>A &amp; B</p>"));
  EXPECT_THAT(html, HasSubstr("供应商往来"));
  EXPECT_THAT(html, testing::Not(HasSubstr("客户往来")));  // nobody has any
}

}  // namespace
}  // namespace desk::book
