// A desk for scripts/failover, which judges what it tells by what the servers hold.
//
// failover_desk make PLACE           makes a book
// failover_desk work PLACE SECONDS   works on it: adds, renames and moves accounts, enters
// vouchers.
//                                    One line for each deed that was reported as done, with the
//                                    time in milliseconds before it, or "lost TEXT" where the
//                                    server failed
// failover_desk read PLACE           opens it for reading: what the list and the trial balance
// hold,
//                                    and what becomes of a voucher
// failover_desk post PLACE           enters one voucher with a time limit of two seconds: "saved",
// or
//                                    "lost TEXT"

#include <chrono>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>

#include "book/ledger/posting.h"
#include "book/ledger/trial_balance.h"
#include "sharing/shared_book.h"
#include "sharing/worker.h"

namespace tavrix::sharing {
namespace {

namespace book = desk::book;

void Tell(const std::string& line) {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  std::cout << std::chrono::duration_cast<std::chrono::milliseconds>(now).count() << " " << line
            << std::endl;
}

void Work(const std::string& place, int seconds) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
  Worker worker(place, Tell, std::random_device()());
  void (Worker::*const deeds[])() = {&Worker::Post, &Worker::Add, &Worker::Post, &Worker::Rename,
                                     &Worker::Move};
  while (std::chrono::steady_clock::now() < end) {
    try {
      (worker.*deeds[worker.Below(5)])();
    } catch (const book::DatabaseError& error) {
      if (error.Kind() != book::ErrorKind::kGone) throw;
      Tell(std::string("lost ") + error.what());
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
  }
}

void Read(const std::string& place) {
  book::Book opened = book::Book::Open({.path = place, .access = book::Access::kReadOnly});
  std::int64_t debit = 0;
  for (const book::TrialBalanceRow& row : book::ReadTrialBalance(opened.GetSession(), {})) {
    debit += row.debit;
  }
  const auto refused = [&] {
    const book::Entry given = {.code = "1001", .debit = 1};
    const book::Entry taken = {.code = "1001", .credit = 1};
    try {
      (void)book::Post(opened.GetSession(),
                       {.year = 2026, .month = 1, .day = 1, .entries = {given, taken}});
      return false;
    } catch (const book::DatabaseError& error) {
      return error.Kind() == book::ErrorKind::kReadOnly;
    }
  }();
  test::ViewTest list(std::move(opened));
  if (!list.view.Init(list.host.System(), 0, 0) || !list.view.Refresh()) {
    throw std::runtime_error("the account list does not show the book");
  }
  std::cout << list.Grid().Rows() - list.Grid().FixedRows() << " accounts, debit " << debit
            << (refused ? ", read only" : ", writable") << "\n";
}

void PostInTime(const std::string& place) {
  const book::Book opened =
      book::Book::Open({.path = place, .time_limit = std::chrono::seconds(2)});
  try {
    (void)book::Post(opened.GetSession(),
                     {.year = 2026,
                      .month = 1,
                      .day = 1,
                      .entries = {{.code = "1001", .debit = 1}, {.code = "2202", .credit = 1}}});
    std::cout << "saved\n";
  } catch (const book::DatabaseError& error) {
    if (error.Kind() != book::ErrorKind::kGone) throw;
    std::cout << "lost " << error.what() << "\n";
  }
}

int Run(const std::string& what, const std::string& place, int seconds) {
  if (what == "make") {
    (void)book::Book::Create(place, {.code_rule = "4444", .accounts = SharedBook::Accounts()});
  } else if (what == "work") {
    Work(place, seconds);
  } else if (what == "read") {
    Read(place);
  } else if (what == "post") {
    PostInTime(place);
  } else {
    return 2;
  }
  return 0;
}

}  // namespace
}  // namespace tavrix::sharing

int main(int count, char** arguments) try {
  if (count < 3) return 2;
  return tavrix::sharing::Run(arguments[1], arguments[2], count > 3 ? std::atoi(arguments[3]) : 0);
} catch (const std::exception& error) {
  std::cerr << error.what() << std::endl;
  return 1;
}
