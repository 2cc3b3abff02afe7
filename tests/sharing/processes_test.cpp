// Desks as processes of their own, which work at once or are killed without warning.
#ifndef _WIN32

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <iostream>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <thread>

#include "book/posting.h"
#include "editing/editor_test.h"
#include "maintenance/view_test.h"
#include "sharing/process.h"
#include "sharing/shared_book.h"

namespace tavrix::sharing {
namespace {

using desk::book::Book;
using editing::Editor;
using namespace std::chrono_literals;

/// One desk at work on a shared book: what it is about to do, and, once the library has reported
/// success, that it is done. One line each: "try WORD ID", "add ID CODE", "move ID CODE",
/// "delete ID", "post NUMBER".
class Worker {
 public:
  Worker(const SharedBook& shared, int out, unsigned seed)
      : editor_(shared.Open()), view_(shared.Open()), out_(out), random_(seed) {}

  void Add() {
    const std::string parent = AnyCode(Below(2) == 0 ? "igrade<3" : "igrade=2 and bend=1");
    if (parent.empty()) return;
    Tell("try add 0");
    editor_.saved.clear();
    std::string code;
    editor_.Open(editing::Below(parent, CategoryOf(parent)), [&] {
      code = editor_.Code();
      editor_.SetName("下级");
      (void)editor_.dialog->FileSave();
    });
    if (!editor_.saved.empty()) {
      Tell("add " + std::to_string(editor_.saved.front().second) + " " + code);
    }
  }
  /// A leaf with its postings goes to a free code beside it, or below another account.
  void Move() {
    const std::string code = AnyCode("igrade=2 and bend=1");
    if (code.empty()) return;
    const std::string id = IdOf(code);
    const std::string parent = Below(2) == 0 ? code.substr(0, 4) : AnyCode("igrade<3");
    const std::string target = parent + std::to_string(5000 + Below(5000));
    Tell("try move " + id);
    editor_.saved.clear();
    editor_.Open(editing::Edit(std::stoi(id)), [&] {
      editor_.SetCode(target);
      (void)editor_.dialog->FileSave();
    });
    if (!editor_.saved.empty()) Tell("move " + id + " " + target);
  }
  void Delete() {
    Delete(AnyCode("igrade>1 and bend=1 and ccode not in(select ccode from gl_accvouch)"));
  }
  /// With all accounts below it, if none has postings.
  void DeleteAny() { Delete(AnyCode("igrade>1")); }
  void Rename() {
    const std::string id = IdOf(AnyCode("igrade>1"));
    if (id == "(none)") return;
    editor_.saved.clear();
    editor_.Open(editing::Edit(std::stoi(id)), [&] {
      editor_.SetName("改名" + std::to_string(Below(1000)));
      (void)editor_.dialog->FileSave();
    });
    if (!editor_.saved.empty()) Tell("rename " + id);
  }
  void Post() {
    const desk::book::Voucher voucher = {
        .year = 2026,
        .month = 1,
        .day = 1,
        .entries = {{.summary = "a", .code = AnyCode("bend=1"), .debit = 1 + Below(100)},
                    {.summary = "b", .code = AnyCode("bend=1"), .credit = 0}}};
    desk::book::Voucher balanced = voucher;
    balanced.entries[1].credit = balanced.entries[0].debit;
    try {
      Tell("try post 0");
      Tell("post " + std::to_string(desk::book::Post(editor_.book.GetSession(), balanced)));
    } catch (const desk::book::DatabaseError& error) {
      // The account may have got a sub-account since it was chosen.
      if (error.Reason() != desk::book::Trouble::kRefused) throw;
    }
  }
  void Tell(const std::string& line) {
    const std::string text = line + "\n";
    if (write(out_, text.data(), text.size()) != static_cast<ssize_t>(text.size())) _exit(2);
  }
  int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

 private:
  void Delete(const std::string& code) {
    if (code.empty()) return;
    const std::string id = IdOf(code);
    Tell("try delete " + id);
    ASSERT_TRUE(view_.view.Init(view_.host.System(), 0, 0) && view_.view.Refresh());
    view_.Grid().SetRow(view_.Grid().FindRow(code, 1, 0));
    view_.user.answers = {viewkit::UserPort::Answer::kYes};
    view_.user.in_question = [this](const auto&) {
      std::this_thread::sleep_for(std::chrono::milliseconds(Below(5)));
    };
    if (view_.view.FileDelete()) Tell("delete " + id);
  }
  std::string IdOf(const std::string& code) {
    return test::Scalar(editor_.book, "select i_id from gl_code where ccode='" + code + "'");
  }
  std::string AnyCode(const std::string& where) {
    const auto codes =
        test::AllRows(editor_.book, "select ccode from gl_code where " + where + " order by ccode");
    return codes.empty() ? ""
                         : codes[static_cast<std::size_t>(Below(static_cast<int>(codes.size())))];
  }
  std::string CategoryOf(const std::string& code) {
    return test::Scalar(editor_.book, "select cclass from gl_code where ccode='" + code + "'");
  }

  Editor editor_;
  test::ViewTest view_;
  int out_;
  std::mt19937 random_;
};

/// What desks have been told is saved.
struct Ledger {
  std::map<std::string, std::string> codes;  ///< by identifier
  std::set<std::string> given;               ///< identifiers of all accounts
  std::set<std::string> numbers;             ///< of vouchers
  std::string doubtful;                      ///< the identifier that the last try concerns
  std::map<std::string, int> deeds;          ///< how often each was reported as done
  bool twice = false;                        ///< an identifier or a number was given twice

  void Take(const std::string& told) {
    std::istringstream lines(told);
    for (std::string line; std::getline(lines, line) && !lines.eof();) {
      std::istringstream words(line);
      std::string word;
      std::string id;
      std::string code;
      words >> word >> id >> code;
      ++deeds[word];
      if (word == "try") doubtful = code;
      if (word == "add") {
        twice = !given.insert(id).second || twice;
        codes[id] = code;
      }
      if (word == "move") codes[id] = code;
      if (word == "delete") codes.erase(id);
      if (word == "post") twice = !numbers.insert(id).second || twice;
    }
  }
};

/// What a desk was about to do when it was killed has been done or not: from now on it counts.
void Settle(const Book& book, Ledger& ledger) {
  if (ledger.doubtful.empty() || ledger.doubtful == "0") return;
  const std::string code =
      test::Scalar(book, "select ccode from gl_code where i_id=" + ledger.doubtful);
  ledger.codes.erase(ledger.doubtful);
  if (code != "(none)") ledger.codes[ledger.doubtful] = code;
}

std::vector<std::string> Missing(const Book& book, const Ledger& ledger) {
  std::map<std::string, std::string> stored;
  const auto rows =
      book.GetSession().Own().Query("select i_id,ccode from gl_code", desk::book::Origin::kDesk);
  while (rows->Next()) stored[rows->Get(0).ToText()] = rows->Get(1).ToText();
  std::vector<std::string> missing;
  for (const auto& [id, code] : ledger.codes) {
    const auto found = stored.find(id);
    const bool there = found != stored.end() && found->second == code;
    if (!there && id != ledger.doubtful) missing.push_back("account " + id + " " + code);
  }
  std::set<std::string> numbers;
  for (std::string& number :
       test::AllRows(book, "select distinct voucher_number from gl_accvouch")) {
    numbers.insert(std::move(number));
  }
  for (const std::string& number : ledger.numbers) {
    if (!numbers.contains(number)) missing.push_back("voucher " + number);
  }
  return missing;
}

class Processes : public testing::TestWithParam<const char*> {
 protected:
  SharedBook shared_{GetParam()};
};
INSTANTIATE_TEST_SUITE_P(Engines, Processes, testing::ValuesIn(SharedEngines()));

TEST_P(Processes, ADeskKilledAtAnyMomentLosesNothingThatItReportedAsSaved) {
  const int kills = Long() ? 200 : 5;
  std::mt19937 random(20260101);
  Ledger ledger;
  int survived = 0;
  for (int round = 0; round < kills; ++round) {
    Process desk([&](int out) {
      Worker worker(shared_, out, static_cast<unsigned>(round));
      worker.Tell("ready");
      void (Worker::*const deeds[])() = {&Worker::Add,    &Worker::Post, &Worker::Move,
                                         &Worker::Delete, &Worker::Add,  &Worker::Post};
      for (;;) (worker.*deeds[worker.Below(6)])();
    });
    const auto start = std::chrono::steady_clock::now();
    desk.Await();
    // A busy machine gets more time, so that something is saved before the end.
    const std::chrono::microseconds ready = std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::steady_clock::now() - start);
    const auto most = std::max<long>(150'000, 8 * ready.count());
    std::this_thread::sleep_for(std::chrono::microseconds(static_cast<long>(random()) % most));
    desk.Kill();
    ledger.doubtful.clear();
    ledger.Take(desk.ReadAll());
    survived += ledger.codes.empty() ? 0 : 1;
    const Book book = shared_.Open();
    if (std::string(GetParam()) == "sqlite") {
      ASSERT_EQ(test::Scalar(book, "pragma integrity_check"), "ok") << round;
    }
    ASSERT_FALSE(ledger.twice) << round;
    ASSERT_EQ(Missing(book, ledger), std::vector<std::string>()) << round;
    Settle(book, ledger);
    // A save of an account is several statements: the flag of a parent may be late.
    ASSERT_EQ(LedgerFaultsOf(book), std::vector<std::string>()) << round;
  }
  EXPECT_GT(survived, 0);
  for (const char* deed : {"add", "move", "delete", "post"}) {
    EXPECT_GE(ledger.deeds[deed], Long() ? 1 : 0) << deed;
    std::cout << deed << ": " << ledger.deeds[deed] << ", ";
  }
  std::cout << kills << " kills; " << ledger.codes.size() << " accounts and "
            << ledger.numbers.size() << " vouchers reported as saved are there\n";
}

/// While desks work the flag of a parent may be late; nothing else is ever wrong, in any state that
/// a reader sees.
std::vector<std::string> FaultsMeanwhile(const Book& book) {
  std::vector<std::string> faults;
  for (std::string& fault : ChartFaultsOf(book)) {
    if (!fault.starts_with("late leaf")) faults.push_back(std::move(fault));
  }
  return faults;
}

TEST_P(Processes, TwoDesksAtOnceKeepTheBookSound) {
  // However slow the machine is: enough for both to meet.
  constexpr int kLeast = 25;
  const auto end = std::chrono::steady_clock::now() + (Long() ? 60s : 0s);
  const auto work = [&](unsigned seed) {
    return [this, end, seed](int out) {
      Worker worker(shared_, out, seed);
      void (Worker::*const deeds[])() = {&Worker::Add,  &Worker::Add,    &Worker::Add,
                                         &Worker::Post, &Worker::Move,   &Worker::DeleteAny,
                                         &Worker::Post, &Worker::Rename, &Worker::Delete};
      for (int i = 0; i < kLeast || std::chrono::steady_clock::now() < end; ++i) {
        (worker.*deeds[worker.Below(9)])();
      }
    };
  };
  const auto seed = static_cast<unsigned>(std::random_device()());
  std::cout << "seed " << seed << "\n";
  Process first(work(seed));
  Process second(work(seed + 1));
  int looks = 0;
  std::atomic<int> working = 2;
  const auto read = [&](Process& desk) {
    (void)desk.ReadAll();
    --working;
  };
  std::thread one([&] { read(first); });
  std::thread other([&] { read(second); });
  {
    const Book book = shared_.Open();
    for (; working > 0; ++looks) EXPECT_EQ(FaultsMeanwhile(book), std::vector<std::string>());
  }
  one.join();
  other.join();
  Ledger ledger;
  ledger.Take(first.ReadAll());
  const std::size_t alone = ledger.numbers.size();
  ledger.Take(second.ReadAll());
  EXPECT_EQ(first.Wait(), 0);
  EXPECT_EQ(second.Wait(), 0);
  ledger.codes.clear();  // either desk may have moved or deleted the other's
  EXPECT_FALSE(ledger.twice);
  EXPECT_GT(alone, 0U);
  EXPECT_GT(ledger.numbers.size(), alone);
  const Book book = shared_.Open();
  EXPECT_EQ(Missing(book, ledger), std::vector<std::string>());
  EXPECT_EQ(FaultsOf(book), std::vector<std::string>());
  for (const auto& [deed, count] : ledger.deeds) std::cout << deed << ": " << count << ", ";
  std::cout << looks << " looks meanwhile; " << ledger.numbers.size() << " vouchers, "
            << test::Scalar(book, "select count(*) from gl_code") << " accounts\n";
}

}  // namespace
}  // namespace tavrix::sharing

#endif
