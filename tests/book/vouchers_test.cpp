#include "book/ledger/vouchers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "book/ledger/trial_balance.h"
#include "support/matchers.h"
#include "support/test_book.h"

namespace desk::book {
namespace {

std::vector<Account> Chart() {
  return {{.code = "1001", .name = "现金", .category = "资产"},
          {.code = "1002", .name = "银行", .category = "资产"},
          {.code = "100201", .name = "工行", .category = "资产", .currency = "美元"},
          {.code = "100202", .name = "建行", .category = "资产"},
          {.code = "1122", .name = "应收", .category = "资产", .customer = true},
          {.code = "1405", .name = "商品", .category = "资产", .unit = "件"}};
}

int PostTwo(const Book& book, int month, const char* debit, const char* credit, std::int64_t amount,
            const char* summary = "收款") {
  return Post(book.GetSession(),
              {.year = 2024,
               .month = month,
               .day = 10,
               .entries = {{.summary = summary, .code = debit, .debit = amount},
                           {.summary = summary, .code = credit, .credit = amount}}});
}

std::vector<std::string> Found(const Book& book, const VoucherSearch& search) {
  std::vector<std::string> names;
  for (const VoucherHead& head : FindVouchers(book.GetSession(), search, 100)) {
    names.push_back(MonthText(head.key.month) + "/" + std::to_string(head.key.number));
  }
  return names;
}

TEST(Vouchers, AreFoundByWhatOneOfTheirLinesHolds) {
  const Book book = tavrix::test::MakeBook(Chart());
  PostTwo(book, 1, "1001", "100202", 12'345, "Büro_50%");
  PostTwo(book, 2, "1001", "100202", -12'345);
  Post(book.GetSession(),
       {.year = 2024,
        .month = 2,
        .day = 20,
        .prepared_by = "王",
        .entries = {
            {.summary = "赊销", .code = "1122", .debit = 500, .auxiliary = {.customer = "红星"}},
            {.summary = "二", .code = "1405", .credit = 300},
            {.code = "1001", .credit = 200}}});
  EXPECT_THAT(Found(book, {}), ElementsAre("2024-02/2", "2024-02/1", "2024-01/1"));
  EXPECT_THAT(Found(book, {.last_date = "2024-01-31"}), ElementsAre("2024-01/1"));
  EXPECT_THAT(Found(book, {.first_date = "2024-02-20"}), ElementsAre("2024-02/2"));
  EXPECT_THAT(Found(book, {.account = "1002"}), ElementsAre("2024-02/1", "2024-01/1"));
  EXPECT_THAT(Found(book, {.text = "红"}), ElementsAre("2024-02/2"));
  EXPECT_THAT(Found(book, {.text = "_50%"}), ElementsAre("2024-01/1")) << "no wildcards";
  EXPECT_THAT(Found(book, {.text = "_"}), ElementsAre("2024-01/1"));
  EXPECT_THAT(Found(book, {.least = 12'345}), ElementsAre("2024-02/1", "2024-01/1"));
  EXPECT_THAT(Found(book, {.least = 201, .most = 300}), ElementsAre("2024-02/2"));
  // All of it must be true of one line.
  EXPECT_THAT(Found(book, {.account = "1405", .text = "赊销"}), IsEmpty());
  const VoucherHead head = FindVouchers(book.GetSession(), {}, 1).at(0);
  EXPECT_EQ(head.date + head.summary + head.prepared_by, "2024-02-20赊销王");
  EXPECT_EQ(head.total, 500);
}

/// Sums of what all rows of the ledgers come to, by account and all that a row is for: those that
/// are not zero.
std::vector<std::string> Remains(const Book& book) {
  std::vector<std::string> remains;
  for (const std::string sql :
       {"select ccode,sum(debit),sum(credit),sum(foreign_amount),sum(quantity) from gl_accvouch "
        "group by ccode having sum(debit)<>0 or sum(credit)<>0 or sum(foreign_amount)<>0 or "
        "abs(sum(quantity))>0.000001",
        "select ccode,customer from gl_accass group by ccode,customer having sum(debit)<>0 or "
        "sum(credit)<>0",
        "select ccode from gl_accsum group by ccode having sum(debit)<>0 or sum(credit)<>0"}) {
    for (const std::string& row : tavrix::test::AllRows(book, sql)) remains.push_back(row);
  }
  return remains;
}

// Whatever was posted: when all of it has been taken back nothing is left anywhere, and nothing has
// gone either.
TEST(Vouchers, TakenBackLeaveNothingInAnyLedger) {
  std::mt19937 dice(3);
  const auto below = [&](int end) { return static_cast<int>(dice() % static_cast<unsigned>(end)); };
  const Book book = tavrix::test::MakeBook(Chart());
  const std::vector<std::string> leaves = {"1001", "100201", "100202", "1122", "1405"};
  std::vector<VoucherKey> keys;
  for (int i = 0; i < 25; ++i) {
    Voucher voucher{.year = 2024, .month = 1 + below(3), .day = 1 + below(28)};
    std::int64_t rest = 0;
    for (int line = 0; line < 2 + below(3); ++line) {
      Entry entry{.summary = "第" + std::to_string(i),
                  .code = leaves[static_cast<std::size_t>(below(5))],
                  .debit = 1 + below(10'000),
                  .auxiliary = {.customer = below(2) == 0 ? "甲" : "乙"},
                  .quantity = below(30) / 4.0};
      if (entry.code == "100201") entry.currency = "美元", entry.foreign_amount = below(900);
      rest += entry.debit;
      voucher.entries.push_back(entry);
    }
    voucher.entries.push_back({.code = "1001", .credit = rest});
    keys.push_back({{2024, voucher.month}, Post(book.GetSession(), voucher)});
  }
  EXPECT_FALSE(Remains(book).empty());
  for (const VoucherKey& key : keys) {
    const VoucherKey made = Reverse(book.GetSession(), key, {.year = 2024, .month = 4, .day = 1});
    EXPECT_EQ(made.month, (Month{2024, 4}));
    EXPECT_EQ(ReversalOf(book.GetSession(), key).by, made);
    EXPECT_EQ(ReversalOf(book.GetSession(), made).of, key);
  }
  EXPECT_THAT(Remains(book), IsEmpty());
  EXPECT_THAT(ReadTrialBalance(book.GetSession(), Period{.first = Month{2024, 5}}), IsEmpty());
  EXPECT_EQ(FindVouchers(book.GetSession(), {}, 100).size(), 2 * keys.size());
}

// Words alone take nothing back.
TEST(Vouchers, AreTakenBackOnlyByTheirOppositeAmounts) {
  const Book book = tavrix::test::MakeBook(Chart());
  PostTwo(book, 3, "1001", "100202", 100);
  const VoucherKey first{{2024, 3}, 1};
  PostTwo(book, 3, "1001", "100202", -99, "冲销 2024-03 记-1 号");
  PostTwo(book, 3, "1001", "100202", 100, "冲销 2024-03 记-1 号");
  Post(book.GetSession(),
       {.year = 2024,
        .month = 3,
        .day = 1,
        .entries = {{.summary = "冲销 2024-03 记-1 号", .code = "1001", .debit = -100},
                    {.summary = "其他", .code = "100202", .credit = -100}}});
  EXPECT_EQ(ReversalOf(book.GetSession(), first).by, std::nullopt);
  EXPECT_EQ(ReversalOf(book.GetSession(), {{2024, 3}, 4}).of, std::nullopt);
  PostTwo(book, 4, "1001", "100202", -100, "冲销 2024-03 记-1 号 由手工");
  EXPECT_EQ(ReversalOf(book.GetSession(), first).by, (VoucherKey{{2024, 4}, 1}));
}

std::string FailureOf(const Book& book, const VoucherKey& key) {
  try {
    static_cast<void>(Reverse(book.GetSession(), key, {.year = 2024, .month = 4, .day = 1}));
  } catch (const DatabaseError& error) {
    return error.what();
  }
  return {};
}

TEST(Vouchers, AreTakenBackOnceWhateverHappensToTheirAccounts) {
  const Book book = tavrix::test::MakeBook(Chart());
  for (int i = 0; i < 12; ++i) PostTwo(book, 3, "100201", "1001", 100 + i);
  const VoucherKey first{{2024, 3}, 1};
  const VoucherKey twelfth{{2024, 3}, 12};
  const VoucherKey made =
      Reverse(book.GetSession(), twelfth, {.year = 2024, .month = 4, .day = 30});
  tavrix::test::Run(book, "update gl_code set ccode='1009' where ccode='1001'");
  EXPECT_EQ(FailureOf(book, twelfth),
            "2024-03 记-12 号凭证已由 2024-04 记-1 号凭证冲销，不能再次冲销");
  EXPECT_THAT(FailureOf(book, made), HasSubstr("是冲销凭证（冲销 2024-03 记-12 号）"));
  EXPECT_EQ(FailureOf(book, first), "") << "that of number 12 is not its own";
  const auto read = ReadVoucher(book.GetSession(), made);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->day, 30);
  EXPECT_EQ(read->entries[1].code, "1009");
  EXPECT_EQ(read->entries[1].credit, -111);
  EXPECT_EQ(read->entries[0].summary, "冲销 2024-03 记-12 号 收款");
  tavrix::test::Run(book, "update gl_code set bclose=1 where ccode='100201'");
  EXPECT_THAT(FailureOf(book, {{2024, 3}, 2}), HasSubstr("封存"));
  EXPECT_THAT(FailureOf(book, {{2024, 3}, 99}), HasSubstr("没有 2024-03 记-99 号凭证"));
}

}  // namespace
}  // namespace desk::book
