// Servers that accept and fall silent, at every moment of a connection's life.

#ifndef _WIN32

#include <gmock/gmock.h>

#include <atomic>
#include <functional>

#include "host/calls.h"
#include "support/matchers.h"
#include "support/relay.h"
#include "support/test_book.h"

namespace desk::book {
namespace {

using std::chrono::milliseconds;

constexpr const char* kChange = "update gl_code set chelp='silent' where i_id=1";
constexpr const char* kUnknown = "这次操作是否完成不得而知";

class SilentServer : public testing::Test {
 protected:
  void SetUp() override {
    if (tavrix::test::ServerPlace().empty()) GTEST_SKIP() << "TAVRIX_ODBC names no server";
    const std::string place = tavrix::test::NewServerPlace();
    (void)Book::Create(place, {.accounts = tavrix::test::FewAccounts()});
    place_ = place;
    relay_ = std::make_unique<tavrix::test::Relay>(place);
  }
  [[nodiscard]] Book Open(const std::string& more = {}) const {
    return Book::Open({.path = relay_->Place() + more,
                       .patience = milliseconds(200),
                       .time_limit = milliseconds(300)});
  }
  /// What the action threw. It must not last longer than the time limit and what is granted beyond.
  std::string Failure(const std::function<void()>& action, milliseconds most = milliseconds(6000)) {
    const auto start = std::chrono::steady_clock::now();
    std::string text;
    try {
      action();
    } catch (const DatabaseError& error) {
      text = error.what();
      reason_ = error.Kind();
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, most) << text;
    return text;
  }
  std::string place_;
  std::unique_ptr<tavrix::test::Relay> relay_;
  ErrorKind reason_ = ErrorKind::kOther;
};

TEST_F(SilentServer, WhileConnecting) {
  relay_->FallSilent();
  EXPECT_THAT(Failure([&] { (void)Open("Pwd=p9;"); }),
              testing::AllOf(HasSubstr("没有回答"), testing::Not(HasSubstr("p9"))));
  relay_->Speak();
  EXPECT_EQ(Scalar(Open(), "select count(*) from gl_code"), "8");
}

TEST_F(SilentServer, InAStatementAndTheNextOneWorks) {
  const Book book = Open();
  for (const bool arrives : {true, false}) {
    SCOPED_TRACE(arrives);
    relay_->FallSilentAt("update gl_code", arrives);
    EXPECT_THAT(Failure([&] { tavrix::test::Run(book, kChange); }), HasSubstr(kUnknown));
    EXPECT_EQ(reason_, ErrorKind::kGone);
    EXPECT_NE(Failure([&] { tavrix::test::Run(book, kChange); }), "") << "it is still silent";
    relay_->Speak();
    EXPECT_EQ(host::ExecuteSql(*book.System(), "update gl_code set chelp='again' where i_id=1"),
              "");
    EXPECT_EQ(Scalar(book, "select chelp from gl_code where i_id=1"), "again");
  }
}

TEST_F(SilentServer, AmongTheRowsOfAResult) {
  const Book book = Open();
  relay_->FallSilentAfter(30'000);
  const std::string text = Failure([&] {
    const auto rows =
        book.GetSession().Own().Query("select generate_series(1,100000),'资产'", Origin::kDesk);
    while (rows->Next()) {
    }
  });
  EXPECT_THAT(text, HasSubstr("没有回答"));
  relay_->Speak();
  EXPECT_EQ(Scalar(book, "select count(*) from gl_code"), "8");
  EXPECT_THAT(Failure([&] { (void)Open("UseDeclareFetch=1;"); }), HasSubstr("UseDeclareFetch"));
}

TEST_F(SilentServer, InACommitLeavesAllOrNothing) {
  for (const bool arrives : {true, false}) {
    SCOPED_TRACE(arrives);
    relay_ = std::make_unique<tavrix::test::Relay>(place_);
    Book book = Open();
    {
      Transaction transaction(book.GetSession());
      tavrix::test::Run(book, arrives ? kChange : "update gl_code set chelp='lost' where i_id=1");
      relay_->FallSilentAt("COMMIT", arrives);
      EXPECT_THAT(Failure([&] { transaction.Commit(); }), HasSubstr(kUnknown));
    }
    relay_->Speak();
    EXPECT_EQ(Scalar(book, "select chelp from gl_code where i_id=1"), "silent");
    // Until its connection ends, the server keeps the lock of a transaction that it holds for open.
    EXPECT_EQ(host::ExecuteSql(*book.System(), kChange).empty(), arrives);
  }
  relay_ = nullptr;
  EXPECT_EQ(host::ExecuteSql(*Book::Open(place_).System(), kChange), "");
}

/// Has enough after a tenth of a second.
class Impatient final : public WaitPort {
 public:
  bool OnWait(milliseconds waited) override {
    ++asked;
    return waited < milliseconds(100);
  }
  void OnWaited() noexcept override { ++ended; }
  int asked = 0;
  int ended = 0;
};

TEST_F(SilentServer, TheUserNeedNotWaitAndTheBookCloses) {
  const auto user = std::make_shared<Impatient>();
  const auto start = std::chrono::steady_clock::now();
  {
    const Book book =
        Book::Open({.path = relay_->Place(), .time_limit = milliseconds(0), .waiting = user});
    const int waits = user->ended;
    EXPECT_GT(waits, 0);
    EXPECT_THAT(
        Failure([&] { tavrix::test::Run(book, "select pg_sleep(60)"); }, milliseconds(3000)),
        HasSubstr("已不再等待"));
    EXPECT_EQ(Scalar(book,
                     "select count(*) from pg_stat_activity where query like '%sleep(6%' and "
                     "state='active' and pid<>pg_backend_pid()"),
              "0")
        << "the server was not told";
    relay_->FallSilent();
    EXPECT_THAT(Failure([&] { tavrix::test::Run(book, kChange); }, milliseconds(3000)),
                HasSubstr("已不再等待"));
    EXPECT_GT(user->ended, waits + 2);
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(8));
}

TEST_F(SilentServer, OneThatLivesEndsAStatementItselfWhenItsTimeIsOver) {
  const Book book = Open();
  EXPECT_THAT(Failure([&] { tavrix::test::Run(book, "select pg_sleep(60)"); }, milliseconds(3000)),
              HasSubstr("超过了时间限制"));
  EXPECT_EQ(reason_, ErrorKind::kOther);
  EXPECT_EQ(Scalar(book, "select count(*) from gl_code"), "8");
}

TEST_F(SilentServer, TheTimeLimitIsASettingOfTheBook) {
  Book::Open(place_).SetSetting("desk", "time_limit", "1");
  const Book book = Book::Open(place_);
  EXPECT_THAT(Failure([&] { tavrix::test::Run(book, "select pg_sleep(60)"); }, milliseconds(4000)),
              HasSubstr("超过了时间限制"));
  for (const char* nonsense : {"", "x", "-1", "1e9", "99999999999"}) {
    Book::Open(place_).SetSetting("desk", "time_limit", nonsense);
    EXPECT_EQ(Scalar(Book::Open(place_), "show statement_timeout"), "30s") << nonsense;
  }
}

}  // namespace
}  // namespace desk::book

#endif
