#include "host/value.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <utility>

namespace tavrix::host {
namespace {

class Date : public ForeignValue {
 public:
  std::string ToText() const override { return "2024-01-31"; }
  double ToNumber() const override { return 45322; }
};

TEST(ValueTest, ReadsAsTextAndNumber) {
  EXPECT_EQ(Value().ToText(), "");
  EXPECT_EQ(Value().ToNumber(), 0);
  EXPECT_EQ(Value(true).ToText(), "True");
  EXPECT_EQ(Value(true).ToNumber(), -1);
  EXPECT_EQ(Value(std::int64_t{1} << 40).ToText(), "1099511627776");
  EXPECT_EQ(Value(std::int64_t{1} << 40).ToLong(), 0x7FFFFFFF);
  EXPECT_EQ(Value(-2.5).ToText(), "-2.5");
  EXPECT_EQ(Value(-2.5).ToLong(), -2);
  EXPECT_EQ(Value("12 rows").ToNumber(), 12);
  EXPECT_EQ(Value("12 rows").ToText(), "12 rows");
}

class Object : public ForeignValue {
 public:
  std::string ToText() const override { return ""; }
  double ToNumber() const override { return 0; }
  bool IsObject() const override { return true; }
};

TEST(ValueTest, TellsNumbersFromWhatIsNone) {
  const std::pair<Value, std::optional<double>> cases[] = {{Value(), {}},
                                                           {true, {}},
                                                           {0, 0},
                                                           {-2.5, -2.5},
                                                           {"3", 3},
                                                           {" -.5", -.5},
                                                           {"2 rows", 2},
                                                           {"", {}},
                                                           {"rows 2", {}},
                                                           {"-", {}},
                                                           {".", {}},
                                                           {std::nan(""), {}},
                                                           {Value(std::make_shared<Date>()), 45322},
                                                           {Value(std::make_shared<Object>()), {}}};
  for (const auto& [value, number] : cases) EXPECT_EQ(value.Number(), number) << value.ToText();
  EXPECT_TRUE(Value(std::make_shared<Object>()).IsObject());
  EXPECT_FALSE(Value(std::make_shared<Date>()).IsObject());
  EXPECT_FALSE(Value().IsObject());
}

TEST(ValueTest, CarriesForeignValues) {
  const Value date(std::make_shared<Date>());
  EXPECT_EQ(date.ToText(), "2024-01-31");
  EXPECT_EQ(date.ToLong(), 45322);
  EXPECT_TRUE(Value(std::shared_ptr<const ForeignValue>()).IsNull());
}

}  // namespace
}  // namespace tavrix::host
