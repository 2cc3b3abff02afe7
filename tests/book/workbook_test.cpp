#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "book/exchange/column_match.h"
#include "book/exchange/export_chart.h"
#include "book/exchange/import_chart.h"
#include "book/exchange/import_source.h"
#include "book/exchange/xlsx_reader.h"
#include "book/exchange/zip_archive.h"
#include "book/files/files.h"
#include "book/files/paths.h"
#include "support/matchers.h"
#include "support/odd_chart.h"
#include "support/temp_folder.h"
#include "support/test_book.h"

namespace desk::book {
namespace {

using tavrix::test::OddAccounts;
using tavrix::test::WholeChart;

std::string Refusal(const std::string& bytes) {
  try {
    (void)ImportSource(bytes);
    return {};
  } catch (const SourceError& error) {
    return error.what();
  }
}

SourceTable SheetOf(const std::string& bytes, std::size_t sheet) {
  return Workbook(bytes).Read(sheet);
}

/// A workbook of one sheet with these rows, and further parts.
std::string Made(const std::string& sheet, const std::string& shared = {},
                 const std::string& prolog = {}, const std::string& styles = {}) {
  const std::string relation =
      "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
  ZipWriter archive;
  archive.Add("_rels/.rels", "<Relationships><Relationship Id='a' Type='" + relation +
                                 "/officeDocument' Target='/x/book.xml'/></Relationships>");
  archive.Add("x/book.xml",
              "<m:workbook xmlns:m='m' xmlns:r='r'><m:sheets><m:sheet name='甲' r:id='s'/>"
              "</m:sheets></m:workbook>");
  archive.Add("x/_rels/book.xml.rels",
              "<Relationships><Relationship Id='s' Type='" + relation +
                  "/worksheet' Target='s.xml'/><Relationship Id='t' Type='" + relation +
                  "/sharedStrings' Target='t.xml'/><Relationship Id='f' Type='" + relation +
                  "/styles' Target='f.xml'/></Relationships>");
  if (!styles.empty()) archive.Add("x/f.xml", "<styleSheet>" + styles + "</styleSheet>");
  if (!shared.empty()) archive.Add("x/t.xml", "<sst>" + shared + "</sst>");
  archive.Add("x/s.xml", prolog + "<m:worksheet xmlns:m='m'><m:sheetData>" + sheet +
                             "</m:sheetData></m:worksheet>");
  return archive.Finish();
}

TEST(Workbook, CellsOfEachKindBecomeTexts) {
  const SourceTable table = SheetOf(
      Made("<m:row><m:c t='s'><m:v>1</m:v></m:c><m:c><m:v>1001.0</m:v></m:c>"
           "<m:c><m:v>1.0020100000000001E+5</m:v></m:c><m:c><m:v>0.1</m:v></m:c></m:row>"
           "<m:row r='7'><m:c r='C7' t='b'><m:v>1</m:v></m:c><m:c t='inlineStr'><m:is><m:t>a</m:t>"
           "</m:is></m:c><m:c t='str'><m:f>1+1</m:f><m:v>b_x000D_c</m:v></m:c></m:row>"
           "<m:row r='9'><m:c r='A9' s='1'/></m:row>",
           "<si><t>x</t></si><si><r><t>两</t></r><r><t xml:space='preserve'> 段</t></r>"
           "<rPh><t>liang</t></rPh></si>"),
      0);
  ASSERT_EQ(table.rows.size(), 2U);
  EXPECT_THAT(table.rows[0].cells, ElementsAre("两 段", "1001", "100201", "0.1"));
  EXPECT_EQ(table.rows[1].number, 7);
  EXPECT_THAT(table.rows[1].cells, ElementsAre("", "", "TRUE", "a", "b\rc"));
}

TEST(Workbook, NumbersHaveTheZerosThatTheirFormatShows) {
  const SourceTable table = SheetOf(
      Made("<m:row><m:c s='1'><m:v>101</m:v></m:c><m:c s='1'><m:v>10101</m:v></m:c>"
           "<m:c s='1'><m:v>1.5</m:v></m:c><m:c s='1'><m:v>-1</m:v></m:c><m:c s='2'><m:v>7</m:v>"
           "</m:c><m:c s='9'><m:v>7</m:v></m:c><m:c><m:v>7</m:v></m:c></m:row>",
           {}, {},
           "<numFmts><numFmt numFmtId='164' formatCode='0000'/><numFmt numFmtId='165' "
           "formatCode='0.00'/></numFmts><cellStyleXfs><xf numFmtId='164'/></cellStyleXfs>"
           "<cellXfs><xf numFmtId='0'/><xf numFmtId='164'/><xf numFmtId='165'/></cellXfs>"),
      0);
  EXPECT_THAT(table.rows[0].cells, ElementsAre("0101", "10101", "1.5", "-1", "7", "7", "7"));
}

TEST(Workbook, HostileFilesAreRefusedWithoutHarm) {
  const std::string row = "<m:row><m:c t='s'><m:v>0</m:v></m:c></m:row>";
  EXPECT_THAT(Refusal("PK\x03\x04 and so on"), HasSubstr("损坏"));
  EXPECT_THAT(Refusal(Made("<m:row>")), HasSubstr("错误"));
  EXPECT_THAT(Refusal(Made("<m:row><m:c><m:v>&a;</m:v></m:c></m:row>", {},
                           "<!DOCTYPE a [<!ENTITY a 'aaaaaaaaaa'>]>")),
              HasSubstr("不允许的声明"));
  // Much of nothing packs well.
  EXPECT_THAT(Refusal(Made(std::string(std::size_t{300} << 20, ' '))), HasSubstr("太大"));
  EXPECT_THAT(Refusal(Made(row, "<si><t>" + std::string(200'000, 'a') + "</t></si>")),
              HasSubstr("太长"));
  // Few bytes that many cells refer to.
  std::string many;
  for (int i = 0; i < 3000; ++i) many += row;
  EXPECT_THAT(Refusal(Made(many, "<si><t>" + std::string(100'000, 'a') + "</t></si>")),
              HasSubstr("太多"));
  EXPECT_THAT(Refusal(Made("<m:row><m:c r='XFD1'><m:v>1</m:v></m:c></m:row>")),
              HasSubstr("列太多"));
  EXPECT_EQ(Refusal(Made("<m:row r='999999999'><m:c><m:v>1</m:v></m:c></m:row>")), "");
  EXPECT_THAT(Refusal(Made(row).substr(0, 400)), HasSubstr("损坏"));
}

TEST(Workbook, ManySheetsAndCellsOfOnePartAreBounded) {
  // Sheets without end that are all one part, and rows whose only cell stands far to the right.
  std::string row;
  for (int i = 0; i < 30'000; ++i) row += "<m:row><m:c r='IV1'><m:v>1</m:v></m:c></m:row>";
  EXPECT_THAT(Refusal(Made(row)), HasSubstr("太多"));
  EXPECT_THAT(Refusal(Made("<m:row><m:c t='s'><m:v>0</m:v></m:c></m:row>",
                           [] {
                             std::string many;
                             for (int i = 0; i < 2'000'001; ++i) many += "<si/>";
                             return many;
                           }())),
              HasSubstr("太多"));
  const SourceTable table =
      SheetOf(Made("<m:row><m:c><m:v>1234567890123456789</m:v></m:c></m:row>"), 0);
  EXPECT_EQ(table.rows[0].cells[0], "1.23456789012346E+18");
}

TEST(Workbook, BrokenBytesNeverDoMoreThanFail) {
  const Book book = MakeBookOn("sqlite", OddAccounts(40));
  const std::string good = ChartAsXlsx(ReadAccounts(book.GetSession()));
  std::mt19937 random(1);
  int refused = 0;
  for (int round = 0; round < 400; ++round) {
    std::string bytes = good;
    for (unsigned hits = random() % 4 + 1; hits > 0; --hits) {
      bytes[random() % bytes.size()] = static_cast<char>(random());
    }
    if (round % 3 == 0) bytes.resize(random() % bytes.size());
    if (!Refusal(bytes).empty()) ++refused;
  }
  EXPECT_GT(refused, 200);
}

TEST(Workbook, ExportedCodesAreNoMistakesAndCanBeFiltered) {
  const Book book = MakeBookOn("sqlite", OddAccounts(3));
  const std::string bytes = ChartAsXlsx(ReadAccounts(book.GetSession()));
  std::string sheet;
  ASSERT_TRUE(ZipReader(bytes).Read("xl/worksheets/sheet1.xml",
                                    [&](std::string_view piece) { sheet += piece; }));
  EXPECT_THAT(sheet, HasSubstr("</sheetData><autoFilter ref=\"A1:W4\"/><pageMargins"));
  EXPECT_THAT(sheet, HasSubstr("<ignoredError sqref=\"A1:W4\" numberStoredAsText=\"1\"/>"));
}

TEST(Workbook, ComesBackUnchanged) {
  for (const std::string& engine : tavrix::test::EnginesAtHand()) {
    const Book from = MakeBookOn(engine, OddAccounts(1500));
    tavrix::test::AddOddColumns(from);
    const SourceTable table = SheetOf(ChartAsXlsx(ReadAccounts(from.GetSession())), 0);
    const ImportOptions options{.columns = MatchHeader(table.rows[0]), .header = 0};
    const Book to = MakeBookOn(engine, {});
    ImportChart(to.GetSession(), table, options, PlanImport(to.GetSession(), table, options));
    EXPECT_EQ(WholeChart(to), WholeChart(from)) << engine;
  }
}

#ifndef _WIN32
/// What the other program's script says.
std::string RunScript(const std::string& arguments) {
  const std::string command =
      "/usr/bin/python3 " TAVRIX_SOURCE "/tests/book/workbook.py " + arguments;
  const std::unique_ptr<FILE, int (*)(FILE*)> output(popen(command.c_str(), "r"), pclose);
  std::string text;
  for (int unit = 0; (unit = std::fgetc(output.get())) != EOF;) text += static_cast<char>(unit);
  return text;
}

TEST(Workbook, AnotherProgramReadsIt) {
  const Book book = MakeBookOn("sqlite", OddAccounts(20));
  const tavrix::test::TempFolder folder;
  ReplaceFile(PathOf(folder.File("out.xlsx")), ChartAsXlsx(ReadAccounts(book.GetSession())));
  const std::string read = RunScript("read " + folder.File("out.xlsx"));
  EXPECT_THAT(read, HasSubstr("会计科目 21 23 C2 $1:$1\n['s', 's'] @\n0112112112 False\n"));
  EXPECT_THAT(read, HasSubstr(R"('1001' 'L\'Or\xe9al "Paris", S.A. 0')"));
  EXPECT_THAT(read, HasSubstr(R"('100101' 'M\xfcller & S\xf6hne <GmbH> 1')"));
  EXPECT_THAT(read, HasSubstr(R"('100102' '\u4e24\u884c\n\u540d\u79f0 2')"));
  EXPECT_THAT(read, HasSubstr(R"('100103' '\U00020bb7\u91ce\u5bb6\uff1b\U0001f600 4')"));
}

TEST(Workbook, OfAnotherProgramIsRead) {
  const tavrix::test::TempFolder folder;
  RunScript("write " + folder.File("in.xlsx"));
  const std::string bytes = ReadFile(PathOf(folder.File("in.xlsx")));
  ASSERT_THAT(Workbook(bytes).Sheets(), ElementsAre("说明", "科目 & 表"));
  const SourceTable table = SheetOf(bytes, 1);
  const auto header = FindHeader(table);
  ASSERT_EQ(header, std::optional<std::size_t>(1));
  const ImportOptions options{.columns = MatchHeader(table.rows[1]), .header = header};
  const Book book = MakeBookOn("sqlite", {});
  const ImportPlan plan = PlanImport(book.GetSession(), table, options);
  // The formula has never been worked out: nothing stands there.
  EXPECT_EQ(plan.lines.back().why, "没有科目名称");
  EXPECT_EQ(plan.lines.back().number, 20);
  ImportChart(book.GetSession(), table, options, plan);
  EXPECT_THAT(tavrix::test::AllRows(
                  book, "select ccode,ccode_name,cclass,bclose,bdept from gl_code order by ccode"),
              ElementsAre("1001|库存现金|资产|0|0", "1002|银行存款|资产|1|1",
                          "100201|O'Brien & Söhne <𠮷>\n两行|资产|0|1"));
}
#endif

}  // namespace
}  // namespace desk::book
