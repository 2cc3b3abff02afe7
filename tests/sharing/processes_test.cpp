// Desks as processes of their own, which work at once or are killed without warning.
#ifndef _WIN32

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <thread>

#include "book/posting.h"
#include "editing/editor_test.h"
#include "maintenance/view_test.h"
#include "sharing/shared_book.h"

namespace tavrix::sharing {
namespace {

using desk::book::Book;
using editing::Editor;
using namespace std::chrono_literals;

bool Long() {
  const char* wanted = std::getenv("TAVRIX_LONG");
  return wanted != nullptr && std::string(wanted) == "yes";
}

/// A process that runs `work` with a place to tell what it has done, line by line.
class Process {
 public:
  explicit Process(const std::function<void(int)>& work) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) throw std::runtime_error("pipe");
    child_ = fork();
    if (child_ == 0) {
      close(ends[0]);
      int status = 1;
      try {
        work(ends[1]);
        status = 0;
      } catch (const std::exception& error) {
        std::cerr << error.what() << std::endl;
      }
      _exit(status);
    }
    close(ends[1]);
    out_ = ends[0];
  }
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;
  ~Process() {
    Kill();
    close(out_);
  }
  void Kill() {
    if (child_ <= 0) return;
    kill(child_, SIGKILL);
    (void)Wait();
  }
  /// Its exit status; -1 when it was killed.
  int Wait() {
    int status = 0;
    waitpid(child_, &status, 0);
    child_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  /// Waits until the process has told something.
  void Await() {
    char first = 0;
    if (read(out_, &first, 1) == 1) told_ += first;
  }
  /// All that it tells until it ends.
  const std::string& ReadAll() {
    std::array<char, 4096> part{};
    for (ssize_t got = 0; (got = read(out_, part.data(), part.size())) > 0;) {
      told_.append(part.data(), static_cast<std::size_t>(got));
    }
    return told_;
  }

 private:
  pid_t child_ = -1;
  int out_ = -1;
  std::string told_;
};

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
  /// A leaf with its postings goes to a free code beside it.
  void Move() {
    const std::string code = AnyCode("igrade=2 and bend=1");
    if (code.empty()) return;
    const std::string id =
        test::Scalar(editor_.book, "select i_id from gl_code where ccode='" + code + "'");
    const std::string target = code.substr(0, 4) + std::to_string(5000 + Below(5000));
    Tell("try move " + id);
    editor_.saved.clear();
    editor_.Open(editing::Edit(std::stoi(id)), [&] {
      editor_.SetCode(target);
      (void)editor_.dialog->FileSave();
    });
    if (!editor_.saved.empty()) Tell("move " + id + " " + target);
  }
  void Delete() {
    const std::string code =
        AnyCode("igrade>1 and bend=1 and ccode not in(select ccode from gl_accvouch)");
    if (code.empty()) return;
    const std::string id =
        test::Scalar(editor_.book, "select i_id from gl_code where ccode='" + code + "'");
    Tell("try delete " + id);
    ASSERT_TRUE(view_.view.Init(view_.host.System(), 0, 0) && view_.view.Refresh());
    view_.Grid().SetRow(view_.Grid().FindRow(code, 1, 0));
    view_.user.answers = {viewkit::UserPort::Answer::kYes};
    if (view_.view.FileDelete()) Tell("delete " + id);
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
      if (word == "add") twice = !codes.emplace(id, code).second || twice;
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
    desk.Await();
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 150'000));
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

TEST_P(Processes, TwoDesksAtOnceKeepTheBookSound) {
  // However slow the machine is: enough for both to meet.
  constexpr int kLeast = 12;
  const auto end = std::chrono::steady_clock::now() + (Long() ? 60s : 0s);
  const auto work = [&](unsigned seed) {
    return [this, end, seed](int out) {
      Worker worker(shared_, out, seed);
      for (int i = 0; i < kLeast || std::chrono::steady_clock::now() < end; ++i) {
        worker.Add();
        worker.Post();
      }
    };
  };
  Process first(work(1));
  Process second(work(2));
  Ledger ledger;
  std::thread reader([&] { (void)second.ReadAll(); });
  ledger.Take(first.ReadAll());
  reader.join();
  const std::size_t alone = ledger.numbers.size();
  ledger.Take(second.ReadAll());
  EXPECT_EQ(first.Wait(), 0);
  EXPECT_EQ(second.Wait(), 0);
  ledger.doubtful.clear();
  EXPECT_FALSE(ledger.twice);
  EXPECT_GT(alone, 0U);
  EXPECT_GT(ledger.numbers.size(), alone);
  const Book book = shared_.Open();
  EXPECT_EQ(Missing(book, ledger), std::vector<std::string>());
  EXPECT_EQ(FaultsOf(book), std::vector<std::string>());
  std::cout << ledger.codes.size() << " accounts and " << ledger.numbers.size()
            << " vouchers by two desks\n";
}

}  // namespace
}  // namespace tavrix::sharing

#endif
