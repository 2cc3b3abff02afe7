#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "support/matchers.h"
#include "viewkit/grid/decimal.h"
#include "viewkit/grid_support.h"

namespace tavrix::viewkit {
namespace {

constexpr Color kDarkRed = 128;

SubtotalOptions Sum(int group_on, int total_on, const std::string& caption) {
  SubtotalOptions options;
  options.group_on = group_on;
  options.total_on = total_on;
  options.caption = caption;
  return options;
}

class GridTotalsTest : public ::testing::Test {
 protected:
  /// Category, currency, two amounts, an id that no two rows share.
  void FillAccounts() {
    Fill(grid, {{"资产", "人民币", "0.1", "1,000", "1"},
                {"资产", "人民币", "0.2", "", "2"},
                {"资产", "美元", "-5", "7", "3"},
                {"负债", "美元", "12.5", "3", "4"}});
  }
  void Add(int group_on, int total_on, const std::string& caption = "%s小计") {
    grid.Subtotal(SubtotalFunction::kSum, Sum(group_on, total_on, caption));
  }

  FlexGrid grid{"Vs"};
};

TEST_F(GridTotalsTest, TotalsOfOneGroupShareTheirRowsAndTheGrandTotalIsTheLastRow) {
  FillAccounts();
  EXPECT_EQ(static_cast<int>(grid.SubtotalPosition()), 0);
  SubtotalOptions options = Sum(0, 2, "%s小计");
  options.fore = kDarkRed;
  options.bold = true;
  options.match_from = 0;
  options.total_only = true;
  grid.Subtotal(SubtotalFunction::kSum, options);
  EXPECT_EQ(grid.Rows(), 7);
  options.total_on = 3;
  grid.Subtotal(SubtotalFunction::kSum, options);
  SubtotalOptions whole = Sum(-1, 2, "合计");
  whole.back = 0xFFFF80;
  grid.Subtotal(SubtotalFunction::kSum, whole);
  whole.total_on = 3;
  grid.Subtotal(SubtotalFunction::kSum, whole);

  EXPECT_THAT(ColumnOf(grid, 0),
              ElementsAre("资产", "资产", "资产", "资产小计", "负债", "负债小计", "合计"));
  EXPECT_THAT(ColumnOf(grid, 1), ElementsAre("人民币", "人民币", "美元", "", "美元", "", ""));
  EXPECT_THAT(ColumnOf(grid, 2), ElementsAre("0.1", "0.2", "-5", "-4.7", "12.5", "12.5", "7.8"));
  EXPECT_THAT(ColumnOf(grid, 3), ElementsAre("1,000", "", "7", "1007", "3", "3", "1010"));
  EXPECT_THAT(ColumnOf(grid, 4), ElementsAre("1", "2", "3", "", "4", "", ""));
  EXPECT_EQ(grid.CellForeColor(4, 0, 4, 4), kDarkRed);
  EXPECT_EQ(grid.CellForeColor(3, 4, 4, 0), std::nullopt);
  EXPECT_EQ(grid.CellForeColor(7, 0, 7, 4), color::kDefault);
  EXPECT_EQ(grid.CellBackColor(7, 4), 0xFFFF80U);
  EXPECT_TRUE(grid.CellFontBold(4, 0));
  EXPECT_FALSE(grid.CellFontBold(5, 0));
  CheckInvariants(grid);
}

TEST_F(GridTotalsTest, GroupsLieWithinTheGroupsMadeBefore) {
  FillAccounts();
  Add(0, 2);
  Add(0, 3);
  grid.SetTextMatrix(4, 3, "x");  // texts of totals may be changed at any time
  Add(1, 2);
  Add(-1, 2, "合计");
  EXPECT_THAT(ColumnOf(grid, 0), ElementsAre("资产", "资产", "资产", "资产", "资产", "资产小计",
                                             "负债", "负债", "负债小计", "合计"));
  EXPECT_THAT(ColumnOf(grid, 1), ElementsAre("人民币", "人民币", "人民币小计", "美元", "美元小计",
                                             "", "美元", "美元小计", "", ""));
  EXPECT_THAT(ColumnOf(grid, 2),
              ElementsAre("0.1", "0.2", "0.3", "-5", "-5", "-4.7", "12.5", "12.5", "12.5", "7.8"));
  EXPECT_EQ(grid.TextMatrix(6, 3), "x");

  // Above, the outer totals come first and are parents, so that a group can be collapsed.
  FillAccounts();
  grid.SetSubtotalPosition(SubtotalPosition::kAbove);
  Add(-1, 2, "合计");
  Add(1, 2);
  Add(0, 2);
  EXPECT_THAT(ColumnOf(grid, 0), ElementsAre("合计", "", "资产小计", "资产", "资产", "", "资产小计",
                                             "资产", "负债小计", "负债"));
  EXPECT_THAT(ColumnOf(grid, 2),
              ElementsAre("7.8", "0.3", "0.3", "0.1", "0.2", "7.5", "-5", "-5", "12.5", "12.5"));
  CheckInvariants(grid);
  grid.SetCollapsed(2, true);
  grid.SetCollapsed(9, true);
  EXPECT_THAT(ShownColumn(grid, 1),
              ElementsAre("", "人民币小计", "美元小计", "美元", "美元", "美元"));
}

TEST_F(GridTotalsTest, CaptionsFollowTheGroupsNames) {
  Fill(grid, {{"资产", "1"}, {"资产", "2"}, {"负债", "3"}});
  Add(0, 1);
  grid.SetTextMatrix(4, 0, "权益");
  Add(0, 1);
  EXPECT_THAT(ColumnOf(grid, 0), ElementsAre("资产", "资产", "资产小计", "权益", "权益小计"));
}

TEST_F(GridTotalsTest, MatchFromNamesTheColumnsThatMustAgree) {
  FillAccounts();
  SubtotalOptions options = Sum(1, 2, "%s");
  options.match_from = 1;
  grid.Subtotal(SubtotalFunction::kSum, options);
  EXPECT_THAT(ColumnOf(grid, 1), ElementsAre("人民币", "人民币", "人民币", "美元", "美元", "美元"));
  options.match_from = 0;  // other groups of the same column take the place of these
  grid.Subtotal(SubtotalFunction::kSum, options);
  EXPECT_THAT(ColumnOf(grid, 0),
              ElementsAre("资产", "资产", "资产", "资产", "资产", "负债", "负债"));
}

TEST_F(GridTotalsTest, ClearingTakesTheTotalsAndNothingElse) {
  FillAccounts();
  grid.SetIsSubtotal(1, true);
  grid.SetRow(4);
  Add(0, 2);
  EXPECT_EQ(grid.Row(), 5);
  grid.SetRow(4);
  EXPECT_TRUE(grid.IsTotalRow(4));
  grid.Subtotal(SubtotalFunction::kClear);
  EXPECT_THAT(ColumnOf(grid, 4), ElementsAre("1", "2", "3", "4"));
  EXPECT_EQ(grid.Row(), 4);  // the row that took the place of the total
  EXPECT_TRUE(grid.IsSelected(4));
  EXPECT_TRUE(grid.IsSubtotal(1));
  EXPECT_EQ(grid.CellForeColor(4, 0), color::kDefault);

  Add(0, 2);
  grid.SetIsSubtotal(4, false);  // a row like any other from now on
  Add(-1, 2, "合计");
  EXPECT_EQ(grid.TextMatrix(7, 2), "3.1");
  grid.Subtotal(SubtotalFunction::kClear);
  EXPECT_EQ(grid.Rows(), 6);

  Fill(grid, {});
  Add(-1, 2, "合计");  // no rows, no totals
  EXPECT_EQ(grid.Rows(), 1);
  EXPECT_THROW(Add(0, 5), std::out_of_range);
  EXPECT_THROW(Add(5, 0), std::out_of_range);
}

TEST_F(GridTotalsTest, AnOutlineStaysAsItIs) {
  Fill(grid, {{"1001", "1", "a"},
              {"100101", "2", "a"},
              {"10010101", "3", "b"},
              {"100102", "2", "b"},
              {"1002", "1", "b"}});
  grid.SetOutlineFromColumn(1);
  Add(2, 0, "小计");
  Add(-1, 0, "合计");
  const auto check = [&] {
    EXPECT_THAT(ColumnOf(grid, 0), ElementsAre("1001", "100101", "101102", "10010101", "100102",
                                               "1002", "10111205", "10212307"));
    EXPECT_EQ(grid.ParentRow(4), 2);  // as before, in spite of the total between
    EXPECT_EQ(grid.LastRowOfNode(1), 5);
    EXPECT_EQ(grid.ChildCount(3), 0);
    CheckInvariants(grid);
  };
  check();
  grid.ClearOutline();
  EXPECT_EQ(grid.SetOutlineFromColumn(1), 2);
  check();
  grid.Outline(0);
  EXPECT_THAT(ShownColumn(grid), ElementsAre("1001", "1002", "10111205", "10212307"));
}

TEST_F(GridTotalsTest, FunctionsAndFormats) {
  Fill(grid, {{"a", "1"}, {"a", ""}, {"a", "2"}, {"b", "-1"}});
  const auto total = [&](SubtotalFunction function, const std::string& format = "") {
    grid.Subtotal(SubtotalFunction::kClear);
    SubtotalOptions options = Sum(0, 1, "");
    options.format = format;
    grid.Subtotal(function, options);
    return std::string(grid.TextMatrix(4, 1));
  };
  EXPECT_EQ(total(SubtotalFunction::kSum, "0.00元"), "3.00元");
  EXPECT_EQ(total(SubtotalFunction::kCount), "2");
  EXPECT_EQ(total(SubtotalFunction::kAverage), "1.5");
  EXPECT_EQ(total(SubtotalFunction::kMax), "2");
  EXPECT_EQ(total(SubtotalFunction::kMin), "1");
  EXPECT_EQ(total(SubtotalFunction::kPercent), "150");
  EXPECT_EQ(grid.Aggregate(SubtotalFunction::kSum, 1, 1, grid.Rows() - 1, 1), 2);
  total(SubtotalFunction::kNone);
  EXPECT_EQ(grid.Rows(), 5);
}

TEST_F(GridTotalsTest, RowsThatComeLaterCountAtTheNextCall) {
  FillAccounts();
  Add(0, 2);
  grid.AddItem();
  grid.SetTextMatrix(7, 0, "成本");
  grid.SetTextMatrix(7, 2, "1");
  grid.SetTextMatrix(1, 2, "1.1");
  Add(0, 2);
  EXPECT_THAT(ColumnOf(grid, 2), ElementsAre("1.1", "0.2", "-5", "-3.7", "12.5", "12.5", "1", "1"));
}

TEST_F(GridTotalsTest, SortingKeepsGroupsTogetherUntilTheTotalsAreCleared) {
  FillAccounts();
  Add(0, 2);
  grid.SetCol(2);
  grid.SetSort(SortOrder::kNumericAscending);
  EXPECT_THAT(ColumnOf(grid, 4), ElementsAre("3", "1", "2", "", "4", ""));
  grid.SetCol(3);
  grid.SetSort(SortOrder::kNumericAscending);
  EXPECT_THAT(ColumnOf(grid, 4), ElementsAre("2", "3", "1", "", "4", ""));
  grid.Subtotal(SubtotalFunction::kClear);
  EXPECT_THAT(ColumnOf(grid, 4), ElementsAre("2", "4", "3", "1"));
}

/// What is below what, without the rows of totals.
std::vector<std::string> Parents(const FlexGrid& grid) {
  std::vector<std::string> parents;
  for (int row = grid.FixedRows(); row < grid.Rows(); ++row) {
    if (grid.IsTotalRow(row)) continue;
    const int parent = grid.ParentRow(row);
    parents.emplace_back(parent < 0 ? "" : grid.TextMatrix(parent, 3));
  }
  return parents;
}

/// Sums the rows without totals between this row of totals and the one before it that is no inner
/// one, in whole cents.
long CentsAbove(const FlexGrid& grid, int total_row, int group_on) {
  long cents = 0;
  for (int row = total_row - 1; row >= grid.FixedRows(); --row) {
    if (!grid.IsTotalRow(row)) {
      cents += std::lround(grid.ValueMatrix(row, 2) * 100);
      continue;
    }
    const bool inner = group_on < 0 || grid.CellForeColor(row, 0) > static_cast<Color>(group_on);
    if (!inner) break;
  }
  return cents;
}

TEST_F(GridTotalsTest, HoldWhateverTheRowsAre) {
  std::mt19937 random(7);
  for (int round = 0; round < 30; ++round) {
    SCOPED_TRACE(round);
    Texts rows;
    for (unsigned row = 0; row < 1 + random() % 60; ++row) {
      const std::string cents = std::to_string(10 + random() % 90);
      rows.push_back({std::to_string(random() % 2), std::to_string(random() % 2),
                      std::to_string(random() % 1000) + "." + cents, std::to_string(row)});
    }
    Fill(grid, rows);
    const bool outlined = round % 2 == 0;
    for (int row = 1; outlined && row < grid.Rows(); ++row) {
      grid.SetIsSubtotal(row, true);
      grid.SetRowOutlineLevel(row, static_cast<int>(random() % 4));
    }
    const auto parents = Parents(grid);
    for (const int group_on : {0, 1, -1}) {
      SubtotalOptions options = Sum(group_on, 2, "t");
      options.fore = group_on < 0 ? color::kDefault : static_cast<Color>(group_on);
      grid.Subtotal(SubtotalFunction::kSum, options);
    }
    CheckInvariants(grid);
    EXPECT_EQ(Parents(grid), parents);
    for (int row = 1; row < grid.Rows(); ++row) {
      if (!grid.IsTotalRow(row)) continue;
      const Color fore = grid.CellForeColor(row, 0);
      const int group_on = fore == color::kDefault ? -1 : static_cast<int>(fore);
      EXPECT_EQ(std::lround(grid.ValueMatrix(row, 2) * 100), CentsAbove(grid, row, group_on));
    }
    EXPECT_EQ(grid.TextMatrix(grid.Rows() - 1, 0), "t");
    grid.Subtotal(SubtotalFunction::kClear);
    EXPECT_EQ(Parents(grid), parents);
    CheckInvariants(grid);
  }
}

TEST(DecimalTest, ReadsAndWritesToTheLastDigit) {
  const std::vector<std::pair<std::string, std::string>> kTexts{
      {"0.10", "0.1"},
      {"-1,234.50", "-1234.5"},
      {"100", "100"},
      {"-0.00", "0"},
      {"  7.5元", "7.5"},
      {"1e3", "1000"},
      {"123456789012345", "123456789012345"},
      {"0.0000000001", "1e-10"},
      {"12345678901234567", "12345678901234600"},
      {"text", "0"},
      {".5", "0.5"},
      {"-.5", "-0.5"},
      {"1.2.3", "1.2"}};
  for (const auto& [text, expected] : kTexts) EXPECT_EQ(DecimalText(ReadDecimal(text)), expected);
  EXPECT_EQ(DecimalText({0.1 + 0.2, 0}), "0.3");
}

}  // namespace
}  // namespace tavrix::viewkit
