#include "viewkit/number_format.h"

#include <gtest/gtest.h>

namespace tavrix::viewkit {
namespace {

TEST(CellNumberTest, ReadsTheLeadingNumber) {
  EXPECT_EQ(CellNumber("123456789012345"), 123456789012345.0);
  EXPECT_EQ(CellNumber("-7"), -7);
  EXPECT_EQ(CellNumber("1,234,567.25 kg"), 1234567.25);
  EXPECT_EQ(CellNumber("12,"), 12);
  EXPECT_EQ(CellNumber("99999999999999999999"), 1e20);
  for (const char* none : {"", "-", "x1", ",5"}) EXPECT_EQ(CellNumber(none), 0) << none;
}

TEST(WholeNumberTest, TakesNoTextBesideTheNumber) {
  EXPECT_EQ(WholeNumber(" 1,234.5 "), 1234.5);
  EXPECT_EQ(WholeNumber("+3"), 3);
  EXPECT_EQ(WholeNumber(".5"), 0.5);
  for (const char* text : {"", " ", "1a", "a1", "1 2", "+-1", "inf", "nan", "0x10", "1e999"}) {
    EXPECT_EQ(WholeNumber(text), std::nullopt) << text;
  }
}

TEST(FormatNumberTest, WritesDigitsAsTheFormatSays) {
  EXPECT_EQ(FormatNumber(1234.5, "#,##0.00"), "1,234.50");
  EXPECT_EQ(FormatNumber(1234567, "#,###"), "1,234,567");
  EXPECT_EQ(FormatNumber(-1234.5, "#,##0.##"), "-1,234.5");
  EXPECT_EQ(FormatNumber(5, "#,##0.###"), "5");
  EXPECT_EQ(FormatNumber(0.5, "#.0#"), ".5");
  EXPECT_EQ(FormatNumber(7, "000"), "007");
  EXPECT_EQ(FormatNumber(0, "#"), "0");
  EXPECT_EQ(FormatNumber(999.995, "0.00"), "1000.00");
  EXPECT_EQ(FormatNumber(2.675, "0.00"), "2.68");
  EXPECT_EQ(FormatNumber(-0.001, "0.00"), "0.00");
  EXPECT_EQ(FormatNumber(1e20, "#,##0"), "100,000,000,000,000,000,000");
}

TEST(FormatNumberTest, KeepsTheTextAroundTheDigits) {
  EXPECT_EQ(FormatNumber(0.125, "0.0%"), "12.5%");
  EXPECT_EQ(FormatNumber(3, "¥0.00元"), "¥3.00元");
  EXPECT_EQ(FormatNumber(3, "\"No. \"0\\#"), "No. 3#");
  EXPECT_EQ(FormatNumber(-3, "0;(0)"), "(3)");
  EXPECT_EQ(FormatNumber(3, "0;(0)"), "3");
  EXPECT_EQ(FormatNumber(3, "text"), "text");
  EXPECT_EQ(FormatNumber(3, "0\""), "3");
}

}  // namespace
}  // namespace tavrix::viewkit
