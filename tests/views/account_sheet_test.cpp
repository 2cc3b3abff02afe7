#include "views/account_sheet.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/matchers.h"

namespace desk::views {
namespace {

using book::AccountCard;
using book::Month;
using testing::Contains;
using testing::Not;
using Line = AccountSheet::Line;

TEST(AccountSheetTest, SaysInWordsWhatTheAccountIs) {
  AccountCard card{.account = {"100201", "工行"},
                   .parents = {{"1002", "银行存款"}},
                   .category = "资产",
                   .kinds = {"部门核算", "客户往来"},
                   .mnemonic = "gh",
                   .months = {{.month = Month{2024, 1}, .debit = 30'000}},
                   .parent_balance = 90'000};
  AccountSheet sheet = MakeAccountSheet(card);
  EXPECT_EQ(sheet.path, "资产\n1002 银行存款");
  EXPECT_THAT(sheet.lines,
              ElementsAre(Line{"状态", "明细科目"}, Line{"余额方向", "借方"},
                          Line{"辅助核算", "部门核算、客户往来"}, Line{"助记码", "gh"}));
  EXPECT_EQ(sheet.balance, "借 300.00");
  EXPECT_EQ(sheet.share, "33.3 %");
  EXPECT_EQ(sheet.share_bar, 333);
  card.sealed = true;
  card.kinds.clear();
  card.months.front().credit = 30'001;
  sheet = MakeAccountSheet(card);
  EXPECT_THAT(sheet.lines, Contains(Line{"状态", "封存"}));
  EXPECT_THAT(sheet.lines, Contains(Line{"辅助核算", "无"}));
  EXPECT_EQ(sheet.balance, "贷 0.01");
  EXPECT_EQ(sheet.share, "");
}

TEST(AccountSheetTest, ShowsTheLastMonthsByTheLargestOfThem) {
  AccountCard card;
  card.months.push_back({.month = std::nullopt, .debit = 1'000'000'000});
  for (int month = 1; month <= 12; ++month) {
    card.months.push_back({.month = Month{2024, month}, .debit = month * 100, .credit = 1});
  }
  const AccountSheet sheet = MakeAccountSheet(card);
  ASSERT_EQ(sheet.months.size(), 12U);
  EXPECT_EQ(sheet.months.front().month, "2024-01") << "what came before does not make them small";
  EXPECT_EQ(sheet.months.front().balance, "借 10,000,000.99");
  EXPECT_EQ(sheet.months.back().debit_bar, 1000);
  EXPECT_EQ(sheet.months.back().credit_bar, 1) << "a little still shows";
  EXPECT_EQ(sheet.months[5].debit_bar, 500);
}

}  // namespace
}  // namespace desk::views
