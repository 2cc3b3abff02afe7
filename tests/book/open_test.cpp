#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <thread>

#ifndef _WIN32
#include <unistd.h>
#endif

#include "book/files/paths.h"
#include "host/calls.h"
#include "host/non_copyable.h"
#include "support/matchers.h"
#include "support/test_book.h"

namespace desk::book {
namespace {

class OpenTest : public testing::Test {
 protected:
  [[nodiscard]] std::string File(const std::string& name = "账簿.book") const {
    return folder_.File(name);
  }
  void Write(const std::string& content) const {
    std::ofstream(PathOf(File()), std::ios::binary) << content;
  }
  [[nodiscard]] Book CreateBook() const {
    return Book::Create(File(), {.accounts = tavrix::test::FewAccounts()});
  }
  [[nodiscard]] Book OpenHasty(Access access = Access::kReadWrite) const {
    return Book::Open(
        {.path = File(), .access = access, .patience = std::chrono::milliseconds(20)});
  }
  [[nodiscard]] std::string Failure() const {
    try {
      (void)Book::Open(File());
      return {};
    } catch (const DatabaseError& error) {
      return error.what();
    }
  }
  TempFolder folder_;
};

TEST_F(OpenTest, ABookComesBackAsItWasLeft) {
  {
    Book book = CreateBook();
    book.SetSetting("system", "kmbm", "422");
  }
  const Book book = Book::Open(File());
  EXPECT_EQ(book.Faults(), "");
  EXPECT_EQ(book.Driver(), "sqlite");
  EXPECT_FALSE(book.ReadOnly());
  EXPECT_EQ(host::SettingText(*book.System(), "kmbm"), "422");
  EXPECT_EQ(host::SettingText(*book.System(), "nothing"), "");
  EXPECT_EQ(Scalar(book, "select count(*) from gl_code"), "8");
  EXPECT_EQ(Scalar(book, "pragma journal_mode"), "wal");
  EXPECT_EQ(Scalar(book, "pragma synchronous"), "2");
}

TEST_F(OpenTest, RefusesWhatIsNoBook) {
  EXPECT_THAT(Failure(), HasSubstr("账簿文件不存在"));
  EXPECT_FALSE(std::filesystem::exists(PathOf(File())));
  Write(
      "This is a letter, not a database, and it is longer than a header of a hundred bytes. "
      "It goes on for a while.");
  EXPECT_THAT(Failure(), HasSubstr("不是账簿"));
  Write("");
  EXPECT_THAT(Failure(), HasSubstr("gl_code"));
  std::filesystem::remove(PathOf(File()));
  std::filesystem::create_directory(PathOf(File()));
  EXPECT_THAT(Failure(), HasSubstr("无法打开账簿文件"));
}

TEST_F(OpenTest, RefusesABookOfALaterVersion) {
  tavrix::test::Run(CreateBook(), "pragma user_version=99");
  EXPECT_THAT(Failure(), HasSubstr("更新的版本"));
}

TEST_F(OpenTest, ABookOfAnEarlierDeskGetsTheRulesOfItsLedgersOnce) {
  const auto rules = [](const Book& book) {
    return tavrix::test::Scalar(book, "select count(*) from sqlite_master where type='trigger'");
  };
  std::string all;
  {
    const Book book = CreateBook();
    all = rules(book);
    for (const std::string& name :
         tavrix::test::AllRows(book, "select name from sqlite_master where type='trigger'")) {
      tavrix::test::Run(book, "drop trigger " + name);
    }
    tavrix::test::Run(book, "pragma user_version=1");
  }
  EXPECT_NE(all, "0");
  for (int i = 0; i < 2; ++i) EXPECT_EQ(rules(Book::Open(File())), all);
}

TEST_F(OpenTest, NeverReplacesAFile) {
  Write("precious");
  EXPECT_THROW((void)CreateBook(), DatabaseError);
  EXPECT_EQ(std::filesystem::file_size(PathOf(File())), 8U);
}

TEST_F(OpenTest, AFailedCreationLeavesNoFile) {
  const Account twice = {.code = "1001", .name = "a", .category = "资产"};
  EXPECT_THROW((void)Book::Create(File(), {.accounts = {twice, twice}}), DatabaseError);
  EXPECT_TRUE(std::filesystem::is_empty(PathOf(folder_.Path())));
}

TEST_F(OpenTest, OpensWhatOthersMadeAndNamesWhatItLacks) {
  {
    const Book book = CreateBook();
    const std::string triggers = "select name from sqlite_master where type='trigger'";
    for (const std::string& name : tavrix::test::AllRows(book, triggers)) {
      tavrix::test::Run(book, "drop trigger " + name);
    }
    tavrix::test::Run(book, "drop table tvxbz");
    tavrix::test::Run(book, "drop table desk_identifier");
    tavrix::test::Run(book, "alter table gl_code drop column cother");
    tavrix::test::Run(book, "pragma user_version=0");
  }
  const Book book = Book::Open(File());
  EXPECT_THAT(book.Faults(), testing::AllOf(HasSubstr("tvxbz"), HasSubstr("cother")));
  EXPECT_EQ(book.System()->NewIdentifier("gl_code", "i_ID").id, 9);
}

TEST_F(OpenTest, AReadOnlyBookReadsAndSaysWhyItDoesNotWrite) {
  (void)CreateBook();
  const Book book = OpenHasty(Access::kReadOnly);
  tavrix::test::ExpectReadOnly(book);
}

#ifndef _WIN32
/// Without this a test run by the administrator could write anywhere.
class AsNobody : private tavrix::host::NonCopyable {
 public:
  AsNobody() { EXPECT_TRUE(geteuid() != 0 || seteuid(65534) == 0); }
  ~AsNobody() { EXPECT_EQ(seteuid(getuid()), 0); }
};

TEST_F(OpenTest, ABookThatNobodyMayWriteOpensForReading) {
  namespace fs = std::filesystem;
  const fs::path folder = PathOf(folder_.Path());
  (void)CreateBook();
  fs::permissions(PathOf(File()), fs::perms(0444));
  fs::permissions(folder, fs::perms(0555));
  {
    const AsNobody nobody;
    const Book book = Book::Open(File());
    EXPECT_TRUE(book.ReadOnly());
    EXPECT_EQ(host::QueryScalar(*book.System(), "select count(*) from gl_code").ToLong(), 8);
    EXPECT_THAT(host::ExecuteSql(*book.System(), "delete from gl_code"), HasSubstr("只读"));
  }
  fs::permissions(folder, fs::perms(0755));
}

TEST_F(OpenTest, ABookInAFolderThatNobodyMayWriteOpensForReading) {
  namespace fs = std::filesystem;
  const fs::path folder = PathOf(folder_.Path());
  for (const char* mode : {"wal", "delete"}) {
    tavrix::test::Run(CreateBook(), std::string("pragma journal_mode=") + mode);
    fs::permissions(PathOf(File()), fs::perms(0666));
    fs::permissions(folder, fs::perms(0555));
    {
      const AsNobody nobody;
      const Book book = Book::Open(File());
      EXPECT_TRUE(book.ReadOnly()) << mode;
      EXPECT_EQ(host::QueryScalar(*book.System(), "select count(*) from gl_code").ToLong(), 8);
      EXPECT_THAT(host::ExecuteSql(*book.System(), "delete from gl_code"), HasSubstr("只读"));
    }
    fs::permissions(folder, fs::perms(0755));
    EXPECT_FALSE(Book::Open(File()).ReadOnly());
    fs::remove(PathOf(File()));
  }
}

TEST_F(OpenTest, ABookWithALogInAFolderThatNobodyMayWriteIsReadWithIt) {
  namespace fs = std::filesystem;
  const TempFolder elsewhere;
  const std::string made = elsewhere.File("x");
  {
    const Book book = Book::Create(made, {.accounts = tavrix::test::FewAccounts()});
    tavrix::test::Run(book, "update gl_code set chelp='last' where i_id=1");
    for (const char* suffix : {"", "-wal"}) {
      fs::copy(PathOf(made + suffix), PathOf(File() + suffix));
      fs::permissions(PathOf(File() + suffix), fs::perms(0666));
    }
  }
  const auto size = fs::file_size(PathOf(File() + "-wal"));
  fs::permissions(PathOf(folder_.Path()), fs::perms(0555));
  {
    const AsNobody nobody;
    const Book book = Book::Open(File());
    EXPECT_TRUE(book.ReadOnly());
    EXPECT_EQ(Scalar(book, "select chelp from gl_code where i_id=1"), "last");
    EXPECT_THAT(host::ExecuteSql(*book.System(), "delete from gl_code"), HasSubstr("只读"));
  }
  EXPECT_EQ(fs::file_size(PathOf(File() + "-wal")), size);
  fs::permissions(PathOf(folder_.Path()), fs::perms(0755));
}
#endif

// Whoever comes in the moment before the others are done would read for the rest of the day.
TEST_F(OpenTest, ABookThatIsHeldForAMomentIsNotOpenedForReading) {
  using Clock = std::chrono::steady_clock;
  const Book other = CreateBook();
  tavrix::test::Run(other, "pragma journal_mode=delete");
  const Place place = {.path = File(), .patience = std::chrono::milliseconds(200)};
  const auto start = Clock::now();
  (void)Book::Open(place);
  tavrix::test::Run(other, "pragma journal_mode=delete");
  const auto free = Clock::now() - start;
  EXPECT_EQ(Scalar(other, "pragma journal_mode"), "delete");
  tavrix::test::Run(other, "begin exclusive");
  std::thread ends([&] {
    std::this_thread::sleep_for(free + place.patience * 3 / 2);
    tavrix::test::Run(other, "rollback");
  });
  try {
    EXPECT_FALSE(Book::Open(place).ReadOnly());
  } catch (const DatabaseError& error) {
    EXPECT_EQ(error.Kind(), ErrorKind::kLocked) << error.what();
  }
  ends.join();
}

TEST_F(OpenTest, ABookInAnotherJournalModeServes) {
  const Book other = CreateBook();
  tavrix::test::Run(other, "pragma journal_mode=delete");
  const Transaction transaction(other.GetSession());
  const Book book = OpenHasty();
  EXPECT_EQ(host::QueryScalar(*book.System(), "select count(*) from gl_code").ToLong(), 8);
}

TEST_F(OpenTest, ALockedBookSaysSoAndWorksAgain) {
  const Book other = CreateBook();
  const Book book = OpenHasty();
  const std::string sql = "update gl_code set chelp='x' where i_id=1";
  {
    const Transaction transaction(other.GetSession());
    EXPECT_THAT(host::ExecuteSql(*book.System(), sql), HasSubstr("正被其他用户使用"));
    EXPECT_THAT(book.System()->NewIdentifier("gl_code", "i_id").error, HasSubstr("其他用户"));
    EXPECT_EQ(host::QueryScalar(*book.System(), "select count(*) from gl_code").ToLong(), 8);
  }
  EXPECT_EQ(host::ExecuteSql(*book.System(), sql), "");
}

TEST_F(OpenTest, AHalfReadResultDoesNotStandInTheWayOfAWrite) {
  const Book other = CreateBook();
  const Book book = OpenHasty();
  const auto rows = host::QueryRows(*book.System(), "select ccode from gl_code");
  tavrix::test::Run(other, "delete from gl_code where i_id=1");
  EXPECT_EQ(host::ExecuteSql(*book.System(), "delete from gl_code where i_id=3"), "");
  EXPECT_EQ(rows->GetRows().Rows(), 8U);
}

TEST(IdentifierTest, NeverGivesOneTwice) {
  const Book book = MakeBook();
  EXPECT_EQ(book.System()->NewIdentifier("GL_CODE", "I_ID").id, 9);
  EXPECT_EQ(book.System()->NewIdentifier("gl_code", "i_ID").id, 10);
  tavrix::test::Run(book, "insert into gl_code(i_id,ccode)values(20,'9')");
  EXPECT_EQ(book.System()->NewIdentifier("gl_code", "i_ID").id, 21);
  tavrix::test::Run(book, "delete from gl_code");
  EXPECT_EQ(book.System()->NewIdentifier("gl_code", "i_ID").id, 22);
}

TEST(IdentifierTest, RefusesWhatHasNoneToGive) {
  const Book book = MakeBook();
  EXPECT_NE(book.System()->NewIdentifier("gl_code", "ccode").error, "");
  EXPECT_NE(book.System()->NewIdentifier("sqlite_master", "i_id").error, "");
  EXPECT_NE(book.System()->NewIdentifier("gl_code", "i_id;").error, "");
  tavrix::test::Run(book, "insert into gl_code(i_id,ccode)values(2147483646,'9')");
  EXPECT_EQ(book.System()->NewIdentifier("gl_code", "i_ID").id, 2147483647);
  EXPECT_THAT(book.System()->NewIdentifier("gl_code", "i_ID").error, HasSubstr("用完"));
}

}  // namespace
}  // namespace desk::book
