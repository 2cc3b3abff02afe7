#include "book/ledger/account_card.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "book/ledger/account_search.h"
#include "book/ledger/posting.h"
#include "support/matchers.h"
#include "support/test_book.h"

namespace desk::book {
namespace {

/// On SQLite, and on a server where there is one.
class AccountCardTest : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    const bool on_server = GetParam() == std::string("postgresql");
    if (on_server && tavrix::test::ServerPlace().empty()) GTEST_SKIP() << "no server";
    book_.emplace(MakeBookOn(
        GetParam(), {{.code = "1002", .name = "银行存款", .category = "资产", .help = "yhck"},
                     {.code = "100201",
                      .name = "Banque de l’Étoile",
                      .category = "资产",
                      .help = "ÉTOILE",
                      .currency = "美元",
                      .unit = "吨",
                      .customer = true,
                      .department = true,
                      .journal = true,
                      .bank_book = true,
                      .closed = true},
                     {.code = "10020101", .name = "a", .category = "资产"},
                     {.code = "10020102", .name = "b", .category = "资产"},
                     {.code = "100202", .name = "c", .category = "资产"},
                     {.code = "1003", .name = "其他", .category = "资产"},
                     {.code = "2202", .name = "应付", .category = "负债", .debit = false}}));
    Post(1, "10020101", "2202", 10'000);
    Post(1, "10020102", "2202", 20'000);
    Post(3, "1003", "10020102", 5'000);
    Post(3, "100202", "2202", 75'000);
  }
  void Post(int month, const char* debit, const char* credit, std::int64_t amount) const {
    const std::vector<Entry> entries = {{.code = debit, .debit = amount},
                                        {.code = credit, .credit = amount}};
    book::Post(book_->GetSession(), {.year = 2024, .month = month, .day = 1, .entries = entries});
  }
  [[nodiscard]] AccountCard Card(const char* code) const {
    auto card = ReadAccountCard(book_->GetSession(), code);
    return card ? *card : AccountCard{};
  }
  std::optional<Book> book_;
};

INSTANTIATE_TEST_SUITE_P(Engines, AccountCardTest, testing::Values("sqlite", "postgresql"));

TEST_P(AccountCardTest, TellsWhatTheChartSays) {
  const AccountCard card = Card("100201");
  EXPECT_EQ(card.account, (NamedCode{"100201", "Banque de l’Étoile"}));
  EXPECT_THAT(card.parents, ElementsAre(NamedCode{"1002", "银行存款"}));
  EXPECT_EQ(card.category, "资产");
  EXPECT_TRUE(card.debit_side);
  EXPECT_THAT(card.kinds, ElementsAre("部门核算", "客户往来"));
  EXPECT_THAT(card.books, ElementsAre("外币（美元）", "数量（吨）", "日记账", "银行账"));
  EXPECT_EQ(card.mnemonic, "ÉTOILE");
  EXPECT_TRUE(card.sealed);
  EXPECT_FALSE(card.leaf);
  EXPECT_FALSE(Card("2202").debit_side);
  EXPECT_THAT(Card("10020102").parents, ElementsAre(NamedCode{"1002", "银行存款"},
                                                    NamedCode{"100201", "Banque de l’Étoile"}));
  EXPECT_FALSE(ReadAccountCard(book_->GetSession(), "9999"));
  EXPECT_FALSE(ReadAccountCard(book_->GetSession(), "' or ''='"));
}

TEST_P(AccountCardTest, ParentsAddUpAllBelowThem) {
  const Month january{2024, 1};
  const Month march{2024, 3};
  EXPECT_THAT(Card("100201").months,
              ElementsAre(MonthMovement{january, 30'000, 0}, MonthMovement{march, 0, 5'000}));
  EXPECT_EQ(Card("1002").Balance(), 100'000);
  EXPECT_EQ(Card("1002").parent_balance, std::nullopt);
  EXPECT_EQ(Card("1002").ShareOfParent(), std::nullopt);
  EXPECT_EQ(Card("100201").parent_balance, 100'000);
  EXPECT_EQ(Card("100201").ShareOfParent(), 250);
  EXPECT_EQ(Card("2202").Balance(), -105'000);
  EXPECT_THAT(Card("1003").months, ElementsAre(MonthMovement{march, 5'000, 0}));
}

TEST_P(AccountCardTest, TotalsWithoutAMonthComeFirst) {
  tavrix::test::Run(*book_, "update gl_accsum set fiscal_year=null where ccode='10020101'");
  EXPECT_THAT(Card("100201").months, ElementsAre(MonthMovement{std::nullopt, 10'000, 0},
                                                 MonthMovement{Month{2024, 1}, 20'000, 0},
                                                 MonthMovement{Month{2024, 3}, 0, 5'000}));
}

TEST_P(AccountCardTest, AShareIsOfAParentOnTheSameSide) {
  Post(4, "2202", "100202", 100'000);
  EXPECT_EQ(Card("1002").Balance(), 0);
  EXPECT_EQ(Card("100201").ShareOfParent(), std::nullopt) << "of nothing";
  Post(4, "2202", "100202", 1);
  EXPECT_EQ(Card("100201").ShareOfParent(), std::nullopt) << "of the other side";
}

TEST_P(AccountCardTest, MnemonicsAreFoundWithoutAccents) {
  EXPECT_THAT(CodesByMnemonic(book_->GetSession(), FoldedPattern("etoi")), ElementsAre("100201"));
  EXPECT_THAT(CodesByMnemonic(book_->GetSession(), FoldedPattern("ＹＨ")), ElementsAre("1002"));
  EXPECT_THAT(CodesByMnemonic(book_->GetSession(), FoldedPattern("1003")), IsEmpty());
}

}  // namespace
}  // namespace desk::book
