#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "book/exchange/export_chart.h"
#include "book/text_import.h"
#include "support/matchers.h"
#include "support/odd_chart.h"
#include "support/test_book.h"

namespace desk::book {
namespace {

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

TEST(ColumnMatch, AHeaderMayHaveTwoRows) {
  const Source source = Read(
      "科目表,,,,,\n科目编码,科目名称,属性,,期初余额,\n,,类别,余额方向,借方,贷方\n"
      "1009,现金,资产,借,1,\n,合计,,,1,\n");
  ASSERT_EQ(source.options.header, std::optional<std::size_t>(2));
  EXPECT_EQ(source.options.columns.FieldAt(1), AccountField::kName);
  EXPECT_EQ(source.options.columns.FieldAt(2), AccountField::kCategory);
  EXPECT_EQ(source.options.columns.FieldAt(3), AccountField::kDebit);
  EXPECT_THAT(Told(PlanOf(MakeBook(), source)), ElementsAre("4 + "));
  // An account without a code is none.
  EXPECT_EQ(Read("编码,名称,类别\n,现金,资产\n").options.header, std::optional<std::size_t>(0));
  // Names may be missing, or stand in a column that nobody knows.
  EXPECT_EQ(Read("编码,全名,类别\n1009,现金,资产\n").options.header, std::optional<std::size_t>(0));
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
      ",其他,,,,,\n"          // no code
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
                          "15 ! 没有科目类别，也没有上级科目可以参照，请在文件中填写",
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

TEST(ImportPlan, TakesWhatSpreadsheetsAndPeopleDoToLists) {
  const Book book = MakeBook();
  const ImportPlan plan = PlanOf(book, Read("科目编码,科目名称,科目类别,Normal Balance\n"
                                            "=\"1009\",其他现金,流动资产,Debit\n"
                                            "100901,　　备用金,,\n100902,\xC2\xA0 保证金　,,\n"
                                            "6001,主营收入,营业收入,Cr\n"
                                            "　,　,,\n小计：,,,\n,合　计,,\n"
                                            "制表：张三,,,复核：李四\n"));
  EXPECT_THAT(Told(plan), ElementsAre("2 + ", "3 + ", "4 + ", "5 + "));
  EXPECT_EQ(plan.lines[0].account.Code(), "1009");
  EXPECT_EQ(plan.lines[1].account.Text(AccountField::kName), "备用金");
  EXPECT_EQ(plan.lines[2].account.Text(AccountField::kName), "保证金");
  EXPECT_FALSE(plan.lines[3].account.Flag(AccountField::kDebit));

  // Which column has the codes is for the user to say.
  EXPECT_THAT(Told(PlanOf(book, Read("日期,摘要\n五月,买菜\n"))),
              ElementsAre("1 ! 请先在上面的列表中选择哪一列是科目编码",
                          "2 ! 请先在上面的列表中选择哪一列是科目编码"));
}

TEST(ImportPlan, EmptyBookTakesTheRuleOfTheCodes) {
  const Book book = MakeBook({}, "4222");
  Source source = Read("code,name,type\n101,Cash,Asset\n101-01,Box,\n101-01-001,Drawer,\n");
  source.options.code_rule = ProposeCodeRule(source.table, source.options);
  EXPECT_EQ(source.options.code_rule, "323");
  const ImportPlan plan = Import(book, source);
  EXPECT_EQ(plan.Count(ImportState::kAdd), 3U);
  EXPECT_EQ(book.Setting("system", "kmbm"), "323");
  EXPECT_THAT(tavrix::test::BrokenRules(book), IsEmpty());
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
  const Source source = Read(ChartAsCsv(ReadAccounts(book.GetSession())));
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
  const std::string csv = ChartAsCsv(ReadAccounts(book.GetSession()));
  EXPECT_THAT(csv, HasSubstr("1001,'=1+1,资产,借,'-x,"));
  EXPECT_THAT(csv, HasSubstr("1002,''@a,"));
  EXPECT_EQ(PlanOf(book, Read(csv)).Count(ImportState::kSame), 2U);
}

TEST(ExportChart, HtmlEscapesAndIndents) {
  const Book book = MakeBook();
  tavrix::test::Run(book, "update gl_code set ccode_name='<b>&\"x' where ccode='100201'");
  const std::string html = ChartAsHtml(ReadAccounts(book.GetSession()), {"科目表", "A & B"});
  EXPECT_THAT(html, HasSubstr("<td>100201</td><td class=\"n\" "
                              "style=\"padding-left:1.4em\">&lt;b&gt;&amp;&quot;x</td>"));
  EXPECT_THAT(html, HasSubstr("<p>A &amp; B</p>"));
  EXPECT_THAT(html, HasSubstr("供应商往来"));
  EXPECT_THAT(html, testing::Not(HasSubstr("客户往来")));  // nobody has any
}

}  // namespace
}  // namespace desk::book
