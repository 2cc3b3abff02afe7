#include "views/print_layout.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

#include "support/matchers.h"
#include "viewkit/grid/flex_grid.h"
#include "views/grid_print.h"
#include "views/print_wrap.h"

namespace desk::views {
namespace {

const viewkit::TextMeasure& Measure() {
  return viewkit::PlainTextMeasure();
}

int WidthAt(const PrintFont& font, const std::string& text) {
  return (Measure().Width(text, font.bold) * font.size + kPrintSize - 1) / kPrintSize;
}

/// What stands on a page between the captions and the foot, in reading order.
std::string TextOf(const PrintPage& page) {
  std::string text;
  for (const PrintText& part : page.texts) text += part.text;
  return text;
}

void ExpectInside(const PrintPage& page, const Paper& paper) {
  for (const PrintText& text : page.texts) {
    EXPECT_EQ(text.width, WidthAt(text.font, text.text)) << text.text;
    EXPECT_GE(text.x, paper.left) << text.text;
    EXPECT_LE(text.x + text.width, paper.width - paper.right) << text.text;
    EXPECT_GE(text.y, paper.top) << text.text;
    EXPECT_LE(text.y + text.height, paper.height - paper.bottom) << text.text;
  }
  for (const PrintLine& line : page.lines) {
    EXPECT_TRUE(line.x1 >= paper.left && line.x2 <= paper.width - paper.right &&
                line.x1 <= line.x2);
    EXPECT_TRUE(line.y1 >= paper.top && line.y2 <= paper.height - paper.bottom &&
                line.y1 <= line.y2);
  }
}

void ExpectNoOverlap(const PrintPage& page) {
  for (std::size_t i = 0; i < page.texts.size(); ++i) {
    for (std::size_t j = i + 1; j < page.texts.size(); ++j) {
      const PrintText& a = page.texts[i];
      const PrintText& b = page.texts[j];
      const bool apart = a.x + a.width <= b.x || b.x + b.width <= a.x || a.y + a.height <= b.y ||
                         b.y + b.height <= a.y;
      ASSERT_TRUE(apart) << a.text << " and " << b.text;
    }
  }
}

class RandomTable {
 public:
  explicit RandomTable(unsigned seed) : random_(seed) {}

  PrintTable Make() {
    PrintTable table{.title = "科目余额表",
                     .left = Words(6),
                     .middle = Words(4),
                     .right = "单位：元",
                     .foot = Words(3)};
    const int columns = Upto(9) + 1;
    for (int col = 0; col < columns; ++col) {
      const bool amount = Upto(1) == 0;
      table.columns.push_back({.caption = "列" + std::to_string(col),
                               .align = amount ? PrintAlign::kRight : PrintAlign::kLeft,
                               .wraps = !amount,
                               .indented = col == 1,
                               .amount = amount});
    }
    const int rows = Upto(200);
    for (int row = 0; row < rows; ++row) {
      PrintRow& made = table.rows.emplace_back();
      made.level = Upto(8);
      made.bold = Upto(9) == 0;
      made.keep_with_previous = Upto(6) == 0;
      made.keep_with_next = Upto(9) == 0;
      // The number of the row, then what cannot be mistaken for another one's.
      made.cells.push_back("#" + std::to_string(row) + ";");
      for (int col = 1; col < columns; ++col) {
        made.cells.push_back(table.columns[static_cast<std::size_t>(col)].amount ? "-1,234.50"
                                                                                 : Words(12));
      }
    }
    return table;
  }
  int Upto(int most) { return std::uniform_int_distribution<int>(0, most)(random_); }

 private:
  std::string Words(int most) {
    static constexpr const char* kWords[] = {"银行存款", "应收", "Dépréciation ", "a",
                                             " ",        "𠀀𠀁", "2024-01 "};
    std::string text;
    for (int i = Upto(most); i > 0; --i) text += kWords[Upto(6)];
    return text;
  }
  std::mt19937 random_;
};

TEST(PrintLayout, EachRowOnceInOrderInsideTheMarginsBelowTheCaptions) {
  for (unsigned seed = 0; seed < 30; ++seed) {
    RandomTable random(seed);
    const PrintTable table = random.Make();
    Paper paper;
    if (random.Upto(1) == 0) std::swap(paper.width, paper.height);
    if (random.Upto(3) == 0) paper = {.width = 8391, .height = 11906};
    const PrintLayout layout(table, paper, Measure());
    SCOPED_TRACE(seed);
    ASSERT_GE(layout.Size(), kSmallestPrintSize);
    ASSERT_EQ(layout.FirstRow(0), 0u);
    ASSERT_EQ(layout.FirstRow(layout.Pages()), table.rows.size());
    for (int number = 0; number < layout.Pages(); ++number) {
      const PrintPage page = layout.Page(number);
      ExpectInside(page, paper);
      ExpectNoOverlap(page);
      const std::string text = TextOf(page);
      EXPECT_NE(text.find(table.title), std::string::npos);
      EXPECT_NE(text.find("列0"), std::string::npos);
      EXPECT_NE(text.find("第 " + std::to_string(number + 1) + " 页 共 " +
                          std::to_string(layout.Pages()) + " 页"),
                std::string::npos);
      ASSERT_TRUE(layout.FirstRow(number) < layout.FirstRow(number + 1) || table.rows.empty());
      std::size_t at = 0;
      if (layout.Crowded()) continue;  // numbers may be broken into lines
      for (std::size_t row = layout.FirstRow(number); row < layout.FirstRow(number + 1); ++row) {
        at = text.find("#" + std::to_string(row) + ";", at);
        ASSERT_NE(at, std::string::npos) << row;
      }
      EXPECT_EQ(text.find("#" + std::to_string(layout.FirstRow(number + 1)) + ";"),
                std::string::npos);
    }
  }
}

PrintTable Rows(int count) {
  PrintTable table{.title = "表"};
  table.columns = {{.caption = "科目"}, {.caption = "金额", .align = PrintAlign::kRight}};
  for (int row = 0; row < count; ++row) table.rows.push_back({.cells = {"A", "1.00"}});
  return table;
}

TEST(PrintLayout, TotalsAndHeadingsStayWithTheirRows) {
  PrintTable table = Rows(200);
  const auto full = PrintLayout(table, {}, Measure()).FirstRow(1);
  table.rows[full].keep_with_previous = true;
  EXPECT_EQ(PrintLayout(table, {}, Measure()).FirstRow(1), full - 1);
  table.rows[full - 2].keep_with_next = true;
  EXPECT_EQ(PrintLayout(table, {}, Measure()).FirstRow(1), full - 2);
  // More than a page holds: the page is filled.
  for (PrintRow& row : table.rows) row.keep_with_previous = true;
  EXPECT_EQ(PrintLayout(table, {}, Measure()).FirstRow(1), full);
}

TEST(PrintLayout, WideTablesShrinkThenWrapThenAreCrowded) {
  PrintTable table = Rows(1);
  EXPECT_EQ(PrintLayout(table, {}, Measure()).Size(), kPrintSize);
  table.columns.push_back({.caption = "摘要", .wraps = true});
  std::string longest;
  for (int i = 0; i < 60; ++i) longest += "字";
  table.rows[0].cells.push_back(longest);
  const PrintLayout wrapped(table, {}, Measure());
  EXPECT_EQ(wrapped.Size(), kPrintSize);
  EXPECT_FALSE(wrapped.Crowded());
  int parts = 0;
  std::string joined;
  const PrintPage page = wrapped.Page(0);
  for (const PrintText& text : page.texts) {
    if (!text.text.starts_with("字")) continue;
    joined += text.text;
    ++parts;
  }
  EXPECT_EQ(joined, longest);
  EXPECT_GT(parts, 1);
  for (int col = 0; col < 14; ++col) {
    table.columns.push_back({.caption = "期末借方", .align = PrintAlign::kRight, .amount = true});
    table.rows[0].cells.emplace_back("123,456,789.00");
  }
  EXPECT_TRUE(PrintLayout(table, {}, Measure()).Crowded());
  const PrintLayout landscape(table, {.width = 23811, .height = 16838}, Measure());
  EXPECT_FALSE(landscape.Crowded());
  EXPECT_LT(landscape.Size(), kPrintSize);
}

TEST(PrintLayout, NegativeAmountsAreRedTextsIndented) {
  PrintTable table = Rows(2);
  table.columns[0].indented = true;
  table.columns[1].amount = true;
  table.rows[1] = {.cells = {"-B", "-2.00"}, .level = 2};
  std::map<std::string, PrintText> found;
  for (const PrintText& text : PrintLayout(table, {}, Measure()).Page(0).texts) {
    found[text.text] = text;
  }
  EXPECT_EQ(found["-2.00"].font.color, PrintColor::kRed);
  EXPECT_EQ(found["-B"].font.color, PrintColor::kBlack);
  EXPECT_EQ(found["1.00"].font.color, PrintColor::kBlack);
  EXPECT_GT(found["-B"].x, found["A"].x);
}

TEST(PrintWrap, BreaksAtBlanksAndBesideWideCharacters) {
  const WidthOf width = [](std::string_view text) { return Measure().Width(text, false); };
  EXPECT_THAT(WrapText("ab cd efgh", 450, width), ElementsAre("ab cd", "efgh"));
  EXPECT_THAT(WrapText("银行abcdef存款", 540, width), ElementsAre("银行", "abcdef", "存款"));
  EXPECT_THAT(WrapText("abcdefgh", 270, width), ElementsAre("abc", "def", "gh"));
  EXPECT_THAT(WrapText("字", 10, width), ElementsAre("字"));
  EXPECT_THAT(WrapText("  ", 10, width), ElementsAre(""));
  EXPECT_EQ(CutText("银行存款", 540, width).substr(0, 3), "银");
  EXPECT_TRUE(CutText("银行存款", 540, width).ends_with("…"));
}

TEST(GridPrint, AsTheGridShowsIt) {
  viewkit::FlexGrid grid("Vs");
  grid.SetCols(4);
  grid.SetFormatString("类别|编码|名称|金额");
  for (int col = 0; col < 4; ++col) grid.SetColWidth(col, 1500);
  grid.SetColWidth(1, 0);
  grid.SetColDataType(3, viewkit::ColumnType::kDouble);
  grid.SetColFormat(3, "#,##0.00");
  tavrix::host::RowSet rows(4);
  for (const char* cell : {"资产", "1001", "现金", "1234.5", "资产", "1002", "银行", "-2"}) {
    rows.AppendText(cell);
  }
  grid.LoadRows(std::move(rows));
  viewkit::SubtotalOptions options;
  options.group_on = 0;
  options.total_on = 3;
  options.bold = true;
  options.caption = "%s小计";
  grid.Subtotal(viewkit::SubtotalFunction::kSum, options);
  const PrintTable table = TableOfGrid(grid);
  ASSERT_EQ(table.columns.size(), 3u);
  EXPECT_EQ(table.columns[1].caption, "名称");
  EXPECT_TRUE(table.columns[2].amount);
  EXPECT_EQ(table.columns[2].align, PrintAlign::kRight);
  ASSERT_EQ(table.rows.size(), 3u);
  EXPECT_THAT(table.rows[0].cells, ElementsAre("资产", "现金", "1,234.50"));
  EXPECT_THAT(table.rows[2].cells, ElementsAre("资产小计", "", "1,232.50"));
  EXPECT_TRUE(table.rows[2].keep_with_previous && table.rows[2].bold);
  grid.SetRowHidden(1, true);
  EXPECT_EQ(TableOfGrid(grid).rows.size(), 2u);
}

}  // namespace
}  // namespace desk::views
