#include "support/odd_chart.h"

#include <array>
#include <cstdio>

#include "book/database/tables.h"
#include "host/account.h"
#include "support/test_book.h"

namespace tavrix::test {

namespace book = desk::book;

namespace {

constexpr std::array kOddNames = {
    "L'Oréal \"Paris\", S.A.",
    "Müller & Söhne <GmbH>",
    "两行\n名称",
    "回车\r\n换行",
    "𠮷野家；😀",
    "=1+1",
    "0012",
    "制表\t符",
    "_x0041_ 与 %41 与 \\n",
    "'单引号'与“引号”",
    "1,234.50",
    "2024-01-01",
    "TRUE",
    "]]> &amp; <!-- -->",
    "ﬁ 全角ＡＢＣ１２３",
};

std::string Numbered(const std::string& parent, int number, int width) {
  std::array<char, 16> digits;
  std::snprintf(digits.data(), digits.size(), "%0*d", width, number);
  return parent + digits.data();
}

book::Account OddAccount(std::string code, int number) {
  const auto n = static_cast<std::size_t>(number);
  const auto top = static_cast<std::size_t>(std::stoi(code.substr(0, 4)));
  const std::string name = kOddNames.at(n % kOddNames.size());
  return {.code = std::move(code),
          .name = name + " " + std::to_string(number),
          .category = std::string(host::kCategories.at(top % host::kCategories.size())),
          .english = number % 3 == 0 ? "Ünïcode \"" + std::to_string(number) + "\"" : "",
          .help = number % 2 == 0 ? "zjm" + std::to_string(number) : "",
          .debit = number % 4 != 1,
          .currency = number % 7 == 0 ? "美元" : "",
          .unit = number % 11 == 0 ? "台" : "",
          .person = number % 5 == 0,
          .customer = number % 13 == 0,
          .supplier = number % 17 == 0,
          .department = number % 19 == 0,
          .project = number % 23 == 0,
          .journal = number % 29 == 0,
          .bank_book = number % 31 == 0,
          .cash = number % 37 == 0,
          .bank = number % 41 == 0,
          .closed = number % 43 == 0};
}

}  // namespace

std::vector<book::Account> OddAccounts(int count) {
  std::vector<book::Account> accounts;
  const auto full = [&] { return static_cast<int>(accounts.size()) >= count; };
  const auto add = [&](const std::string& code) {
    if (!full()) accounts.push_back(OddAccount(code, static_cast<int>(accounts.size())));
  };
  constexpr int kFirst = 1001;
  constexpr int kBelow = 6;
  for (int first = kFirst; !full(); ++first) {
    const std::string top = std::to_string(first);
    add(top);
    for (int second = 1; second <= kBelow; ++second) {
      const std::string middle = Numbered(top, second, 2);
      add(middle);
      if (second % 2 == 0) add(Numbered(middle, 1, 2));
    }
  }
  return accounts;
}

void AddOddColumns(const book::Book& book) {
  Run(book, "update gl_code set cgather='1001',cother='应收\"系统' where i_id in(5,9)");
}

std::vector<std::string> WholeChart(const book::Book& book) {
  std::string columns;
  for (const book::Column& column : book::SchemaTables().front().columns) {
    if (column.name != "i_id") columns += (columns.empty() ? "" : ",") + std::string(column.name);
  }
  return AllRows(book, "select " + columns + " from gl_code order by ccode");
}

std::vector<std::string> EnginesAtHand() {
  std::vector<std::string> engines = {"sqlite"};
  if (!ServerPlace().empty()) engines.emplace_back("postgresql");
  return engines;
}

}  // namespace tavrix::test
