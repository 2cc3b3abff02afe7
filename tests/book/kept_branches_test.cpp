#include "book/host/kept_branches.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "book/files/paths.h"
#include "support/matchers.h"
#include "support/test_book.h"

namespace desk::book {
namespace {

class KeptBranchesTest : public testing::Test {
 protected:
  KeptBranches::Pages Read(const std::string& book) { return KeptBranches(path_).Read(book); }
  void Write(const std::string& book, const KeptBranches::Pages& pages) {
    KeptBranches(path_).Write(book, pages);
  }
  tavrix::test::TempFolder folder_;
  std::string path_ = folder_.File("branches.txt");
};

TEST_F(KeptBranchesTest, EachBookHasItsOwnUntilOthersNeedThePlace) {
  Write("C:\\账簿 1.book", {{"1001", "100101"}, {}, {"2001"}});
  Write("Z:\\[x]=2.book", {{"5"}});
  EXPECT_THAT(Read("C:\\账簿 1.book"),
              ElementsAre(ElementsAre("1001", "100101"), IsEmpty(), ElementsAre("2001")));
  EXPECT_THAT(Read("none"), IsEmpty());
  for (int other = 1; other < KeptBranches::kMaxBooks; ++other) {
    Write("C:\\账簿 1.book", {{"1002"}, {}, {}});
    Write(std::to_string(other), {{"1"}});
  }
  EXPECT_THAT(Read("Z:\\[x]=2.book"), IsEmpty()) << "it was left before all others";
  EXPECT_THAT(Read("C:\\账簿 1.book"), ElementsAre(ElementsAre("1002"), IsEmpty(), IsEmpty()));
  Write("C:\\账簿 1.book", {{}, {}, {}});
  EXPECT_THAT(Read("C:\\账簿 1.book"), ElementsAre(IsEmpty(), IsEmpty(), IsEmpty()));
}

TEST_F(KeptBranchesTest, KeepsTheFirstOfTooManyAndNoCodeThatItCannotWrite) {
  std::vector<std::string> many;
  for (int code = 100'000; code < 120'000; ++code) many.push_back(std::to_string(code));
  for (int book = 0; book < KeptBranches::kMaxBooks; ++book) {
    Write(std::to_string(book), {many, {"9"}});
  }
  const KeptBranches::Pages pages = Read("0");
  ASSERT_EQ(pages.size(), 2U);
  EXPECT_GT(pages[0].size(), 10'000U);
  EXPECT_EQ(pages[0].back(), many[pages[0].size() - 1]);
  Write("0", {{"1", "1,2", "2"}});
  EXPECT_THAT(Read("0")[0], ElementsAre("1", "2"));
}

TEST_F(KeptBranchesTest, WhatAnotherWindowHasWrittenStays) {
  {
    KeptBranches here(path_);
    EXPECT_THAT(here.Read("b"), IsEmpty());
    std::ofstream(PathOf(path_)) << "[Branches3]\nBook=b\nNumber=7\nPage0=1001\n";
    here.Write("c", {{"2"}});
  }
  EXPECT_THAT(Read("b"), ElementsAre(ElementsAre("1001")));
  EXPECT_THAT(Read("c"), ElementsAre(ElementsAre("2")));
}

TEST_F(KeptBranchesTest, AFileThatWasEditedIsReadInOrder) {
  std::ofstream(PathOf(path_)) << "[Branches3]\nBook=b\nNumber=x\nPage0=,2001,,1001,\n";
  EXPECT_THAT(Read("b"), ElementsAre(ElementsAre("1001", "2001")));
}

}  // namespace
}  // namespace desk::book
