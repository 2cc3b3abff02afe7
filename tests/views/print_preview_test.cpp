#include "views/print_preview.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/controls.h"
#include "support/matchers.h"
#include "support/test_book.h"
#include "views/chart_print.h"

namespace desk::views {
namespace {

PrintTable Columns(int count, int rows) {
  PrintTable table{.title = "表"};
  table.columns.assign(static_cast<std::size_t>(count),
                       {.caption = "期末借方", .align = PrintAlign::kRight});
  table.rows.assign(
      static_cast<std::size_t>(rows),
      {.cells = std::vector<std::string>(static_cast<std::size_t>(count), "123,456.00")});
  return table;
}

class PrintPreviewTest : public testing::Test {
 protected:
  PrintPreview& Open(std::vector<PrintChoice> choices) {
    preview_.emplace(std::move(choices), PrintSetup{}, viewkit::PlainTextMeasure(),
                     PrintPreview::Calls{.changed = [this] { ++changes_; },
                                         .print = [this] { ++prints_; },
                                         .close = [this] { ++closes_; }});
    return *preview_;
  }
  PrintPreview& Open(int columns, int rows) {
    return Open({{"", [=] { return Columns(columns, rows); }}});
  }
  template <class Kind>
  Kind& Find(const std::string& name, int index = 0) {
    return tavrix::test::Find<Kind>(*preview_, name, index);
  }
  std::optional<PrintPreview> preview_;
  int changes_ = 0, prints_ = 0, closes_ = 0;
};

TEST_F(PrintPreviewTest, PagesByKeysAndButtons) {
  PrintPreview& preview = Open(3, 200);
  EXPECT_EQ(changes_, 0) << "whoever makes it cannot be told yet";
  const int last = preview.Layout().Pages() - 1;
  ASSERT_GT(last, 1);
  EXPECT_FALSE(Find<viewkit::CommandButton>("Cmd", 1).Enabled());
  Find<viewkit::CommandButton>("Cmd", 2).Click();
  EXPECT_EQ(preview.Page(), 1);
  EXPECT_TRUE(preview.UseKey(viewkit::Key::kEnd, {.control = true}));
  EXPECT_EQ(preview.Page(), last);
  EXPECT_FALSE(Find<viewkit::CommandButton>("Cmd", 2).Enabled());
  EXPECT_FALSE(preview.GoTo(last + 1));
  // Fewer pages on a larger paper: the last one of them is seen.
  Find<viewkit::ComboBox>("Combo", 1).SetText("A3");
  EXPECT_LT(preview.Layout().Pages() - 1, last);
  EXPECT_EQ(preview.Page(), preview.Layout().Pages() - 1);
  const int before = changes_;
  EXPECT_TRUE(preview.UseKey(viewkit::Key::kAdd, {}));
  EXPECT_NE(preview.ZoomLevel(), PrintPreview::Zoom::kWholePage);
  EXPECT_EQ(changes_, before + 1);
  EXPECT_TRUE(preview.UseKey(viewkit::Key{'P'}, {.control = true}));
  EXPECT_TRUE(preview.UseKey(viewkit::Key::kEscape, {}));
  EXPECT_EQ(prints_ + closes_, 2);
}

TEST_F(PrintPreviewTest, AWideTableLiesAcrossUnlessTheUserTurnsIt) {
  EXPECT_FALSE(Open(4, 3).Setup().landscape);
  PrintPreview& preview = Open(14, 3);
  EXPECT_TRUE(preview.Setup().landscape);
  EXPECT_GT(preview.Layout().PaperUsed().width, preview.Layout().PaperUsed().height);
  const int across = preview.Layout().Size();
  Find<viewkit::CheckBox>("Chk").Click();
  EXPECT_FALSE(preview.Setup().landscape);
  EXPECT_LT(preview.Layout().Size(), across);
}

TEST_F(PrintPreviewTest, AnotherChoiceIsAnotherTable) {
  PrintPreview& preview =
      Open({{"一", [] { return Columns(2, 300); }}, {"二", [] { return Columns(2, 1); }}});
  preview.GoTo(3);
  Find<viewkit::ComboBox>("Combo", 0).SetText("二");
  EXPECT_EQ(preview.Table().rows.size(), 1u);
  EXPECT_EQ(preview.PositionText(), "第 1 页 共 1 页");
}

TEST(PrintPaper, WhatWasSeenIsPrintedWhereThePrinterCan) {
  const PrintSetup a4{.landscape = true};
  const Paper seen = PaperOf(a4);
  // Reaches farther than the margins, and rounds.
  const Paper fine{
      .width = 16840, .height = 11904, .left = 200, .top = 200, .right = 0, .bottom = 9};
  const PrintTable table = Columns(3, 300);
  const auto starts = [&](const Paper& paper) {
    const PrintLayout layout(table, paper, viewkit::PlainTextMeasure());
    std::vector<std::size_t> rows;
    for (int page = 0; page <= layout.Pages(); ++page) rows.push_back(layout.FirstRow(page));
    return rows;
  };
  EXPECT_EQ(starts(PaperForPrinter(a4, fine)), starts(seen));
  EXPECT_EQ(PaperForPrinter(a4, fine).left, seen.left);
  Paper coarse = fine;
  coarse.bottom = 1500;
  EXPECT_EQ(PaperForPrinter(a4, coarse).bottom, 1500);
  EXPECT_EQ(PaperForPrinter(a4, coarse).top, seen.top);
  const Paper other = PaperForPrinter({}, fine);
  EXPECT_EQ(other.width, fine.width) << "the user has turned it in the printer's dialog";
  EXPECT_EQ(other.left, seen.left) << "with the usual margins";
}

TEST(ChartPrint, OnlyColumnsThatAnAccountHas) {
  const book::Book book = tavrix::test::MakeBook(
      {{.code = "1001", .name = "现金", .category = "资产"},
       {.code = "1122", .name = "应收", .category = "资产", .customer = true, .department = true},
       {.code = "112201", .name = "甲", .category = "资产", .closed = true},
       {.code = "2202", .name = "应付", .category = "负债", .debit = false}});
  const PrintTable all = ChartTable(book.GetSession());
  std::vector<std::string> captions;
  for (const PrintColumn& column : all.columns) captions.push_back(column.caption);
  EXPECT_THAT(captions, ElementsAre("科目编码", "科目名称", "类别", "方向", "辅助核算", "状态"));
  ASSERT_EQ(all.rows.size(), 4u);
  EXPECT_THAT(all.rows[1].cells, ElementsAre("1122", "应收", "资产", "借", "部门、客户", ""));
  EXPECT_THAT(all.rows[2].cells, ElementsAre("112201", "甲", "资产", "借", "", "封存"));
  EXPECT_EQ(all.rows[2].level, 1);
  const PrintTable few = ChartTable(book.GetSession(), {"2202", "9999", "1001"});
  ASSERT_EQ(few.rows.size(), 2u);
  EXPECT_THAT(few.rows[0].cells, ElementsAre("2202", "应付", "负债", "贷"));
}

}  // namespace
}  // namespace desk::views
