#include "book/ledger/trial_balance.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "book/ledger/money_text.h"
#include "book/ledger/posting.h"
#include "support/matchers.h"
#include "support/test_book.h"

namespace desk::book {
namespace {

using testing::Contains;

/// Category, first level, code, name, opening, debit, credit, closing.
std::vector<std::string> Lines(const Book& book, const std::optional<Month>& month = {}) {
  std::vector<std::string> lines;
  for (const TrialBalanceRow& row : ReadTrialBalance(book.GetSession(), Period::Of(month))) {
    std::string line = row.category + "|" + row.first_level + "|" + row.code + "|" + row.name;
    for (const std::int64_t amount : {row.opening, row.debit, row.credit, row.Closing()}) {
      line += "|" + MoneyText(amount);
    }
    lines.push_back(std::move(line));
  }
  return lines;
}

Book MakeTradedBook(const std::string& engine = tavrix::test::DefaultEngine()) {
  // A later code of the first category, as an own chart may have it.
  Book book =
      tavrix::test::MakeBookOn(engine, {{.code = "1001", .name = "现金", .category = "资产"},
                                        {.code = "1002", .name = "银行", .category = "资产"},
                                        {.code = "100201", .name = "工行", .category = "资产"},
                                        {.code = "2202", .name = "应付", .category = "负债"},
                                        {.code = "9001", .name = "其他", .category = "资产"}});
  const auto post = [&](int month, const char* debit, const char* credit, std::int64_t amount) {
    const std::vector<Entry> entries = {{.code = debit, .debit = amount},
                                        {.code = credit, .credit = amount}};
    Post(book.GetSession(), {.year = 2024, .month = month, .day = 1, .entries = entries});
  };
  post(1, "100201", "2202", 10'000);
  post(2, "1001", "100201", 2'550);
  post(3, "9001", "1001", 2'550);
  return book;
}

TEST(TrialBalance, OneMonthOrAllOfThem) {
  const Book book = MakeTradedBook();
  EXPECT_THAT(PostedMonths(book.GetSession()),
              ElementsAre(Month{2024, 1}, Month{2024, 2}, Month{2024, 3}));
  EXPECT_THAT(Lines(book), ElementsAre("资产|1001 现金|1001|现金|0.00|25.50|25.50|0.00",
                                       "资产|1002 银行|100201|工行|0.00|100.00|25.50|74.50",
                                       "资产|9001 其他|9001|其他|0.00|25.50|0.00|25.50",
                                       "负债|2202 应付|2202|应付|0.00|0.00|100.00|-100.00"));
  EXPECT_THAT(Lines(book, Month{2024, 2}),
              ElementsAre("资产|1001 现金|1001|现金|0.00|25.50|0.00|25.50",
                          "资产|1002 银行|100201|工行|100.00|0.00|25.50|74.50",
                          "负债|2202 应付|2202|应付|-100.00|0.00|0.00|-100.00"));
  EXPECT_THAT(Lines(book, Month{2023, 12}), IsEmpty());
}

// Two totals may stand for a month; one without a month is older than all.
TEST(TrialBalance, AddsUpWhatTheLedgerHolds) {
  const Book book = MakeTradedBook();
  tavrix::test::Run(book, "update gl_accsum set ccode='100201' where ccode='1001'");
  tavrix::test::Run(book,
                    "update gl_accsum set fiscal_year=null where ccode='2202' or ccode='9001'");
  EXPECT_THAT(Lines(book, Month{2024, 3}),
              ElementsAre("资产|1002 银行|100201|工行|100.00|0.00|25.50|74.50",
                          "资产|9001 其他|9001|其他|25.50|0.00|0.00|25.50",
                          "负债|2202 应付|2202|应付|-100.00|0.00|0.00|-100.00"));
}

// Books of other makers hold postings on codes that the chart does not know. Whatever level is
// shown, the rows come to what the ledger holds.
TEST(TrialBalance, CodesThatAreNoAccountsHaveRowsOfTheirOwn) {
  for (const char* engine : tavrix::test::Engines()) {
    const Book book = MakeTradedBook(engine);
    tavrix::test::Run(book, "update gl_accsum set ccode='1002''9' where ccode='1001'");
    tavrix::test::Run(book, "update gl_accsum set ccode='7' where ccode='2202'");
    for (const int level : {kLeafAccounts, kAllAccounts, 1, 2, 3}) {
      std::vector<std::string> unlisted;
      std::int64_t debit = 0;
      std::int64_t credit = 0;
      for (const TrialBalanceRow& row : ReadTrialBalance(book.GetSession(), {}, level)) {
        if (!row.listed) unlisted.push_back(row.code + row.name + MoneyText(row.Closing()));
        if (!row.leaf && level == kAllAccounts) continue;
        debit += row.debit;
        credit += row.credit;
      }
      EXPECT_THAT(unlisted, ElementsAre("1002'9（科目表中没有）0.00", "7（科目表中没有）-100.00"));
      EXPECT_EQ(std::to_string(debit),
                tavrix::test::Scalar(book, "select sum(debit) from gl_accsum"));
      EXPECT_EQ(std::to_string(credit),
                tavrix::test::Scalar(book, "select sum(credit) from gl_accsum"));
    }
    EXPECT_THAT(Lines(book, Month{2024, 2}),
                Contains("无科目|7 （科目表中没有）|7|（科目表中没有）|-100.00|0.00|0.00|-100.00"));
  }
}

}  // namespace
}  // namespace desk::book
