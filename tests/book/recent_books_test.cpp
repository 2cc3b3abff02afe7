#include "book/host/recent_books.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/matchers.h"
#include "support/temp_folder.h"

namespace desk::book {
namespace {

class RecentBooksTest : public testing::Test {
 protected:
  /// Their places, a star before those that are pinned; as another window reads them.
  [[nodiscard]] std::vector<std::string> Kept() const {
    std::vector<std::string> kept;
    SharedSettingsFile file;
    const RecentBooks books(file, path_);
    for (const auto& [place, pinned] : books.Entries()) {
      kept.push_back((pinned ? "*" : "") + place);
    }
    return kept;
  }
  tavrix::test::TempFolder folder_;
  std::string path_ = folder_.File("desk.txt");
  SharedSettingsFile file_;
};

TEST_F(RecentBooksTest, PinnedOnesStandFirstAndAreNeverPushedOut) {
  RecentBooks books(file_, path_);
  for (const char* place : {"a", "b", "c"}) books.Remember(place);
  EXPECT_THAT(Kept(), ElementsAre("c", "b", "a"));
  EXPECT_TRUE(books.SetPinned("a", true));
  EXPECT_TRUE(books.SetPinned("c", true));
  EXPECT_THAT(Kept(), ElementsAre("*a", "*c", "b"));
  SharedSettingsFile file;
  RecentBooks other(file, path_);
  for (int i = 0; i < 20; ++i) other.Remember(std::to_string(i));
  other.Remember("a");
  EXPECT_THAT(Kept(), ElementsAre("*a", "*c", "19", "18", "17", "16", "15", "14"));
  EXPECT_TRUE(books.SetPinned("a", false)) << "what another window has written stays";
  EXPECT_THAT(Kept(), ElementsAre("*c", "a", "19", "18", "17", "16", "15", "14"));
  books.Forget("c");
  EXPECT_THAT(Kept(), ElementsAre("a", "19", "18", "17", "16", "15", "14"));
}

TEST_F(RecentBooksTest, OneIsLeftForTheLatest) {
  RecentBooks books(file_, path_);
  for (std::size_t i = 0; i < RecentBooks::kMax; ++i) books.Remember(std::to_string(i));
  for (std::size_t i = 0; i < RecentBooks::kMax; ++i) {
    EXPECT_EQ(books.SetPinned(std::to_string(i), true), i + 1 < RecentBooks::kMax);
  }
  books.Remember("new");
  EXPECT_EQ(Kept().back(), "new");
  EXPECT_EQ(Kept().size(), RecentBooks::kMax);
}

}  // namespace
}  // namespace desk::book
