#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "support/test_book.h"

namespace tavrix::sharing {

namespace book = desk::book;
using test::AllRows;
using test::Scalar;
using Texts = std::vector<std::string>;

/// A book in a place of its own, which several desks can open: a file, or on the server.
class SharedBook {
 public:
  explicit SharedBook(const std::string& engine)
      : place_(engine == "postgresql" ? test::NewServerPlace() : folder_.File("共用.book")) {
    (void)desk::book::Book::Create(place_, {.code_rule = "4444", .accounts = Accounts()});
  }
  [[nodiscard]] const std::string& Place() const { return place_; }
  [[nodiscard]] desk::book::Book Open(
      std::chrono::milliseconds patience = std::chrono::milliseconds(5000)) const {
    desk::book::Book book = desk::book::Book::Open({.path = place_, .patience = patience});
    book.Environment().user_folder.clear();
    return book;
  }

  /// 1001, 1002 with 10020001 and 10020002 (identifiers 1 to 4), 2202, 5001.
  static std::vector<desk::book::Account> Accounts() {
    return {{.code = "1001", .name = "库存现金", .category = "资产"},
            {.code = "1002", .name = "银行存款", .category = "资产"},
            {.code = "10020001", .name = "工行", .category = "资产"},
            {.code = "10020002", .name = "建行", .category = "资产"},
            {.code = "2202", .name = "应付账款", .category = "负债", .debit = false},
            {.code = "5001", .name = "生产成本", .category = "成本"}};
  }

 private:
  test::TempFolder folder_;
  std::string place_;
};

/// A file, and the server where there is one.
inline std::vector<const char*> SharedEngines() {
  if (test::ServerPlace().empty()) return {"sqlite"};
  return {"sqlite", "postgresql"};
}

/// What is wrong with the ledgers, one line for each fault: postings on leaf accounts alone,
/// balance, totals that equal the vouchers.
[[nodiscard]] std::vector<std::string> LedgerFaultsOf(const desk::book::Book& book);

/// What is wrong with the chart: codes, levels, parents, leaf flags ("late leaf" where an account
/// with others below it still says leaf).
[[nodiscard]] std::vector<std::string> ChartFaultsOf(const desk::book::Book& book);

/// Both.
[[nodiscard]] std::vector<std::string> FaultsOf(const desk::book::Book& book);

}  // namespace tavrix::sharing
