#include "viewkit/wheel.h"

#include <gtest/gtest.h>

#include "viewkit/flex_grid.h"

namespace tavrix::viewkit {
namespace {

/// A wheel source that is told where its grid has scrolled to must be able to go on from there.
TEST(Wheel, EachNotchScrollsOnFromWhereTheLastOneLed) {
  for (const double rate : {1.0, 2.5, 3.0, 5.0, 7.0}) {
    FlexGrid grid("Vs");
    grid.SetFixedRows(1);
    grid.SetRows(1000);
    for (int value = 1; value <= 100; ++value) {
      ScrollByWheel(grid, value, rate);
      EXPECT_EQ(WheelPositionOf(grid.TopRow(), rate), value) << rate;
    }
    // Rows that no value leads to lie between the values around them.
    for (int row = 1; row < 300; ++row) {
      const std::int32_t value = WheelPositionOf(row, rate);
      ScrollByWheel(grid, value + 1, rate);
      EXPECT_GT(grid.TopRow(), row) << rate;
    }
  }
}

}  // namespace
}  // namespace tavrix::viewkit
