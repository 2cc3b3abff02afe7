#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "support/matchers.h"
#include "viewkit/grid_support.h"

namespace tavrix::viewkit {
namespace {

class GridOutline : public ::testing::Test {
 protected:
  FlexGrid grid{"Vs"};
};

TEST_F(GridOutline, LevelsComeFromAColumn) {
  Fill(grid, {{"1001", "1"}, {"100101", "2"}, {"x", ""}, {"y", "-5"}, {"z", "1,000,000"}});
  grid.SetOutlineFromColumn(1);
  EXPECT_TRUE(grid.IsSubtotal(1));
  EXPECT_EQ(grid.RowOutlineLevel(1), 0);
  EXPECT_EQ(grid.RowOutlineLevel(2), 1);
  EXPECT_EQ(grid.RowOutlineLevel(3), 0);
  EXPECT_EQ(grid.RowOutlineLevel(4), 0);
  EXPECT_EQ(grid.RowOutlineLevel(5), 32'767);
  CheckInvariants(grid);
}

TEST_F(GridOutline, OutlineShowsTheLevelsDownToOne) {
  FillOutline(grid, {0, 1, 2, 1, 0, 2, -1, 0});
  grid.Outline(1);
  EXPECT_THAT(ShownColumn(grid), ElementsAre("r0", "r1", "r3", "r4", "r5", "r7"));
  grid.Outline(0);
  EXPECT_THAT(ShownColumn(grid), ElementsAre("r0", "r4", "r7"));
  grid.SetCollapsed(1, false);  // what is below stays collapsed
  EXPECT_THAT(ShownColumn(grid), ElementsAre("r0", "r1", "r3", "r4", "r7"));
  grid.SetRowHidden(1, true);
  EXPECT_THAT(ShownColumn(grid), ElementsAre("r1", "r3", "r4", "r7"));
  CheckInvariants(grid);
  grid.Outline(-1);
  EXPECT_EQ(grid.ShownRows(), 7);
  grid.ClearOutline();
  EXPECT_FALSE(grid.IsSubtotal(2));
  EXPECT_EQ(grid.RowOutlineLevel(2), 0);
  EXPECT_TRUE(grid.RowHidden(1));
  CheckInvariants(grid);
}

TEST_F(GridOutline, TypingFindsWhatClosedNodesHide) {
  FillOutline(grid, {0, 1, 2, 0, 1});
  grid.Outline(0);
  grid.SetRowHidden(4, true);
  EXPECT_TRUE(grid.HandleTypeAhead("r2", 1000));
  EXPECT_THAT(ShownColumn(grid), ElementsAre("r0", "r1", "r2"));
  EXPECT_EQ(grid.Row(), 3);
  EXPECT_FALSE(grid.HandleTypeAhead("r4", 9000));  // its parent is hidden by hand
  EXPECT_EQ(grid.Row(), 3);
}

TEST_F(GridOutline, NodesAreMadeInAnyOrderOfCalls) {
  Fill(grid, {{"a"}, {"b"}});
  grid.SetRowOutlineLevel(2, 3);
  grid.SetIsSubtotal(1, true);
  grid.SetIsSubtotal(2, true);
  EXPECT_EQ(grid.RowOutlineLevel(2), 3);
  EXPECT_EQ(grid.ParentRow(2), 1);
  grid.SetCollapsed(1, true);
  grid.SetIsSubtotal(1, false);  // no node, so nothing it could hide
  EXPECT_TRUE(grid.IsShown(2));
  grid.SetCollapsed(1, true);
  EXPECT_FALSE(grid.IsCollapsed(1));
  grid.SetRowOutlineLevel(2, -4);
  EXPECT_EQ(grid.RowOutlineLevel(2), 0);
}

TEST_F(GridOutline, ANodeGoesWithAllBelowIt) {
  FillOutline(grid, {0, 1, 2, 1, 0});
  grid.SetRow(2);
  grid.RemoveNode(2);
  EXPECT_THAT(ColumnOf(grid), ElementsAre("r0", "r3", "r4"));
  EXPECT_EQ(grid.Row(), 2);
  grid.Outline(0);
  grid.SetRow(1);
  grid.RemoveNode(1);
  EXPECT_THAT(ColumnOf(grid), ElementsAre("r4"));
  EXPECT_EQ(grid.Row(), 1);
  grid.RemoveNode(1);
  EXPECT_LT(grid.Row(), grid.FixedRows());
  CheckInvariants(grid);
}

TEST_F(GridOutline, TheUsersCollapseTakesTheCurrentRowAlong) {
  FillOutline(grid, {0, 1, 2, 0});
  grid.SetRow(3);
  grid.Outline(0);
  EXPECT_EQ(grid.Row(), 3);  // a program's collapse leaves it
  grid.Outline(-1);
  GridListener listener(grid);
  grid.HandlePress(2, 0, true);
  EXPECT_TRUE(grid.IsCollapsed(2));
  EXPECT_EQ(grid.Row(), 2);
  EXPECT_THAT(listener.Take(),
              ElementsAre("content", "AfterCollapse 2", "RowColChange", "SelChange"));
  grid.HandlePress(1, 0, true);
  EXPECT_EQ(grid.Row(), 1);
  grid.HandlePress(1, 0, true);
  EXPECT_EQ(grid.Row(), 1);
  EXPECT_FALSE(grid.IsCollapsed(1));
  (void)listener.Take();
  grid.HandlePress(4, 0, true);  // nothing below it
  EXPECT_THAT(listener.Take(), IsEmpty());
}

/// Does at random what can be done to a grid, beside a plain table of the same texts.
class RandomGrid {
 public:
  explicit RandomGrid(unsigned seed) : random_(seed) {
    grid_.SetBounds({0, 0, 3000, 2000});
    grid_.SetSelectionMode(SelectionMode::kListBox);
    Texts rows;
    for (int i = 0; i < 40; ++i) rows.push_back({std::to_string(Below(30)), std::to_string(i)});
    Fill(grid_, rows);
    rows_ = rows;
  }

  void Step() {
    if (rows_.empty()) return Add();
    const int row = 1 + Below(static_cast<int>(rows_.size()));
    switch (Below(14)) {
      case 0:
        return Add();
      case 1:
        return Remove(row, row);
      case 2:
        return Below(3) == 0 ? Remove(row, grid_.LastRowOfNode(row)) : void();
      case 3:
        return Sort();
      case 4:
        return grid_.SetRowHidden(row, Below(2) == 0);
      case 5:
        return grid_.SetIsSubtotal(row, Below(4) != 0);
      case 6:
        return grid_.SetRowOutlineLevel(row, Below(4));
      case 7:
        return grid_.SetCollapsed(row, Below(2) == 0);
      case 8:
        return grid_.Outline(Below(5) - 1);
      case 9:
        return grid_.SetTopRow(row);
      case 10:
        return grid_.HandlePress(row, 0, false, {Below(2) == 0, Below(2) == 0, false});
      case 11:
        return grid_.SetRowHeight(row, Below(900));
      case 12:
        return static_cast<void>(grid_.HandleKey(static_cast<Key>(0x21 + Below(8))));
      default:
        return SetText(row);
    }
  }

  void Check() const {
    CheckInvariants(grid_);
    Texts rows;
    for (int row = 1; row < grid_.Rows(); ++row) {
      rows.push_back(
          {std::string(grid_.TextMatrix(row, 0)), std::string(grid_.TextMatrix(row, 1))});
    }
    EXPECT_EQ(rows, rows_);
  }

 private:
  int Below(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }

  void Add() {
    grid_.AddItem();
    rows_.push_back({"", ""});
  }
  void Remove(int first, int last) {
    if (first == last && !grid_.HasRowsBelow(first)) {
      grid_.RemoveItem(first);
    } else {
      last = grid_.LastRowOfNode(first);
      grid_.RemoveNode(first);
    }
    rows_.erase(rows_.begin() + first - 1, rows_.begin() + last);
  }
  void Sort() {
    const bool current = grid_.Row() >= 1;
    const auto marked = current ? rows_[static_cast<std::size_t>(grid_.Row() - 1)] : rows_.front();
    grid_.SortRows(0, SortOrder::kStringAscending, 1, grid_.Rows() - 1);
    std::stable_sort(rows_.begin(), rows_.end(),
                     [](const auto& a, const auto& b) { return a[0] < b[0]; });
    if (current) {
      EXPECT_EQ(grid_.TextMatrix(grid_.Row(), 1), marked[1]);
    }
  }
  void SetText(int row) {
    const std::string text(static_cast<std::size_t>(Below(12)), static_cast<char>('a' + Below(26)));
    grid_.SetTextMatrix(row, 0, text);
    rows_[static_cast<std::size_t>(row - 1)][0] = text;
  }

  std::mt19937 random_;
  FlexGrid grid_{"Vs"};
  Texts rows_;
};

TEST(GridModel, KeepsItsInvariantsWhateverIsDone) {
  for (unsigned seed = 1; seed <= 10 && !::testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    RandomGrid model(seed);
    for (int step = 0; step < 150 && !::testing::Test::HasFailure(); ++step) {
      model.Step();
      model.Check();
    }
  }
}

}  // namespace
}  // namespace tavrix::viewkit
