#include "viewkit/grid/contrast.h"

#include <gtest/gtest.h>

#include <array>

namespace tavrix::viewkit {
namespace {

TEST(ContrastTest, IsTheRatioOfTheGuidelines) {
  EXPECT_NEAR(Contrast(0x000000, 0xFFFFFF), 21, 1e-9);
  EXPECT_NEAR(Contrast(0x123456, 0x123456), 1, 1e-9);
  // Published values: mid grey, red and blue on white.
  EXPECT_NEAR(Contrast(0x777777, 0xFFFFFF), 4.48, 0.01);
  EXPECT_NEAR(Contrast(0xFFFFFF, 0x0000FF), 4.00, 0.01);
  EXPECT_NEAR(Contrast(0xFF0000, 0xFFFFFF), 8.59, 0.01);
}

TEST(ContrastTest, ATextTakesTheFirstColourThatCanBeRead) {
  constexpr std::array<Color, 2> kSystem{0xFFFFFF, 0x000000};
  EXPECT_EQ(LegibleOn(0xFFFFFF, 0x000080, kSystem), 0x000080U);  // dark red on white
  EXPECT_EQ(LegibleOn(0x000000, 0x000080, kSystem), 0xFFFFFFU);  // and on black
  EXPECT_EQ(LegibleOn(0xFFFF80, 0xFFFFFF, kSystem), 0x000000U);
  EXPECT_EQ(LegibleOn(0x777777, 0x808080, kSystem), 0xFFFFFFU);
  EXPECT_EQ(LegibleOn(0x808080, 0x707070, std::span<const Color>()), 0x707070U);
}

}  // namespace
}  // namespace tavrix::viewkit
