#pragma once

#include <array>
#include <functional>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "sharing/shared_book.h"

namespace tavrix::sharing {

inline constexpr std::array<const char*, 3> kLedgers = {"gl_accvouch", "gl_accass", "gl_accsum"};

/// How many random charts a test takes: a server needs a second for each.
inline unsigned ChartsOn(std::string_view engine) {
  return engine == "sqlite" ? 25 : 5;
}

/// What the deed was refused with; empty when it was not.
inline std::string Refusal(const std::function<void()>& deed) {
  try {
    deed();
    return {};
  } catch (const desk::book::DatabaseError& error) {
    return error.what();
  }
}

/// A chart of random accounts, with their parents, and postings on leaves in all ledgers. The
/// levels of its rule have different widths, so that a subtree may have to fit.
class RandomChart {
 public:
  RandomChart(const char* engine, unsigned seed)
      : random_(seed),
        rule_(Pick(Texts{"2121", "1222", "3132"})),
        book_(test::MakeBookOn(engine, Accounts(), rule_)) {
    test::Run(book_, "update gl_code set cgather=(select min(ccode) from gl_code) where i_id%3=0");
    for (int i = 0; i < 30; ++i) {
      test::AddPosting(book_, kLedgers[Below(kLedgers.size())], Pick(LeavesOf()));
    }
  }

  template <class T>
  T Pick(const std::vector<T>& from) {
    return from[Below(from.size())];
  }
  std::size_t Below(std::size_t count) { return random_() % count; }
  [[nodiscard]] const desk::book::Book& Book() const { return book_; }
  [[nodiscard]] desk::book::Session& GetSession() const { return book_.GetSession(); }
  [[nodiscard]] const std::string& Rule() const { return rule_; }
  [[nodiscard]] Texts Codes() const {
    return test::AllRows(book_, "select ccode from gl_code order by ccode");
  }
  [[nodiscard]] Texts LeavesOf() const {
    return test::AllRows(book_, "select ccode from gl_code where bend=1 order by ccode");
  }

 private:
  std::vector<desk::book::Account> Accounts() {
    std::set<std::string> codes;
    for (int i = 0; i < 14; ++i) {
      std::string code;
      const std::size_t depth = 1 + Below(rule_.size());
      for (std::size_t level = 0; level < depth; ++level) {
        const auto width = static_cast<std::size_t>(rule_[level] - '0');
        const std::string number = std::to_string(1 + Below(3));
        code += std::string(width - 1, Below(9) == 0 ? '1' : '0') + number;
        codes.insert(code);
      }
    }
    std::vector<desk::book::Account> accounts;
    for (const std::string& code : codes) {
      accounts.push_back(
          {.code = code, .name = "n" + code, .category = Below(2) == 0 ? "资产" : "负债"});
    }
    return accounts;
  }

  std::mt19937 random_;
  std::string rule_;
  desk::book::Book book_;
};

/// Everything that a move may change, a line for each row.
inline Texts Contents(const desk::book::Book& book) {
  Texts all = test::AllRows(
      book,
      "select i_id,ccode,cclass,igrade,bend,cgather,ccode_name,bclose from gl_code order by i_id");
  for (const std::string ledger : kLedgers) {
    for (const std::string& row :
         test::AllRows(book, "select i_id,ccode,debit,credit from " + ledger + " order by i_id")) {
      all.push_back(ledger + "|" + row);
    }
  }
  return all;
}

}  // namespace tavrix::sharing
