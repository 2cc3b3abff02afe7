#include "book/ledger/account_ledger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>

#include "book/ledger/money_text.h"
#include "support/matchers.h"
#include "support/test_book.h"

namespace desk::book {
namespace {

using Kind = LedgerLine::Kind;

/// Three levels, two categories.
std::vector<Account> Chart() {
  return {{.code = "1001", .name = "现金", .category = "资产"},
          {.code = "1002", .name = "银行", .category = "资产"},
          {.code = "100201", .name = "工行", .category = "资产"},
          {.code = "10020101", .name = "工行甲", .category = "资产"},
          {.code = "10020102", .name = "工行乙", .category = "资产"},
          {.code = "100202", .name = "建行", .category = "资产"},
          {.code = "2202", .name = "应付", .category = "负债", .supplier = true}};
}

const std::vector<std::string> kLeaves = {"1001", "10020101", "10020102", "100202", "2202"};

/// Random vouchers over two years, with red amounts, several lines and months without any.
void PostRandomly(const Book& book, std::mt19937& dice, int vouchers) {
  const auto below = [&](int end) { return static_cast<int>(dice() % static_cast<unsigned>(end)); };
  for (int i = 0; i < vouchers; ++i) {
    Voucher voucher{.year = 2023 + below(2), .month = 1 + 2 * below(6), .day = 1 + below(28)};
    std::int64_t rest = 0;
    for (int line = 0; line < 1 + below(3); ++line) {
      const std::int64_t amount = below(100'000) - 20'000;
      if (amount == 0) continue;
      const auto& code = kLeaves[static_cast<std::size_t>(below(5))];
      voucher.entries.push_back({.code = code, .debit = amount, .auxiliary = {.supplier = "某"}});
      rest += amount;
    }
    if (rest == 0) continue;
    const auto& code = kLeaves[static_cast<std::size_t>(below(5))];
    voucher.entries.push_back({.code = code, .credit = rest, .auxiliary = {.supplier = "某"}});
    Post(book.GetSession(), voucher);
  }
  tavrix::test::Run(
      book, "insert into gl_accsum(i_id,ccode,debit,credit)values(90001,'10020101',7000,0)");
  tavrix::test::Run(book,
                    "insert into gl_accsum(i_id,ccode,debit,credit)values(90002,'2202',0,7000)");
}

/// What SQL says of all entries below `code` in these months.
std::string SumOf(const Book& book, const std::string& code, const char* column,
                  const std::string& months) {
  return tavrix::test::Scalar(book, std::string("select coalesce(sum(") + column +
                                        "),0) from gl_accvouch where ccode like '" + code +
                                        "%' and fiscal_year*100+fiscal_period " + months);
}

// The sheet, the trial balance and plain sums of the entries are three ways to the same figures.
TEST(AccountLedger, AgreesWithTheTrialBalanceAndWithItsEntries) {
  for (unsigned seed = 1; seed <= 2; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 dice(seed);
    const Book book = tavrix::test::MakeBook(Chart());
    PostRandomly(book, dice, 40);
    for (const Period& period : {Period{}, Period::Of(Month{2023, 7}), Period::Of(Month{2024, 1}),
                                 Period{.first = Month{2023, 5}, .last = Month{2024, 3}}}) {
      const std::string months = "between " + std::to_string(period.FirstPosition()) + " and " +
                                 std::to_string(period.LastPosition());
      for (const TrialBalanceRow& row : ReadTrialBalance(book.GetSession(), period, kAllAccounts)) {
        SCOPED_TRACE(row.code);
        const auto ledger = ReadAccountLedger(book.GetSession(), row.code, period);
        ASSERT_TRUE(ledger);
        EXPECT_EQ(ledger->opening, row.opening);
        EXPECT_EQ(ledger->debit, row.debit);
        EXPECT_EQ(ledger->credit, row.credit);
        EXPECT_EQ(ledger->lines.back().balance, row.Closing());
        EXPECT_EQ(ledger->difference, 0);
        EXPECT_EQ(std::to_string(ledger->debit), SumOf(book, row.code, "debit", months));
        EXPECT_EQ(std::to_string(ledger->credit), SumOf(book, row.code, "credit", months));
        std::int64_t balance = ledger->opening;
        for (const LedgerLine& line : ledger->lines) {
          if (line.kind == Kind::kEntry) balance += line.debit - line.credit;
          EXPECT_EQ(line.balance, balance);  // at the ends of months, by the totals, too
          EXPECT_TRUE(line.code.empty() || line.code.starts_with(row.code));
        }
      }
    }
  }
}

TEST(AccountLedger, EachLevelOfTheTrialBalanceComesToTheSame) {
  std::mt19937 dice(7);
  const Book book = tavrix::test::MakeBook(Chart());
  PostRandomly(book, dice, 30);
  const auto codes = [&](int level) {
    std::vector<std::string> found;
    std::int64_t closing = 0;
    for (const auto& row : ReadTrialBalance(book.GetSession(), {}, level)) {
      found.push_back(row.code);
      if (level != kAllAccounts || row.leaf) closing += row.Closing();
    }
    EXPECT_EQ(closing, 0) << level;
    return found;
  };
  EXPECT_EQ(LevelsOfChart(book.GetSession()), 3);
  EXPECT_THAT(codes(1), ElementsAre("1001", "1002", "2202"));
  EXPECT_THAT(codes(2), ElementsAre("1001", "100201", "100202", "2202"));
  EXPECT_THAT(codes(3), ElementsAre("1001", "10020101", "10020102", "100202", "2202"));
  EXPECT_THAT(codes(kLeafAccounts), codes(3));
  EXPECT_EQ(codes(kAllAccounts).size(), 7U);
}

// As a book of another maker may have them: a period that closes the year, and totals that hang on
// an account with others below it.
TEST(AccountLedger, DamagedAndForeignTotalsFallNowhereOut) {
  const Book book = tavrix::test::MakeBook(Chart());
  tavrix::test::Run(book,
                    "insert into gl_accsum(i_id,ccode,fiscal_year,fiscal_period,debit,credit)values"
                    "(1,'1002',2024,1,500,0),(2,'2202',2024,13,0,500),(3,'1001',2025,1,70,70)");
  for (const int level : {kLeafAccounts, 1, 2, 3, kAllAccounts}) {
    std::int64_t closing = 0;
    for (const auto& row : ReadTrialBalance(book.GetSession(), {}, level)) {
      if (level != kAllAccounts || row.leaf) closing += row.Closing();
    }
    EXPECT_EQ(closing, 0) << level;
  }
  const auto january = ReadTrialBalance(book.GetSession(), Period::Of(Month{2025, 1}));
  ASSERT_EQ(january.size(), 3U);
  EXPECT_EQ(january[2].credit, 0) << "of the thirteenth period before";
  EXPECT_EQ(january[2].opening, -500);
}

TEST(AccountLedger, SaysWhatStandsAgainstAnEntryAndWhenATotalDisagrees) {
  const Book book = tavrix::test::MakeBook(Chart());
  Post(book.GetSession(), {.year = 2024,
                           .month = 2,
                           .day = 9,
                           .entries = {{.summary = "付款", .code = "1001", .credit = 300},
                                       {.code = "10020101", .debit = 100},
                                       {.code = "100202", .debit = 200}}});
  auto ledger = ReadAccountLedger(book.GetSession(), "1001", {});
  ASSERT_EQ(ledger->lines.size(), 4U);  // opening, entry, month, year
  EXPECT_EQ(ledger->lines[1].counter, "10020101 工行甲 等");
  EXPECT_EQ(ledger->lines[1].date, "2024-02-09");
  EXPECT_EQ(ReadAccountLedger(book.GetSession(), "100202", {})->lines[1].counter, "1001 现金");
  tavrix::test::Run(book, "update gl_accsum set credit=500 where ccode='1001'");
  EXPECT_EQ(ReadAccountLedger(book.GetSession(), "1001", {})->difference, 200);
  EXPECT_FALSE(ReadAccountLedger(book.GetSession(), "1009", {}));
}

// Page by page the lines are those of the whole, whatever month a page begins in.
TEST(AccountLedger, PagesGoOnWhereTheLastOneEnded) {
  std::mt19937 dice(11);
  const Book book = tavrix::test::MakeBook(Chart());
  PostRandomly(book, dice, 60);
  const auto texts = [](const AccountLedger& ledger, bool opening) {
    std::vector<std::string> lines;
    for (const LedgerLine& line : ledger.lines) {
      if (line.kind == Kind::kOpening && !opening) continue;
      lines.push_back(MonthText(line.month) + "/" + std::to_string(line.voucher) + "/" +
                      MoneyText(line.debit) + "/" + MoneyText(line.credit) + "/" +
                      MoneyText(line.balance));
    }
    return lines;
  };
  for (const std::int64_t page : {1, 3, 7}) {
    const auto whole = ReadAccountLedger(book.GetSession(), "1002", {});
    std::vector<std::string> lines;
    std::int64_t first = 0;
    do {
      const auto part = ReadAccountLedger(book.GetSession(), "1002", {}, first, page);
      std::ranges::copy(texts(*part, first == 0), std::back_inserter(lines));
      EXPECT_EQ(part->entries, whole->entries);
      ASSERT_GT(part->shown, 0);
      first += part->shown;
    } while (first < whole->entries);
    EXPECT_EQ(lines, texts(*whole, true)) << page;
  }
}

}  // namespace
}  // namespace desk::book
