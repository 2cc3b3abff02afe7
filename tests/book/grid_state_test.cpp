#include "book/host/grid_state.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "book/host/grid_navigator.h"
#include "support/matchers.h"
#include "viewkit/grid/flex_grid.h"

namespace desk::book {
namespace {

using tavrix::viewkit::FlexGrid;

class GridStateTest : public testing::Test {
 protected:
  GridStateTest() {
    grid_.SetFixedRows(1);
    grid_.SetCols(2);
    grid_.SetRowHeightMin(300);
    grid_.SetViewport(5000, 5 * 300);
    Load({"1001", "1002", "100201", "10020101", "100202", "2001", "200101", "3001"});
  }
  /// As the view loads: in the order of the codes, the first level alone open to view.
  void Load(std::vector<std::string> codes) {
    grid_.SetRows(1);
    host::RowSet rows(2);
    for (const std::string& code : codes) {
      rows.AppendText(code);
      rows.AppendText(std::to_string(code.size() / 2 - 1));
    }
    grid_.LoadRows(std::move(rows));
    grid_.ClearOutline();
    grid_.SetOutlineFromColumn(1);
    for (int level = 3; level >= 0; --level) grid_.Outline(level);
  }
  [[nodiscard]] int RowOf(const char* code) const { return grid_.FindRow(code, 1, 0); }
  void Open(const char* code) { grid_.SetCollapsed(RowOf(code), false); }
  [[nodiscard]] std::vector<std::string> Shown() const {
    std::vector<std::string> codes;
    for (int row = 1; row < grid_.Rows(); ++row) {
      if (grid_.IsShown(row)) codes.emplace_back(grid_.TextMatrix(row, 0));
    }
    return codes;
  }

  FlexGrid grid_{"Vs"};
};

TEST_F(GridStateTest, ComesBackToTheRowsAsTheyAreThen) {
  Open("1002");
  Open("100201");
  grid_.SetRow(RowOf("100202"));
  grid_.SetTopRow(RowOf("100201"));
  const GridState state = GridState::Of(grid_);
  EXPECT_THAT(state.open, ElementsAre("1002", "100201"));
  Load({"0999", "1001", "100101", "1002", "100201", "10020101", "10020102", "100202", "2001",
        "200101", "3001"});
  state.PutBack(grid_);
  EXPECT_THAT(Shown(), ElementsAre("0999", "1001", "1002", "100201", "10020101", "10020102",
                                   "100202", "2001", "3001"));
  EXPECT_EQ(grid_.Row(), RowOf("100202"));
  EXPECT_EQ(grid_.TopRow(), RowOf("100201"));
}

TEST_F(GridStateTest, KeepsItsPlaceWhereAnAccountHasGone) {
  Open("1002");
  grid_.SetRow(RowOf("100201"));
  grid_.SetTopRow(RowOf("100201"));
  const GridState state = GridState::Of(grid_);
  Load({"1001", "1002", "100202", "2001", "200101", "3001", "4001", "4002", "4003"});
  state.PutBack(grid_);
  EXPECT_EQ(grid_.Row(), RowOf("100202"));
  EXPECT_EQ(grid_.TopRow(), RowOf("100202"));
  EXPECT_THAT(state.open, ElementsAre("1002"));
  Load({"0001"});
  state.PutBack(grid_);
  EXPECT_EQ(grid_.Row(), 1);
  Load({});
  state.PutBack(grid_);
  EXPECT_EQ(GridState::Of(grid_).open.size(), 0u);
}

TEST_F(GridStateTest, ClosesWhatAFilterHasOpenedAnew) {
  Open("2001");
  GridSearch search;
  ASSERT_TRUE(search.Filter(grid_, host::Value("00")));
  for (const char* code : {"1002", "100201"}) grid_.SetCollapsed(RowOf(code), true);
  const auto before = Shown();
  const GridState state = GridState::Of(grid_);
  EXPECT_THAT(state.open, ElementsAre("2001"));
  Load({"1001", "1002", "100201", "10020101", "100202", "2001", "200101", "3001"});
  ASSERT_TRUE(search.Filter(grid_, host::Value("00")));
  state.PutBack(grid_);
  EXPECT_EQ(Shown(), before);
}

TEST_F(GridStateTest, NoRowWasCurrent) {
  const GridState state = GridState::Of(grid_);
  const int none = grid_.Row();
  Load({"1001", "1002"});
  state.PutBack(grid_);
  EXPECT_EQ(grid_.Row(), none);
  EXPECT_THAT(Shown(), ElementsAre("1001", "1002"));
}

}  // namespace
}  // namespace desk::book
