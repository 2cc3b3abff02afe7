// What of a grid is painted, and how it looks.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/matchers.h"
#include "windows/grid_window.h"

namespace tavrix::viewkit::win32 {
namespace {

using test::Picture;

TEST_F(GridWindowTest, OnlyTheRowsWhoseSelectionChangedArePainted) {
  grid.SetRow(2);
  const RECT damage = Damage([&] { grid.SetRow(4); });
  EXPECT_EQ(damage.top, Cell(2, 0).top);
  EXPECT_EQ(damage.bottom, Cell(4, 0).bottom);
  const RECT text = Damage([&] { grid.SetTextMatrix(3, 1, "现金"); });
  EXPECT_EQ(text.top, Cell(3, 0).top);
  EXPECT_EQ(text.bottom, Cell(3, 0).bottom);
  const RECT nothing = Damage([&] { grid.SetTextMatrix(3, 1, "现金"); });
  EXPECT_TRUE(IsRectEmpty(&nothing));
}

TEST_F(GridWindowTest, ScrollingByARowPaintsOnlyWhatComesIn) {
  Load(100, 4);
  const int height = RowPixels(grid, Scale{view->Dpi()}, 1);
  const RECT damage = Damage([&] { grid.SetTopRow(2); });
  RECT client{};
  GetClientRect(Window(), &client);
  EXPECT_GE(damage.top, client.bottom - 2 * height);
  EXPECT_EQ(damage.bottom, client.bottom);
}

TEST_F(GridWindowTest, WhatIsScrolledLooksAsIfPaintedAnew) {
  Load(100, 4);
  grid.SetFocus();
  for (const bool merged : {false, true}) {
    grid.SetMergeCol(1, merged);
    for (const int top : {2, 7, 5, 300, 1, 40}) {
      grid.SetTopRow(top);
      grid.SetRow(top + 3);
      UpdateWindow(Window());
      const Picture scrolled(Window());
      InvalidateRect(Window(), nullptr, FALSE);
      UpdateWindow(Window());
      EXPECT_EQ(Picture(Window()), scrolled) << "top row " << top;
    }
  }
}

TEST_F(GridWindowTest, EqualNeighboursOfAMergedColumnArePaintedAsOneCell) {
  const auto line_below = [&](int row) {
    UpdateWindow(Window());
    const RECT cell = Cell(row, 1);
    const int x = static_cast<int>(cell.left + cell.right) / 2;
    const Picture picture(Window());
    return picture.At(x, static_cast<int>(cell.bottom) - 1) !=
           picture.At(x, static_cast<int>(cell.bottom) - 2);
  };
  EXPECT_TRUE(line_below(2));
  grid.SetMergeCol(1, true);  // the four rows below each head have one name
  EXPECT_FALSE(line_below(2));
  EXPECT_TRUE(line_below(5));
  grid.SetRow(2);
  UpdateWindow(Window());
  EXPECT_EQ(Picture(Window()).Count(Cell(2, 1), 0x00F0F0), 0);  // a part only is selected
}

TEST_F(GridWindowTest, RowsOfTotalsStandInTheirColours) {
  SubtotalOptions options;
  options.group_on = 1;
  options.total_on = 0;
  options.fore = 128;
  options.bold = true;
  options.caption = "%s小计，比这一列宽得多的一行文字";
  grid.SetColWidth(1, 1000);
  grid.Subtotal(SubtotalFunction::kSum, options);
  options = {};
  options.back = 0xFFFF80;
  grid.Subtotal(SubtotalFunction::kSum, options);
  grid.SetColWidth(0, 3000);
  grid.SetCols(4);
  UpdateWindow(Window());
  const Picture picture(Window());
  EXPECT_GT(picture.Count(Cell(2, 0), 128), 10);
  EXPECT_GT(picture.Count(Cell(2, 3), 128), 10);  // the caption runs on
  EXPECT_EQ(picture.Count(Cell(3, 1), 128), 0);
  const int last = grid.Rows() - 1;
  if (const Span* row = Layout().RowOf(last); row != nullptr) {
    EXPECT_GT(picture.Count(Cell(last, 1), 0xFFFF80), 500);
  }
}

TEST_F(GridWindowTest, RowsHiddenOneByOneAreArrangedOnce) {
  Load(100, 4);
  for (int row = 1; row < 400; ++row) grid.SetRowHidden(row, true);
  EXPECT_EQ(Bar(SB_VERT).nMax, 499);
  UpdateWindow(Window());
  EXPECT_EQ(Bar(SB_VERT).nMax, 100);
  for (int row = 400; row < 490; ++row) grid.SetRowHidden(row, true);
  grid.SetTopRow(495);  // whoever scrolls needs to know what is seen
  EXPECT_EQ(Bar(SB_VERT).nMax, 10);
}

TEST_F(GridWindowTest, SelectedRowsStandInTheColoursOfTheLook) {
  grid.SetRow(2);
  UpdateWindow(Window());
  const Picture picture(Window());
  EXPECT_GT(picture.Count(Cell(2, 1), 0x00F0F0), 500);
  EXPECT_GT(picture.Count(Cell(2, 1), 0xC00000), 10);
  EXPECT_EQ(picture.Count(Cell(3, 1), 0x00F0F0), 0);
}

}  // namespace
}  // namespace tavrix::viewkit::win32
