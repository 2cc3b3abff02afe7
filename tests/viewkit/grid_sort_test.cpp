#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/matchers.h"
#include "viewkit/grid_support.h"

namespace tavrix::viewkit {
namespace {

std::vector<std::string> Sorted(const std::vector<std::string>& texts, SortOrder order,
                                ColumnType type = ColumnType::kEmpty) {
  FlexGrid grid("Vs");
  Texts rows;
  for (const auto& text : texts) rows.push_back({text});
  Fill(grid, rows);
  grid.SetColDataType(0, type);
  grid.SetSort(order);
  EXPECT_EQ(grid.Sort(), order);
  return ColumnOf(grid);
}

TEST(GridSort, OrdersTextsByCodeUnitsOrWithoutCase) {
  EXPECT_THAT(Sorted({"1002", "100101", "1001", ""}, SortOrder::kStringAscending),
              ElementsAre("", "1001", "100101", "1002"));
  EXPECT_THAT(Sorted({"b", "B", "a"}, SortOrder::kStringAscending), ElementsAre("B", "a", "b"));
  EXPECT_THAT(Sorted({"\xEF\xBC\xA1", "\xF0\xA0\x80\x80", "z"}, SortOrder::kStringAscending),
              ElementsAre("z", "\xF0\xA0\x80\x80", "\xEF\xBC\xA1"));
  EXPECT_THAT(Sorted({"b", "C", "B", "a"}, SortOrder::kStringNoCaseDescending),
              ElementsAre("C", "b", "B", "a"));
}

/// What brings another order ends the one that was asked for, so that it can be asked for again.
TEST(GridSort, TheOrderStandsUntilAnotherComes) {
  FlexGrid grid("Vs");
  Fill(grid, {{"a", "2"}, {"b", "1"}});
  grid.SetSort(SortOrder::kStringDescending);
  grid.SetCol(1);
  grid.SetSort(SortOrder::kStringDescending);
  EXPECT_THAT(ColumnOf(grid), ElementsAre("a", "b")) << "by the column that is current now";
  grid.SortRows(0, SortOrder::kStringDescending, 1, 2);
  EXPECT_EQ(grid.Sort(), SortOrder::kNone);
  grid.SetSort(SortOrder::kStringAscending);
  Fill(grid, {{"a", "2"}, {"b", "1"}});
  EXPECT_EQ(grid.Sort(), SortOrder::kNone);
}

TEST(GridSort, OrdersNumbersByValueAndMixedCellsNumbersFirst) {
  EXPECT_THAT(Sorted({"10", "9", "-1", "1,000", "x"}, SortOrder::kNumericAscending),
              ElementsAre("-1", "x", "9", "10", "1,000"));
  EXPECT_THAT(Sorted({"b", "10", "A", "9", ""}, SortOrder::kGenericAscending),
              ElementsAre("9", "10", "", "A", "b"));
  EXPECT_THAT(Sorted({"b", "10", "A", "9"}, SortOrder::kGenericDescending),
              ElementsAre("b", "A", "10", "9"));
  EXPECT_THAT(Sorted({"b", "a"}, SortOrder::kNone), ElementsAre("b", "a"));
  // The generic orders go by the column's type.
  EXPECT_THAT(Sorted({"10", "9"}, SortOrder::kGenericAscending, ColumnType::kString),
              ElementsAre("10", "9"));
  EXPECT_THAT(Sorted({"2024/10/1", "x", "2024-9-30", "45321"}, SortOrder::kGenericAscending,
                     ColumnType::kDate),
              ElementsAre("45321", "2024-9-30", "2024/10/1", "x"));
}

TEST(GridSort, IsStableHoweverManyRunsThereAre) {
  for (const int period : {2, 3, 50, 997}) {
    FlexGrid grid("Vs");
    Texts rows;
    for (int row = 0; row < 1000; ++row) {
      rows.push_back({std::to_string(row * 7 % period), std::to_string(row)});
    }
    Fill(grid, rows);
    grid.SortRows(0, SortOrder::kNumericDescending, 1, 1000);
    std::stable_sort(rows.begin(), rows.end(), [](const auto& a, const auto& b) {
      return std::stoi(a[0]) > std::stoi(b[0]);
    });
    for (int row = 0; row < 1000; ++row) {
      ASSERT_EQ(grid.TextMatrix(row + 1, 1), rows[static_cast<std::size_t>(row)][1]) << period;
    }
  }
}

TEST(GridSort, MovesAllThatARowHas) {
  FlexGrid grid("Vs");
  grid.SetSelectionMode(SelectionMode::kListBox);
  FillOutline(grid, {2, 1, -1});
  for (int row = 1; row <= 3; ++row) grid.SetTextMatrix(row, 0, std::string(1, "cba"[row - 1]));
  grid.SetCellForeColor(1, 0, 128);
  grid.SetRowHeight(1, 777);
  grid.SetCollapsed(1, true);
  grid.SetRowHidden(2, true);
  grid.SetRow(1);
  grid.SetSelected(3, true);
  grid.SortRows(0, SortOrder::kStringAscending, 1, 3);
  EXPECT_THAT(ColumnOf(grid), ElementsAre("a", "b", "c"));
  EXPECT_EQ(grid.CellForeColor(3, 0), 128U);
  EXPECT_EQ(grid.CellForeColor(1, 0), color::kDefault);
  EXPECT_EQ(grid.RowHeight(3), 777);
  EXPECT_EQ(grid.RowOutlineLevel(3), 2);
  EXPECT_TRUE(grid.IsCollapsed(3));
  EXPECT_TRUE(grid.RowHidden(2));
  EXPECT_FALSE(grid.IsSubtotal(1));
  EXPECT_EQ(grid.Row(), 3);
  EXPECT_THAT(SelectionOf(grid), ElementsAre(1, 3));
  grid.SortRows(0, SortOrder::kStringDescending, 1, 2);  // a part only
  EXPECT_THAT(ColumnOf(grid), ElementsAre("b", "a", "c"));
  CheckInvariants(grid);
}

TEST(GridSearch, FindsRows) {
  FlexGrid grid("Vs");
  Fill(grid, {{"1001"}, {"ABC"}, {"abc"}, {"100101"}});
  EXPECT_EQ(grid.FindRow("abc", 1, 0), 3);
  EXPECT_EQ(grid.FindRow("abc", -1, 0, false), 2);
  EXPECT_EQ(grid.FindRow("1001", 2, 0), -1);
  EXPECT_EQ(grid.FindRow("1001", 2, 0, true, false), 4);
  EXPECT_EQ(grid.FindRow("aB", 3, 0, false, false), 3);
  EXPECT_EQ(grid.FindRow("1001", 99, 0), -1);
}

TEST(GridSearch, PassesTotalsOver) {
  FlexGrid grid("Vs");
  Fill(grid, {{"a", "1"}, {"b", "2"}});
  SubtotalOptions options;
  options.group_on = 0;
  options.total_on = 1;
  grid.Subtotal(SubtotalFunction::kSum, options);
  ASSERT_EQ(grid.TextMatrix(2, 0), "a");
  EXPECT_EQ(grid.FindRow("a", 2, 0), -1);
  EXPECT_TRUE(grid.HandleTypeAhead("a", 1000));
  EXPECT_TRUE(grid.HandleTypeAhead("a", 1100));
  EXPECT_EQ(grid.Row(), 1);
}

TEST(GridSearch, Aggregates) {
  FlexGrid grid("Vs");
  Fill(grid, {{"1", "x"}, {"", "2"}, {"1,003", "-4.5 kg"}});
  const auto over = [&](SubtotalFunction function) { return grid.Aggregate(function, 3, 0, 1, 0); };
  EXPECT_EQ(over(SubtotalFunction::kSum), 1004);
  EXPECT_EQ(over(SubtotalFunction::kCount), 2);
  EXPECT_EQ(over(SubtotalFunction::kAverage), 502);
  EXPECT_EQ(over(SubtotalFunction::kMax), 1003);
  EXPECT_EQ(over(SubtotalFunction::kMin), 1);
  EXPECT_EQ(grid.Aggregate(SubtotalFunction::kMin, 1, 0, 3, 1), -4.5);
  EXPECT_EQ(grid.Aggregate(SubtotalFunction::kMax, 2, 0, 2, 0), 0);
  EXPECT_NEAR(grid.Aggregate(SubtotalFunction::kPercent, 1, 0, 1, 0), 100.0 / 1004, 1e-9);
}

}  // namespace
}  // namespace tavrix::viewkit
