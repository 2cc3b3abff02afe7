#include "viewkit/grid/number_format.h"

#include <gtest/gtest.h>

#include "viewkit/grid/date_format.h"

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
  EXPECT_EQ(FormatNumber(7, "0##"), "007");
  EXPECT_EQ(FormatNumber(1234.56, "0.0,0"), "1234.56");
  EXPECT_EQ(FormatNumber(123456, "#,#"), "123,456");
  EXPECT_EQ(FormatNumber(0, "#"), "0");
  EXPECT_EQ(FormatNumber(999.995, "0.00"), "1000.00");
  EXPECT_EQ(FormatNumber(2.675, "0.00"), "2.68");
  EXPECT_EQ(FormatNumber(-0.001, "0.00"), "0.00");
  EXPECT_EQ(FormatNumber(-5, "0.00;(0.00)"), "(5.00)");
  EXPECT_EQ(FormatNumber(-5, "0.00;"), "-5.00") << "money never disappears";
  EXPECT_EQ(FormatNumber(1e20, "#,##0"), "100,000,000,000,000,000,000");
  EXPECT_EQ(FormatNumber(1234.56789, "0.####################"), "1234.56789");
  EXPECT_EQ(FormatNumber(0.1, "0.00000000000000000"), "0.10000000000000000");
  EXPECT_EQ(FormatNumber(4e15, "0.00"), "4000000000000000.00");
  EXPECT_EQ(FormatNumber(1234567890123.4567, "0.00#"), "1234567890123.457");
}

TEST(DateTest, ReadsWrittenAndStoredDates) {
  EXPECT_EQ(DateOf("2024-2-29"), (Date{2024, 2, 29}));
  EXPECT_EQ(DateOf("2024.2.29t1:2"), (Date{2024, 2, 29, 1, 2}));
  EXPECT_EQ(DateOf(" 2024/12/31 23:59:58 "), (Date{2024, 12, 31, 23, 59, 58}));
  EXPECT_EQ(DateOf("2024-01-05T07:08:09.5"), (Date{2024, 1, 5, 7, 8, 9}));
  EXPECT_EQ(DateOf("20240131"), (Date{2024, 1, 31}));
  EXPECT_EQ(DateOf("45322.25"), (Date{2024, 1, 31, 6, 0, 0}));
  EXPECT_EQ(SerialOf({2024, 1, 31, 6, 0, 0}), 45322.25);
  EXPECT_EQ(SerialOf({1899, 12, 31, 23, 59, 59}), 1 + 86399.0 / 86400);
  EXPECT_EQ(DateOf("1"), (Date{1899, 12, 31}));
  EXPECT_EQ(DateOf("2958465.999"), (Date{9999, 12, 31, 23, 58, 34}));
  EXPECT_EQ(DateOf("10000101"), (Date{1000, 1, 1}));
  EXPECT_EQ(DateOf("99991231"), (Date{9999, 12, 31}));
  EXPECT_EQ(DateOf("2024-01-01T0:59"), (Date{2024, 1, 1, 0, 59, 0}));
  for (const char* none : {"",
                           "2023-02-29",
                           "2024-13-01",
                           "2024-1/2",
                           "2024-01-01 24:00",
                           "24-1-1",
                           "2024-01-01 x",
                           "2024-01-01x",
                           "0",
                           "-1",
                           "3000000",
                           "20240132",
                           "9e9",
                           "2958466",
                           "0.99",
                           "10000101.5",
                           "10000100",
                           "99991232",
                           "2024-01-01 23:60",
                           "2024-01-01 10:00:60",
                           "2024-01-01 10",
                           "2024-01-01 :30",
                           "2024-01-01 10:",
                           "2024-01-01 10:00:",
                           "2024-01-01 10:00:00.",
                           "02024-01-01",
                           "2024-011-01",
                           "2024-01-01 010:00"}) {
    EXPECT_EQ(DateOf(none), std::nullopt) << none;
  }
  EXPECT_EQ(WrittenDate("20240131"), std::nullopt);
}

TEST(DateTest, WritesDatesAsTheFormatSays) {
  const Date date{2024, 3, 5, 15, 4, 9};
  const std::vector<std::pair<std::string, std::string>> kFormats{
      {"yyyy-MM-dd", "2024-03-05"},
      {"yyyy-mm-dd hh:mm:ss", "2024-03-05 15:04:09"},
      {"yy/m/d h:nn AM/PM", "24/3/5 3:04 PM"},
      {"yyyy年M月d日 dddd", "2024年3月5日 星期二"},
      {R"(\d\"dd" day")", R"(d"05 day)"},
      {"mm:ss", "04:09"},
      {"h-m d-m", "15-4 5-3"},
      {"yyy ddd am/pm", "2024 周二 PM"},
      {R"(MM")", "03"}};
  for (const auto& [format, text] : kFormats) EXPECT_EQ(FormatDate(date, format), text) << format;
  for (const auto& [hour, text] : {std::pair{0, "12 AM"}, {11, "11 AM"}, {12, "12 PM"}}) {
    EXPECT_EQ(FormatDate({2024, 3, 5, hour}, "h AM/PM"), text);
  }
  for (const char* format : {"yyyy-MM-dd", "dd"}) EXPECT_TRUE(IsDateFormat(format)) << format;
  for (const char* format : {"", "#,##0.00", R"(0 "days")", "0d", R"("dd")"}) {
    EXPECT_FALSE(IsDateFormat(format)) << format;
  }
}

TEST(FormatNumberTest, KeepsTheTextAroundTheDigits) {
  EXPECT_EQ(FormatNumber(0.125, "0.0%"), "12.5%");
  EXPECT_EQ(FormatNumber(3, "¥0.00元"), "¥3.00元");
  EXPECT_EQ(FormatNumber(3, "\"No. \"0\\#"), "No. 3#");
  EXPECT_EQ(FormatNumber(-3, "0;(0)"), "(3)");
  EXPECT_EQ(FormatNumber(3, "0;(0)"), "3");
  EXPECT_EQ(FormatNumber(3, "text"), "text");
  EXPECT_EQ(FormatNumber(3, "0\""), "3");
  EXPECT_EQ(FormatNumber(3, "0\\"), "3");
  EXPECT_EQ(FormatNumber(1.25, ",0.0.0"), ",1.25.");
  EXPECT_EQ(FormatNumber(12, "\"RMB \"#,##0.00\"元\""), "RMB 12.00元");
}

TEST(FormatNumberTest, SectionsForNegativeNumbersAndZero) {
  const std::string format = R"--(#,##0.00" ;借";"(;)"0.00\;;"平")--";
  EXPECT_EQ(FormatNumber(5, format), "5.00 ;借");
  EXPECT_EQ(FormatNumber(-5, format), "(;)5.00;") << "no ; in quotes or behind a \\ is a border";
  EXPECT_EQ(FormatNumber(0, format), "平");
  EXPECT_EQ(FormatNumber(0, "0.00;(0.00)"), "0.00");
  EXPECT_EQ(FormatNumber(0, "0.00;(0.00);"), "0.00") << "an empty section is the first one";
  EXPECT_EQ(FormatNumber(-5, "0.00;;-"), "-5.00");
  EXPECT_EQ(FormatNumber(0, "0.00;;-"), "-");
  EXPECT_EQ(FormatNumber(0, "0.00;;-;@"), "-") << "a fourth is for texts";
}

}  // namespace
}  // namespace tavrix::viewkit
