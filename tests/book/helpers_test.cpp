#include <gtest/gtest.h>

#include "book/host/parameters.h"
#include "book/host/wheel_source.h"
#include "book/ledger/code_rule.h"
#include "support/test_book.h"

namespace desk::book {
namespace {

TEST(CodeRuleTest, FindsTheLevelByLength) {
  CodeRuleArithmetic rule;
  EXPECT_EQ(rule.LevelOf("1001", "4222"), 1);
  EXPECT_EQ(rule.LevelOf("1001010101", "4222"), 4);
  EXPECT_EQ(rule.LevelOf("科目编码", "4222"), 1) << "characters count, not bytes";
  for (const char* code : {"", "10010", "100101010101"}) EXPECT_EQ(rule.LevelOf(code, "4222"), 0);
  EXPECT_EQ(rule.LevelOf("1001", ""), 0);
  EXPECT_EQ(rule.LevelOf("1001", "x4"), 2) << "no digit counts as a segment of no length";
  EXPECT_EQ(rule.LevelOf("", "04"), 0);
  EXPECT_EQ(rule.LevelOf("100101", "4二2"), 3) << "a character is one level, whatever its bytes";
}

TEST(CodeRuleTest, CutsTheParent) {
  CodeRuleArithmetic rule;
  EXPECT_EQ(rule.ParentCode("100101", "4222"), "1001");
  EXPECT_EQ(rule.ParentCode("科目编码一二", "4222"), "科目编码");
  for (const char* code : {"", "1001", "10010"}) EXPECT_EQ(rule.ParentCode(code, "4222"), "");
}

TEST(CodeRuleTest, AddsUpLengths) {
  CodeRuleArithmetic rule;
  EXPECT_EQ(rule.LengthAtLevel(0, "4222"), 0);
  EXPECT_EQ(rule.LengthAtLevel(-1, "4222"), 0);
  EXPECT_EQ(rule.LengthAtLevel(2, "4222"), 6);
  EXPECT_EQ(rule.LengthAtLevel(9, "4222"), 10);
  EXPECT_EQ(rule.LengthAtLevel(3, "4x2"), 6);
}

TEST(ParameterTest, KeysCompareWithoutCase) {
  ParameterList list;
  list.Set("BackColor", 7);
  EXPECT_TRUE(list.Exists("backcolor"));
  EXPECT_EQ(list.Item("BACKCOLOR").ToLong(), 7);
  EXPECT_THROW((void)list.Item("科目编码"), host::HostError);
  list.Clear();
  EXPECT_FALSE(list.Exists("BackColor"));
}

class WheelTest : public testing::Test {
 protected:
  WheelTest() {
    wheel_.OnWheel([this](std::int32_t value) { seen_.push_back(value); });
  }
  WheelSource wheel_;
  std::vector<int> seen_;
};

TEST_F(WheelTest, CountsNotchesWithinItsRange) {
  wheel_.SetRange(3, 1);
  wheel_.Turn(-WheelSource::kNotch);
  wheel_.Turn(-60);
  wheel_.Turn(-60);
  wheel_.Turn(-WheelSource::kNotch);
  wheel_.Turn(4 * WheelSource::kNotch);
  wheel_.Turn(WheelSource::kNotch);
  EXPECT_EQ(seen_, (std::vector{2, 3, 1}));
}

TEST_F(WheelTest, StartsFromWhereTheViewIs) {
  wheel_.SetRange(10);
  wheel_.SetPosition(7);
  wheel_.Turn(WheelSource::kNotch);
  wheel_.SetRange(2);
  wheel_.Turn(WheelSource::kNotch);
  wheel_.SetRange(-1);
  wheel_.Turn(-WheelSource::kNotch);
  EXPECT_EQ(seen_, (std::vector{6, 1}));
}

TEST_F(WheelTest, GoesOnFromWhereTheViewHadToScrollTo) {
  wheel_.SetRange(100);
  wheel_.OnWheel([this](std::int32_t value) {
    seen_.push_back(value);
    if (value % 10 != 0) wheel_.SetPosition(value + 9);  // the rows between are hidden
  });
  for (int notch = 0; notch < 3; ++notch) wheel_.Turn(-WheelSource::kNotch);
  EXPECT_EQ(seen_, (std::vector{2, 12, 22})) << "the list begins at its first row";
}

TEST_F(WheelTest, KnowsItsWindow) {
  wheel_.Attach(42);
  EXPECT_EQ(wheel_.AttachedTo(), 42);
  wheel_.Detach();
  EXPECT_EQ(wheel_.AttachedTo(), 0);
  wheel_.OnWheel({});
  wheel_.SetRange(5);
  wheel_.Turn(-WheelSource::kNotch);
  EXPECT_TRUE(seen_.empty());
}

TEST(SystemTest, TellsWhatTheApplicationDecided) {
  Book book = tavrix::test::MakeBook();
  const auto system = book.System();
  book.Environment().user_folder = "/home/x";
  book.Environment().rights_by_program[201] = {.can_add = false, .can_edit = false};
  EXPECT_EQ(system->Folders()->UserFolder(), "/home/x");
  EXPECT_FALSE(system->Rights(201)->CanEdit());
  EXPECT_TRUE(system->Rights(7)->CanAdd());
}

}  // namespace
}  // namespace desk::book
