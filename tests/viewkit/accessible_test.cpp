#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>
#include <vector>

#include "viewkit/grid/accessible_grid.h"
#include "viewkit/grid_support.h"

namespace tavrix::viewkit {
namespace {

/// Each child exists, once, and knows its position; what is no child does not exist.
void ExpectNumbered(const Accessible& accessible, AccessibleId parent, int numbers) {
  std::set<AccessibleId> children;
  for (int position = 0; position < accessible.Children(parent); ++position) {
    const AccessibleId child = accessible.Child(parent, position);
    EXPECT_TRUE(children.insert(child).second);
    EXPECT_EQ(accessible.Position(child), position);
  }
  for (int number = 1; number <= numbers; ++number) {
    const AccessibleId id =
        parent.item == 0 ? AccessibleId{number, 0} : AccessibleId{parent.item, number};
    EXPECT_EQ(accessible.Exists(id), children.contains(id)) << parent.item << " " << number;
  }
}

TEST(AccessibleGrid, TellsOfWhatIsShownWhateverIsHiddenAndClosed) {
  FlexGrid grid("Vs");
  std::mt19937 random(7);
  const auto below = [&random](int bound) {
    return std::uniform_int_distribution<int>(0, bound - 1)(random);
  };
  FillOutline(grid, {0, 1, 2, -1, -1, 1, 0, 1, -1, 2, 0, -1});
  grid.SetCols(5);
  grid.SetFixedRows(2);
  grid.SetLook({.outline_bar = 5});
  const AccessibleGrid accessible(grid);
  for (int step = 0; step < 300; ++step) {
    const int row = below(grid.Rows());
    const int col = below(grid.Cols());
    switch (below(5)) {
      case 0:
        grid.SetRowHidden(row, below(2) == 0);
        break;
      case 1:
        grid.SetColHidden(col, below(2) == 0);
        break;
      case 2:
        grid.SetColWidth(col, below(2) * 600);
        break;
      case 3:
        grid.SetRow(row);
        break;
      default:
        if (row >= grid.FixedRows()) grid.SetCollapsed(row, below(2) == 0);
    }
    ExpectNumbered(accessible, {}, grid.Rows() + 2);
    for (int position = 0; position < accessible.Children({}); ++position) {
      ExpectNumbered(accessible, accessible.Child({}, position), grid.Cols() + 2);
    }
    EXPECT_TRUE(accessible.Exists(accessible.Current()));
    for (const AccessibleId id : accessible.Selected()) EXPECT_TRUE(accessible.Exists(id));
  }
}

}  // namespace
}  // namespace tavrix::viewkit
