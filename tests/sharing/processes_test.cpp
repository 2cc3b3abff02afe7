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

#include "sharing/process.h"
#include "sharing/shared_book.h"
#include "sharing/worker.h"

namespace tavrix::sharing {
namespace {

using desk::book::Book;
using namespace std::chrono_literals;

/// Tells through the pipe, line by line.
std::function<void(const std::string&)> Told(int out) {
  return [out](const std::string& line) {
    const std::string text = line + "\n";
    if (write(out, text.data(), text.size()) != static_cast<ssize_t>(text.size())) _exit(2);
  };
}

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
      Worker worker(shared_.Place(), Told(out), static_cast<unsigned>(round));
      Told(out)("ready");
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
  constexpr int kMin = 25;
  const auto end = std::chrono::steady_clock::now() + (Long() ? 60s : 0s);
  const auto work = [&](unsigned seed) {
    return [this, end, seed](int out) {
      Worker worker(shared_.Place(), Told(out), seed);
      void (Worker::*const deeds[])() = {&Worker::Add,  &Worker::Add,    &Worker::Add,
                                         &Worker::Post, &Worker::Move,   &Worker::DeleteAny,
                                         &Worker::Post, &Worker::Rename, &Worker::Delete};
      for (int i = 0; i < kMin || std::chrono::steady_clock::now() < end; ++i) {
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
