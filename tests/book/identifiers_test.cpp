#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

#include "book/book.h"
#include "book/session/identifiers.h"
#include "support/test_book.h"

namespace desk::book {
namespace {

/// In a file, and on the server that the environment names.
class IdentifierRace : public testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
    const bool server = GetParam() == "server";
    if (server && tavrix::test::ServerPlace().empty())
      GTEST_SKIP() << "TAVRIX_ODBC names no server";
    place_ = server ? tavrix::test::NewServerPlace() : folder_.File("账簿.book");
    (void)Book::Create(place_, {.accounts = tavrix::test::FewAccounts()});
  }

  [[nodiscard]] std::vector<int> Draw(int count) const {
    const Book book = Book::Open(place_);
    std::vector<int> ids;
    for (int i = 0; i < count; ++i) {
      ids.push_back(NewIdentifier(book.GetSession(), "gl_code", "i_id"));
    }
    return ids;
  }

 private:
  tavrix::test::TempFolder folder_;
  std::string place_;
};

TEST_P(IdentifierRace, TwoDesksGetDifferentIdentifiers) {
  constexpr int kEach = 40;
  std::vector<int> theirs;
  std::thread other([&] { theirs = Draw(kEach); });
  std::vector<int> all = Draw(kEach);
  other.join();
  all.insert(all.end(), theirs.begin(), theirs.end());
  std::ranges::sort(all);
  EXPECT_EQ(std::ranges::adjacent_find(all), all.end());
  EXPECT_EQ(all.size(), 2U * kEach);
}

INSTANTIATE_TEST_SUITE_P(Engines, IdentifierRace, testing::Values("file", "server"),
                         [](const auto& engine) { return engine.param; });

}  // namespace
}  // namespace desk::book
