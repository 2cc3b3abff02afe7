#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "support/matchers.h"
#include "viewkit/grid_support.h"

namespace tavrix::viewkit {
namespace {

constexpr int kRow = 300;

class GridScroll : public ::testing::Test {
 protected:
  void SetUp() override {
    Texts rows;
    for (int row = 0; row < 20; ++row) rows.push_back({"a", "b", "c", "d"});
    Fill(grid, rows);
    grid.SetRowHeightMin(kRow);
    grid.SetBounds({0, 0, 2500, kRow * 6 - 1});  // the header, four rows and most of a fifth
    for (int col = 0; col < 4; ++col) grid.SetColWidth(col, 1000);
  }
  FlexGrid grid{"Vs"};
};

TEST_F(GridScroll, TheTopRowLeavesTheLastPageFull) {
  EXPECT_EQ(grid.TopRow(), 1);
  grid.SetTopRow(5);
  EXPECT_EQ(grid.TopRow(), 5);
  EXPECT_FALSE(grid.IsInView(4));
  EXPECT_TRUE(grid.IsInView(8));
  EXPECT_FALSE(grid.IsInView(9));  // cut off
  grid.SetTopRow(20);
  EXPECT_EQ(grid.TopRow(), 17);
  grid.SetTopRow(-3);
  EXPECT_EQ(grid.TopRow(), 1);
  grid.SetRowHeight(20, 3 * kRow);
  grid.SetTopRow(1'000'000);
  EXPECT_EQ(grid.TopRow(), 19);
  grid.SetViewport(2500, 40 * kRow);
  EXPECT_EQ(grid.TopRow(), 1);
  grid.SetLeftCol(9);
  EXPECT_EQ(grid.LeftCol(), 2);
  grid.SetViewport(3000, 40 * kRow);  // wider, as high as before
  EXPECT_EQ(grid.LeftCol(), 1);
  CheckInvariants(grid);
}

TEST_F(GridScroll, AHiddenRowGivesWayInTheDirectionOfTravel) {
  for (const int row : {1, 6, 7, 8}) grid.SetRowHidden(row, true);
  grid.SetTopRow(7);
  EXPECT_EQ(grid.TopRow(), 9);
  grid.SetTopRow(7);
  EXPECT_EQ(grid.TopRow(), 5);
  grid.SetTopRow(6);
  EXPECT_EQ(grid.TopRow(), 9);
  grid.SetTopRow(1);  // nothing above
  EXPECT_EQ(grid.TopRow(), 2);
}

TEST_F(GridScroll, FollowsWhatIsShown) {
  GridListener listener(grid);
  grid.SetTopRow(10);
  grid.SetRowHidden(10, true);
  EXPECT_EQ(grid.TopRow(), 11);
  grid.SetRows(8);
  EXPECT_EQ(grid.TopRow(), 4);
  EXPECT_THAT(listener.Take(),
              ElementsAre("scroll", "AfterScroll", "content", "content", "AfterScroll"));
  grid.SetTopRow(2);
  grid.RemoveItem(1);
  EXPECT_EQ(grid.TopRow(), 1);
  grid.SetRows(1);
  EXPECT_EQ(grid.TopRow(), 1);
}

TEST_F(GridScroll, ShowsARowWithLeastMovement) {
  grid.ShowRow(4);
  EXPECT_EQ(grid.TopRow(), 1);
  grid.ShowRow(9);
  EXPECT_EQ(grid.TopRow(), 6);
  grid.ShowRow(7);
  EXPECT_EQ(grid.TopRow(), 6);
  grid.ShowRow(2);
  EXPECT_EQ(grid.TopRow(), 2);
  grid.SetRowHidden(15, true);
  grid.ShowRow(15);
  EXPECT_EQ(grid.TopRow(), 2);
}

TEST_F(GridScroll, WithoutAHeightAnyRowMayBeTheTop) {
  grid.SetBounds({});
  grid.SetTopRow(20);
  EXPECT_EQ(grid.TopRow(), 20);
  EXPECT_FALSE(grid.IsInView(20));
}

TEST_F(GridScroll, RowHeightsAreBoundedBelow) {
  EXPECT_EQ(grid.RowHeight(1), kRow);
  grid.SetRowHeight(1, 10);
  EXPECT_EQ(grid.RowHeight(1), kRow);
  grid.SetRowHeight(0, 500);
  EXPECT_EQ(grid.RowHeight(0), 500);
  grid.SetRowHeight(0, 0);
  EXPECT_EQ(grid.RowHeight(0), kRow);
}

TEST_F(GridScroll, ColumnsScrollPastTheStillOnes) {
  grid.SetLeftCol(9);
  EXPECT_EQ(grid.LeftCol(), 2);
  grid.SetFrozenCols(1);
  grid.SetLeftCol(9);
  EXPECT_EQ(grid.LeftCol(), 3);  // 1,500 twips are left beside the frozen one
  grid.SetLeftCol(0);
  EXPECT_EQ(grid.LeftCol(), 1);
  grid.SetColHidden(1, true);
  EXPECT_EQ(grid.LeftCol(), 2);
  grid.HandleKey(Key::kRight);
  EXPECT_EQ(grid.LeftCol(), 3);
  grid.HandleKey(Key::kLeft);
  EXPECT_EQ(grid.LeftCol(), 2);
  grid.SetFixedCols(9);
  EXPECT_EQ(grid.FixedCols(), 4);
  EXPECT_EQ(grid.FrozenCols(), 0);
  for (int col = 0; col < 4; ++col) grid.SetColWidth(col, std::numeric_limits<int>::max());
  EXPECT_EQ(grid.LeftCol(), 3);  // there is room for none, and the widths add up all the same
}

}  // namespace
}  // namespace tavrix::viewkit
