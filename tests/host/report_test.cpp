#include "host/report.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <vector>

#include "host/error.h"

namespace tavrix::host {
namespace {

TEST(Report, TellsUsersNothingThatWasWrittenForProgrammers) {
  EXPECT_EQ(ErrorText(HostError("no such table")), "no such table") << "the host's own words";
  EXPECT_EQ(ErrorText(std::bad_alloc()), "内存不足");
  EXPECT_EQ(ErrorText(std::out_of_range("集合中没有该成员")), "集合中没有该成员");
  EXPECT_EQ(ErrorText(std::out_of_range("no such row")), "没有这样的行、列或成员");
  EXPECT_EQ(ErrorText(std::invalid_argument("stoi")), "参数不正确");
  try {
    static_cast<void>(std::vector<int>{}.at(3));
    FAIL();
  } catch (const std::exception& error) {
    EXPECT_EQ(ErrorText(error), "没有这样的行、列或成员");
  }
}

}  // namespace
}  // namespace tavrix::host
