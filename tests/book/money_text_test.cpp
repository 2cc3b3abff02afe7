#include "book/ledger/money_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace desk::book {
namespace {

TEST(MoneyText, ReadsWhatAccountantsWrite) {
  EXPECT_EQ(ParseMoney("1234.56"), 123456);
  EXPECT_EQ(ParseMoney(" 1,234.5 "), 123450);
  EXPECT_EQ(ParseMoney(".05"), 5);
  EXPECT_EQ(ParseMoney("7."), 700);
  EXPECT_EQ(ParseMoney("-0.10"), -10);
  EXPECT_EQ(ParseMoney("+3"), 300);
  EXPECT_EQ(ParseMoney("  "), 0);
}

TEST(MoneyText, RefusesWhatItCannotHoldExactly) {
  for (const char* text : {"1.234", "1.2.3", "1e3", "-", ".", ",1", "12元", "1 2", "１２", "--1",
                           "99999999999999", "99999999999999999999999999"}) {
    EXPECT_EQ(ParseMoney(text), std::nullopt) << text;
  }
}

TEST(MoneyText, SaysWhyItRefuses) {
  const std::pair<const char*, const char*> reasons[] = {{"12.50", ""},
                                                         {"", ""},
                                                         {"1.234", "两位小数"},
                                                         {"-1,000.001", "两位小数"},
                                                         {".005", "两位小数"},
                                                         {"99999999999999", "过大"},
                                                         {"12元", "不正确"},
                                                         {"1.2.3", "不正确"},
                                                         {"1e3.001", "不正确"},
                                                         {"-", "不正确"},
                                                         {"1.23元", "不正确"},
                                                         {".", "不正确"},
                                                         {"99999999999999.001", "过大"}};
  for (const auto& [text, reason] : reasons) {
    EXPECT_THAT(WhyNoMoney(text), testing::HasSubstr(reason)) << text;
    EXPECT_EQ(WhyNoMoney(text).empty(), ParseMoney(text).has_value()) << text;
  }
}

TEST(MoneyText, WritesGroupsAndTwoPlaces) {
  EXPECT_EQ(MoneyText(0), "0.00");
  EXPECT_EQ(MoneyText(-5), "-0.05");
  EXPECT_EQ(MoneyText(99999), "999.99");
  EXPECT_EQ(MoneyText(100000), "1,000.00");
  EXPECT_EQ(MoneyText(-123456789), "-1,234,567.89");
  EXPECT_EQ(MoneyText(std::numeric_limits<std::int64_t>::min()), "-92,233,720,368,547,758.08");
}

TEST(MoneyText, ReadsBackWhatItWrites) {
  for (std::int64_t amount = -250'000; amount <= 250'000; amount += 7) {
    ASSERT_EQ(ParseMoney(MoneyText(amount)), amount);
  }
}

}  // namespace
}  // namespace desk::book
