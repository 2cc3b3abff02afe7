#include "views/outline_commands.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/outline_grid.h"
#include "viewkit/grid/flex_grid.h"

namespace desk::views {
namespace {

/// Rows of the levels 1 2 3 2 1.
class OutlineCommandsTest : public testing::Test {
 protected:
  OutlineCommandsTest() {
    grid_.SetFixedRows(1);
    grid_.SetCols(1);
    grid_.SetRows(6);
    tavrix::test::MakeOutline(grid_, {{1, 0}, {2, 1}, {3, 2}, {4, 1}, {5, 0}});
  }
  [[nodiscard]] std::vector<int> Shown() const { return tavrix::test::ShownRows(grid_); }
  tavrix::viewkit::FlexGrid grid_{"Vs"};
};

TEST_F(OutlineCommandsTest, OpensAndClosesToALevel) {
  ExpandToLevel(grid_, kAllLevels);
  EXPECT_EQ(Shown(), (std::vector{1, 2, 3, 4, 5}));
  ExpandToLevel(grid_, 2);
  EXPECT_EQ(Shown(), (std::vector{1, 2, 4, 5}));
  ExpandToLevel(grid_, 1);
  EXPECT_EQ(Shown(), (std::vector{1, 5}));
  grid_.SetCollapsed(1, false);
  EXPECT_EQ(Shown(), (std::vector{1, 2, 4, 5})) << "each level has its own state";
  ExpandToLevel(grid_, 3);
  EXPECT_EQ(Shown().size(), 5U);
}

TEST_F(OutlineCommandsTest, TheCurrentRowStaysInSight) {
  ExpandToLevel(grid_, kAllLevels);
  grid_.SetRow(3);
  ExpandToLevel(grid_, 2);
  EXPECT_EQ(grid_.Row(), 2);
  grid_.SetRow(5);
  ExpandToLevel(grid_, 1);
  EXPECT_EQ(grid_.Row(), 5);
  grid_.SetRow(0);
  ExpandToLevel(grid_, kAllLevels);
  EXPECT_EQ(grid_.Row(), 0) << "none was chosen";
  grid_.SetRows(1);
  ExpandToLevel(grid_, kAllLevels);
  EXPECT_EQ(grid_.Row(), 0);
}

}  // namespace
}  // namespace desk::views
