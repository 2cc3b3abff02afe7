// Books and settings that are made by several desks at once, or by desks that are killed.
#ifndef _WIN32

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <random>
#include <thread>

#include "book/copy.h"
#include "book/files/files.h"
#include "book/files/paths.h"
#include "book/host/settings_file.h"
#include "book/sample.h"
#include "sharing/process.h"
#include "support/test_book.h"

namespace tavrix::sharing {
namespace {

namespace fs = std::filesystem;
using desk::book::Book;
using desk::book::PathOf;
using namespace std::chrono_literals;

class MakingTest : public testing::Test {
 protected:
  [[nodiscard]] std::string File(const std::string& name = "账簿.book") const {
    return folder_.File(name);
  }
  [[nodiscard]] std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(PathOf(folder_.Path()))) {
      names.push_back(desk::book::PathText(entry.path().filename()));
    }
    return names;
  }
  /// Kills a process at a random moment while it does `deed`; gives whether it had ended before.
  bool KillDuring(const std::function<void()>& deed, int most_milliseconds) {
    Process maker([&](int out) {
      (void)!write(out, "r", 1);
      deed();
      (void)!write(out, "done", 4);
    });
    maker.Await();
    std::this_thread::sleep_for(
        std::chrono::microseconds(random_() % static_cast<unsigned>(most_milliseconds * 1000)));
    maker.Kill();
    return maker.ReadAll().ends_with("done");
  }
  test::TempFolder folder_;
  std::mt19937 random_{20260101};
};

TEST_F(MakingTest, AKilledMakerLeavesNothingInTheWay) {
  using desk::book::StandardChart;
  const std::string from = File("from.book");
  (void)desk::book::CreateSampleBook(from, StandardChart::kEnterprise);
  const std::string vouchers = test::Scalar(Book::Open(from), "select count(*) from gl_accvouch");
  const std::function<void()> makers[] = {
      [&] { (void)desk::book::CreateSampleBook(File(), StandardChart::kEnterprise); },
      [&] { (void)desk::book::CopyBook(from, File()); }};
  int killed = 0;
  for (int round = 0; round < (Long() ? 100 : 6); ++round) {
    const auto& make = makers[round % 2];
    if (!KillDuring(make, round % 2 == 0 ? 500 : 200)) ++killed;
    if (!fs::exists(PathOf(File()))) make();
    // Whatever is there is whole.
    ASSERT_EQ(test::Scalar(Book::Open(File()), "select count(*) from gl_accvouch"), vouchers)
        << round;
    for (const std::string& name : Names()) {
      EXPECT_TRUE(name.starts_with("from.book") || name == "账簿.book") << name;
    }
    fs::remove(PathOf(File()));
  }
  EXPECT_GT(killed, 0);
  std::cout << killed << " makers killed\n";
}

TEST_F(MakingTest, AKilledCopyToAServerLeavesNothing) {
  if (test::ServerPlace().empty()) GTEST_SKIP() << "TAVRIX_ODBC names no server";
  const std::string from = File("from.book");
  (void)desk::book::CreateSampleBook(from, desk::book::StandardChart::kEnterprise);
  const std::string query = "select count(*),sum(debit) from gl_accvouch";
  const auto whole = test::AllRows(Book::Open(from), query);
  int killed = 0;
  int again = 0;
  // Four rounds when there is little time; more only until one was in time.
  for (int round = 0; round < 30 && (Long() || round < 4 || again == 0); ++round) {
    const std::string to = test::NewServerPlace();
    if (!KillDuring([&] { (void)desk::book::CopyBook(from, to); }, 250)) {
      ++killed;
      // Nothing is there, so that it can be copied again: the server ends what was under way first.
      // Or it died after its end, and all is there.
      try {
        (void)desk::book::CopyBook(from, to);
        ++again;
      } catch (const desk::book::DatabaseError& error) {
        EXPECT_THAT(error.what(), ::testing::HasSubstr("已经有账簿")) << round;
      }
    }
    EXPECT_EQ(test::AllRows(Book::Open(to), query), whole) << round;
  }
  EXPECT_GT(again, 0);
  std::cout << killed << " copies killed, " << again << " of them before their end\n";
}

// Whoever closes a book last folds its log and removes it: others must see that somebody is there.
TEST_F(MakingTest, ABookOpenedTwiceInOneProgramStaysHeld) {
  const auto told = [this](const std::string& name) { return PathOf(File(name)); };
  const auto await = [&](const std::string& name) {
    for (int i = 0; i < 10'000 && !fs::exists(told(name)); ++i) std::this_thread::sleep_for(2ms);
  };
  Process other([&](int out) {  // before a book is open: it would take over its state
    await("opened");
    (void)Book::Open(File());
    std::ofstream(told("closed")) << "x";
    await("changed");
    const std::string text = test::Scalar(Book::Open(File()), "select chelp from gl_code");
    (void)!write(out, text.data(), text.size());
  });
  (void)Book::Create(File(), {.accounts = {{.code = "1001", .name = "a", .category = "资产"}}});
  const Book book = Book::Open(File());
  (void)Book::Open(File());
  std::ofstream(told("opened")) << "x";
  await("closed");
  test::Run(book, "update gl_code set chelp='kept'");
  std::ofstream(told("changed")) << "x";
  EXPECT_EQ(other.ReadAll(), "kept");
}

TEST_F(MakingTest, OfTwoDesksThatMakeOneBookOneSucceeds) {
  for (int round = 0; round < 10; ++round) {
    const auto start = std::chrono::steady_clock::now() + 20ms;
    const auto make = [&](int out) {
      while (std::chrono::steady_clock::now() < start) {
      }
      try {
        (void)Book::Create(File(), {.accounts = test::FewAccounts()});
        (void)!write(out, "made", 4);
      } catch (const desk::book::DatabaseError&) {
        (void)!write(out, "none", 4);
      }
    };
    Process first(make);
    Process second(make);
    const std::string told = first.ReadAll() + second.ReadAll();
    EXPECT_TRUE(told == "madenone" || told == "nonemade") << told;
    const Book book = Book::Open(File());
    EXPECT_EQ(test::Scalar(book, "select count(*) from gl_code"), "8");
    fs::remove(PathOf(File()));
  }
}

TEST_F(MakingTest, KilledWritersOfSettingsLeaveAWholeFileAndNothingElse) {
  const std::string file = File("desk.txt");
  const std::string filler(900'000, 'x');
  const auto write = [&] { desk::book::ReplaceFile(PathOf(file), "[a]\nfiller=" + filler + "\n"); };
  write();
  for (int round = 0; round < (Long() ? 200 : 10); ++round) {
    (void)KillDuring(
        [&] {
          for (;;) write();
        },
        20);
    desk::book::SharedSettingsFile settings;
    settings.SetFileName(file);
    EXPECT_EQ(settings.ReadValue("a", "filler", ""), filler) << round;
  }
  write();
  EXPECT_EQ(Names(), std::vector<std::string>{"desk.txt"});
}

// What one of them is making looks like what another one has left.
TEST_F(MakingTest, WritersOfOneFileDoNotRemoveEachOthersNewFiles) {
  const auto path = PathOf(File("desk.txt"));
  std::atomic<int> failed = 0;
  std::vector<std::thread> writers;
  for (int i = 0; i < 4; ++i) {
    writers.emplace_back([&] {
      for (int round = 0; round < (Long() ? 20'000 : 1000); ++round) {
        try {
          desk::book::ReplaceFile(path, "[a]\n");
        } catch (const std::exception&) {
          ++failed;
        }
      }
    });
  }
  for (std::thread& writer : writers) writer.join();
  EXPECT_EQ(failed, 0);
  EXPECT_EQ(Names(), std::vector<std::string>{"desk.txt"});
}

TEST_F(MakingTest, FilesOfTheUsersOwnStay) {
  const std::string left = "账簿.book.tavrix-01234567890123456789.new";
  const std::vector<std::string> own = {"账簿.book.2024.new", "账簿.book.tavrix-2024.new",
                                        "账簿.book.01234567890123456789.new"};
  std::ofstream(PathOf(File(left))) << "x";
  for (const std::string& name : own) std::ofstream(PathOf(File(name))) << "x";
  (void)Book::Create(File(), {.accounts = test::FewAccounts()});
  for (const std::string& name : own) EXPECT_TRUE(fs::exists(PathOf(File(name)))) << name;
  EXPECT_FALSE(fs::exists(PathOf(File(left))));
}

TEST_F(MakingTest, ASettingsFileKeepsItsOwnerAndItsMode) {
  const std::string file = File("desk.txt");
  std::ofstream(PathOf(file)) << "[a]\nb=1\n";
  ASSERT_EQ(chmod(file.c_str(), 0640), 0);
  const bool root = geteuid() == 0;
  if (root) {
    ASSERT_EQ(chown(file.c_str(), 12345, 23456), 0);
  }
  {
    desk::book::SharedSettingsFile settings;
    settings.SetFileName(file);
    settings.WriteValue("a", "b", "2");
  }
  struct stat now {};
  ASSERT_EQ(stat(file.c_str(), &now), 0);
  EXPECT_EQ(now.st_mode & 07777U, 0640U);
  if (root) {
    EXPECT_EQ(now.st_uid, 12345U);
    EXPECT_EQ(now.st_gid, 23456U);
  }
  EXPECT_THAT(desk::book::ReadFile(PathOf(file)), testing::HasSubstr("b=2"));
}

}  // namespace
}  // namespace tavrix::sharing

#endif
