#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

#include "host/grid_update.h"
#include "support/matchers.h"
#include "viewkit/grid_support.h"

namespace tavrix::viewkit {
namespace {

constexpr Modifiers kPlain{};
constexpr Modifiers kShift{.shift = true};
constexpr Modifiers kControl{.control = true};
constexpr Modifiers kBoth{.shift = true, .control = true};

class GridSelection : public ::testing::Test {
 protected:
  void SetUp() override {
    Fill(grid, {{"a"}, {"b"}, {"c"}, {"d"}, {"e"}, {"f"}});
    grid.SetBounds({0, 0, 3000, 255 * 4});  // the header and three rows
  }
  FlexGrid grid{"Vs"};
};

TEST_F(GridSelection, OneRowAtATime) {
  grid.SetSelectionMode(SelectionMode::kByRow);
  grid.SetAllowSelection(false);
  grid.SetRow(2);
  grid.HandlePress(4, 0, false, kShift);
  EXPECT_THAT(SelectionOf(grid), ElementsAre(4));
  grid.HandleDrag(6);
  EXPECT_EQ(grid.Row(), 4);
  grid.SetSelected(5, true);
  EXPECT_EQ(grid.Row(), 5);
  grid.SetSelected(5, false);
  EXPECT_LT(grid.Row(), grid.FixedRows());
  grid.SetRow(3);
  grid.SetRow(-1);
  EXPECT_EQ(grid.Row(), -1);
  EXPECT_EQ(grid.SelectedRows(), 0);
}

TEST_F(GridSelection, ControlASelectsWhatIsSeenWhereSeveralRowsMayBe) {
  grid.SetSelectionMode(SelectionMode::kByRow);
  grid.SetAllowSelection(false);
  grid.SetRow(2);
  EXPECT_FALSE(grid.HandleKey(Key::kA, kControl));
  EXPECT_THAT(SelectionOf(grid), ElementsAre(2));
  grid.SetSelectionMode(SelectionMode::kListBox);
  grid.SetRowHidden(3, true);
  EXPECT_TRUE(grid.HandleKey(Key::kA, kControl));
  EXPECT_THAT(SelectionOf(grid), ElementsAre(1, 2, 4, 5, 6));
  EXPECT_EQ(grid.Row(), 2);
  grid.HandleKey(Key::kDown, kShift);  // from where the selection began
  EXPECT_THAT(SelectionOf(grid), ElementsAre(2, 4));
  grid.SetRows(grid.FixedRows());
  EXPECT_TRUE(grid.HandleKey(Key::kA, kControl));
  EXPECT_THAT(SelectionOf(grid), IsEmpty());
}

TEST_F(GridSelection, ListBoxByMouse) {
  grid.SetSelectionMode(SelectionMode::kListBox);
  grid.HandlePress(2, 0, false);
  grid.HandlePress(5, 0, false, kControl);
  EXPECT_THAT(SelectionOf(grid), ElementsAre(2, 5));
  grid.HandlePress(2, 0, false, kControl);
  EXPECT_THAT(SelectionOf(grid), ElementsAre(5));
  grid.SetRowHidden(3, true);  // what is not seen is not taken along
  grid.HandlePress(4, 0, false, kShift);
  EXPECT_THAT(SelectionOf(grid), ElementsAre(2, 4));  // from where the last click was
  grid.HandlePress(6, 0, false, kControl);
  grid.HandlePress(5, 0, false, kBoth);
  EXPECT_THAT(SelectionOf(grid), ElementsAre(2, 4, 5, 6));
  grid.HandlePress(1, 0, false);
  grid.HandleDrag(2);
  grid.HandleDrag(4);
  EXPECT_THAT(SelectionOf(grid), ElementsAre(1, 2, 4));
  grid.HandleDrag(1);
  EXPECT_THAT(SelectionOf(grid), ElementsAre(1));
  CheckInvariants(grid);
}

TEST_F(GridSelection, ListBoxByKeys) {
  grid.SetSelectionMode(SelectionMode::kListBox);
  EXPECT_TRUE(grid.HandleKey(Key::kDown));
  EXPECT_EQ(grid.Row(), 1);
  grid.HandleKey(Key::kDown, kShift);
  grid.HandleKey(Key::kDown, kShift);
  EXPECT_THAT(SelectionOf(grid), ElementsAre(1, 2, 3));
  grid.HandleKey(Key::kUp, kShift);
  EXPECT_THAT(SelectionOf(grid), ElementsAre(1, 2));
  grid.HandleKey(Key::kEnd, kControl);
  EXPECT_EQ(grid.Row(), 6);
  EXPECT_THAT(SelectionOf(grid), ElementsAre(1, 2));
  EXPECT_TRUE(grid.HandleKey(Key::kSpace, kControl));
  EXPECT_THAT(SelectionOf(grid), ElementsAre(1, 2, 6));
  grid.HandleKey(Key::kSpace, kControl);
  EXPECT_THAT(SelectionOf(grid), ElementsAre(1, 2));
  grid.HandleKey(Key::kSpace);
  EXPECT_THAT(SelectionOf(grid), ElementsAre(6));
  grid.HandleKey(Key::kHome, kShift);
  EXPECT_EQ(grid.SelectedRows(), 6);
  grid.HandlePress(2, 0, false);
  grid.HandleKey(Key::kDown, kControl);
  grid.HandleKey(Key::kDown, kControl);
  grid.HandleKey(Key::kSpace, kShift);
  EXPECT_THAT(SelectionOf(grid), ElementsAre(2, 3, 4));
  grid.HandlePress(6, 0, false, kControl);
  grid.HandleKey(Key::kUp, kBoth);
  EXPECT_THAT(SelectionOf(grid), ElementsAre(2, 3, 4, 5, 6));
  for (const Key node_key : {Key::kAdd, Key::kSubtract, Key::kMultiply}) {
    EXPECT_FALSE(grid.HandleKey(node_key)) << "no node";
  }
  EXPECT_FALSE(grid.HandleKey(Key::kEnter));
  EXPECT_FALSE(grid.HandleKey(Key::kDown, {.alt = true}));
}

TEST_F(GridSelection, RangesBeginAtTheirRowWhereverItGoes) {
  grid.SetSelectionMode(SelectionMode::kListBox);
  grid.HandlePress(2, 0, false);
  grid.SortRows(0, SortOrder::kStringDescending, 1, 6);
  grid.HandlePress(6, 0, false, kShift);
  EXPECT_THAT(SelectionOf(grid), ElementsAre(5, 6));
  grid.HandlePress(3, 0, false, kShift);
  EXPECT_THAT(SelectionOf(grid), ElementsAre(3, 4, 5));
  grid.RemoveItem(4);
  EXPECT_THAT(SelectionOf(grid), ElementsAre(3, 4));
  grid.RemoveItem(4);  // the row that the range began at
  grid.HandleKey(Key::kUp, kShift);
  grid.HandleKey(Key::kUp, kShift);
  EXPECT_THAT(SelectionOf(grid), ElementsAre(1, 2, 3));
}

TEST_F(GridSelection, KeysMoveByShownRowsAndPages) {
  grid.SetRowHidden(2, true);
  grid.HandleKey(Key::kHome);
  grid.HandleKey(Key::kDown);
  EXPECT_EQ(grid.Row(), 3);
  grid.HandleKey(Key::kPageDown);
  EXPECT_EQ(grid.Row(), 5);
  EXPECT_TRUE(grid.IsInView(5));
  EXPECT_EQ(grid.TopRow(), 3);
  grid.HandleKey(Key::kPageDown);
  grid.HandleKey(Key::kDown);
  EXPECT_EQ(grid.Row(), 6);
  grid.HandleKey(Key::kPageUp);
  grid.HandleKey(Key::kPageUp);
  EXPECT_EQ(grid.Row(), 1);
  EXPECT_EQ(grid.TopRow(), 1);
  grid.SetEnabled(false);
  EXPECT_FALSE(grid.HandleKey(Key::kDown));
}

/// A filter or a closed node may have hidden the current row: keys go on from its place.
TEST_F(GridSelection, KeysGoOnFromAHiddenRow) {
  const auto moves = [&](Key key) {
    grid.SetRow(3);
    grid.HandleKey(key);
    return grid.Row();
  };
  grid.SetRowHidden(3, true);
  EXPECT_EQ(moves(Key::kDown), 4);
  EXPECT_EQ(moves(Key::kUp), 2);
  EXPECT_EQ(moves(Key::kPageDown), 5) << "a page of three rows, less one";
  EXPECT_EQ(moves(Key::kPageUp), 1);
  for (const int row : {4, 5, 6}) grid.SetRowHidden(row, true);
  EXPECT_EQ(moves(Key::kDown), 3) << "nothing comes after it";
  EXPECT_EQ(moves(Key::kPageDown), 3);
  for (const int row : {1, 2}) grid.SetRowHidden(row, true);
  grid.SetRowHidden(5, false);
  EXPECT_EQ(moves(Key::kUp), 3) << "nothing comes before it";
  EXPECT_EQ(moves(Key::kPageUp), 3);
  grid.SetRow(0);
  grid.HandleKey(Key::kUp);
  EXPECT_EQ(grid.Row(), 0) << "nor before the first row";
}

TEST_F(GridSelection, TheOtherChosenRowsOutliveTheCurrentOne) {
  grid.SetSelectionMode(SelectionMode::kListBox);
  for (const int row : {2, 3, 5}) grid.HandlePress(row, 0, false, kControl);
  grid.RemoveItem(5);
  EXPECT_EQ(grid.Row(), 5);
  EXPECT_THAT(SelectionOf(grid), ElementsAre(2, 3));
  grid.HandlePress(2, 0, false);
  grid.RemoveItem(2);
  EXPECT_THAT(SelectionOf(grid), ElementsAre(2)) << "the only one gives way to the next";
  EXPECT_EQ(grid.Row(), 2);
}

TEST_F(GridSelection, ArrowsWalkTheTree) {
  FillOutline(grid, {0, 1, 2, 0});
  FlexGrid::Look look;
  look.outline_bar = 5;
  grid.SetLook(look);
  grid.Outline(0);
  grid.SetRow(1);
  grid.HandleKey(Key::kRight);
  EXPECT_EQ(grid.Row(), 1);
  grid.HandleKey(Key::kRight);
  EXPECT_EQ(grid.Row(), 2);
  grid.HandleKey(Key::kLeft);
  EXPECT_EQ(grid.Row(), 1);
  grid.HandleKey(Key::kLeft);
  EXPECT_TRUE(grid.IsCollapsed(1));
  EXPECT_TRUE(grid.HandleKey(Key::kMultiply));
  EXPECT_EQ(grid.ShownRows(), 4);
  grid.SetRow(3);
  grid.SetCollapsed(2, true);  // whoever closes the node
  EXPECT_EQ(grid.Row(), 2);
  grid.SetRow(3);
  grid.SetCollapsed(2, true);
  EXPECT_EQ(grid.Row(), 3) << "it was closed";
  grid.SetCollapsed(2, false);
  grid.SetRow(2);
  EXPECT_TRUE(grid.HandleKey(Key::kSubtract));
  EXPECT_FALSE(grid.IsShown(3));
  EXPECT_TRUE(grid.HandleKey(Key::kAdd));
  EXPECT_TRUE(grid.IsShown(3));
  CheckInvariants(grid);
}

TEST_F(GridSelection, TypingSeeksTheOutlineColumn) {
  Fill(grid, {{"1001"}, {"1002"}, {"Bank"}, {"库存"}, {"bond"}});
  grid.SetRow(1);
  EXPECT_TRUE(grid.HandleTypeAhead("b", 1000));
  EXPECT_EQ(grid.Row(), 3);
  EXPECT_TRUE(grid.HandleTypeAhead("o", 1500));
  EXPECT_EQ(grid.Row(), 5);
  EXPECT_FALSE(grid.HandleTypeAhead("x", 1600));
  EXPECT_TRUE(grid.HandleTypeAhead("1", 3000));  // after a pause from the start, and around
  EXPECT_EQ(grid.Row(), 1);
  EXPECT_TRUE(grid.HandleTypeAhead("1", 3100));  // the same again: the next one
  EXPECT_EQ(grid.Row(), 2);
  EXPECT_TRUE(grid.HandleTypeAhead("库", 9000));
  EXPECT_EQ(grid.Row(), 4);
  EXPECT_FALSE(grid.HandleTypeAhead("", 20000));
  FillOutline(grid, {0, 1, 0});
  grid.Outline(0);
  for (const int hidden : {1, 2}) {
    grid.SetRowHidden(hidden, true);
    EXPECT_FALSE(grid.HandleTypeAhead("r1", 30000 * hidden))
        << "no node opens for what a filter hides";
    grid.SetRowHidden(hidden, false);
  }
  EXPECT_TRUE(grid.IsCollapsed(1));
}

TEST_F(GridSelection, ADisabledGridAnswersNobody) {
  grid.SetSelectionMode(SelectionMode::kListBox);
  int clicks = 0;
  grid.DoubleClick.Add([&] { ++clicks; });
  grid.SetRow(2);
  grid.SetEnabled(false);
  grid.HandlePress(4, 0, false);
  grid.HandleDrag(4);
  grid.HandleDoubleClick(4);
  EXPECT_FALSE(grid.HandleTypeAhead("e", 0) || grid.HandleKey(Key::kSpace, kControl));
  EXPECT_THAT(SelectionOf(grid), ElementsAre(2));
  EXPECT_EQ(clicks, 0);
}

TEST_F(GridSelection, ClipTextHoldsTheShownColumnsOfTheSelectedRows) {
  Fill(grid, {{"a", "1", "x"}, {"b\tc", "2", "y"}, {"d", "3", "z"}});
  grid.SetColHidden(2, true);
  grid.SetColFormat(1, "0.0");
  grid.SetSelectionMode(SelectionMode::kListBox);
  grid.SetSelected(2, true);
  grid.SetSelected(3, true);
  EXPECT_EQ(grid.ClipText(), "b c\t2.0\r\nd\t3.0\r\n");
}

TEST_F(GridSelection, TellsEachChangeOnceAndNoChangeNever) {
  GridListener listener(grid);
  grid.SetRow(2);
  EXPECT_THAT(listener.Take(), ElementsAre("selection", "RowColChange", "SelChange"));
  grid.SetRow(2);
  grid.SetTextMatrix(2, 0, "b");
  grid.SetRowHidden(2, false);
  grid.SetColWidth(0, grid.ColWidth(0));
  grid.Outline(-1);
  EXPECT_THAT(listener.Take(), IsEmpty());
  grid.SetTextMatrix(3, 0, "new");
  EXPECT_THAT(listener.Take(), ElementsAre("rows 3-3"));
  grid.SetColWidth(0, 77);
  EXPECT_THAT(listener.Take(), ElementsAre("columns"));
  grid.SetTopRow(3);
  EXPECT_THAT(listener.Take(), ElementsAre("scroll", "AfterScroll"));
  grid.HandleDoubleClick(0);
  grid.HandleDoubleClick(3);
  EXPECT_THAT(listener.Take(), ElementsAre("DoubleClick"));
}

TEST_F(GridSelection, AnUpdateTellsEverythingAtItsEnd) {
  GridListener listener(grid);
  grid.BeginUpdate();
  grid.SetTextMatrix(4, 0, "x");
  grid.BeginUpdate();
  grid.SetRow(5);
  grid.SetTextMatrix(2, 0, "y");
  grid.EndUpdate();
  EXPECT_THAT(listener.Take(), IsEmpty());
  grid.EndUpdate();
  EXPECT_THAT(listener.Take(), ElementsAre("rows 2-4", "selection", "RowColChange", "SelChange"));
  grid.EndUpdate();  // one too many is harmless
  grid.BeginUpdate();
  grid.SetRow(6);
  grid.SetRow(5);
  grid.EndUpdate();
  EXPECT_THAT(listener.Take(), ::testing::Not(::testing::Contains("RowColChange")));
  EXPECT_THROW(grid.SetTextMatrix(99, 0, ""), std::out_of_range);
  grid.SetRow(1);
  EXPECT_THAT(listener.Take(), ::testing::Contains("RowColChange"));
}

TEST_F(GridSelection, ListenersMayReloadOrDestroyTheGrid) {
  grid.RowColChange.Add([this] {
    if (grid.Row() == 3) Fill(grid, {{"other"}});
  });
  grid.HandlePress(3, 0, false);
  EXPECT_THAT(ColumnOf(grid), ElementsAre("other"));
  EXPECT_EQ(grid.Row(), 0);
  CheckInvariants(grid);

  auto mortal = std::make_unique<FlexGrid>("Vs");
  Fill(*mortal, {{"a"}, {"b"}});
  bool later = false;
  mortal->RowColChange.Add([&] { mortal.reset(); });
  mortal->SelChange.Add([&] { later = true; });
  mortal->HandlePress(2, 0, false);
  EXPECT_EQ(mortal, nullptr);
  EXPECT_FALSE(later);

  mortal = std::make_unique<FlexGrid>("Vs");
  FillOutline(*mortal, {0, 1, 2, 2});
  mortal->Outline(0);
  mortal->AfterCollapse.Add([&](int) { mortal.reset(); });
  EXPECT_TRUE(mortal->HandleTypeAhead("r2", 1000)) << "which opens the nodes above";
  EXPECT_EQ(mortal, nullptr);
}

TEST_F(GridSelection, WhatAListenerThrowsReachesWhoeverChangedTheGrid) {
  grid.RowColChange.Add([] { throw std::runtime_error("no"); });
  const auto select = [&](int row) {
    const host::GridUpdate update(grid);
    grid.SetRow(row);
  };
  EXPECT_THROW(select(2), std::runtime_error);
  EXPECT_EQ(grid.Row(), 2);
  const auto fail = [&] {
    const host::GridUpdate update(grid);
    grid.SetRow(3);
    throw std::out_of_range("first");
  };
  EXPECT_THROW(fail(), std::out_of_range) << "the failure that came first";
  GridListener listener(grid);
  grid.SetTextMatrix(1, 0, "x");
  EXPECT_THAT(listener.Take(), ElementsAre("rows 1-1")) << "the update has ended all the same";
}

}  // namespace
}  // namespace tavrix::viewkit
