#include "views/opening_balance_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "book/ledger/account_ledger.h"
#include "book/ledger/posting.h"
#include "book/ledger/trial_balance.h"
#include "support/controls.h"
#include "support/matchers.h"
#include "support/scripted_user.h"
#include "support/test_book.h"

namespace desk::views {
namespace {

using viewkit::Key;

class OpeningBalanceViewTest : public testing::Test {
 protected:
  OpeningBalanceViewTest() { view_.emplace(book_.GetSession(), user_); }

  template <class Kind>
  [[nodiscard]] Kind& Find(const std::string& name, int index) {
    return tavrix::test::Find<Kind>(*view_, name, index);
  }
  [[nodiscard]] viewkit::TextBox& Box(int index) { return Find<viewkit::TextBox>("Txt", index); }
  void Choose(const std::string& code) {
    Leave();
    view_->Grid().SetRow(view_->Grid().FindRow(code, 1, OpeningBalanceView::kCode));
    view_->Grid().SetFocus();
    ASSERT_TRUE(view_->UseKey(Key::kEnter, {}));
    view_->Grid().NotifyFocus(false);
  }
  /// A box without a window does not lose the focus by itself.
  void Leave() {
    for (int i = 0; i < kBoxes; ++i) Box(i).NotifyFocus(false);
  }
  /// Types into the box that has the focus, and Enter.
  void Type(const std::string& text) {
    for (int i = 0; i < kBoxes; ++i) {
      if (!Box(i).Focused()) continue;
      Box(i).SetText(text);
      Leave();
      Box(i).NotifyFocus(true);
      ASSERT_TRUE(view_->UseKey(Key::kEnter, {}));
      bool gone_on = view_->Grid().Focused();
      for (int other = 0; other < kBoxes; ++other) {
        gone_on = gone_on || (other != i && Box(other).Focused());
      }
      if (gone_on) Box(i).NotifyFocus(false);
      return;
    }
    FAIL() << "no box to type " << text;
  }
  void Save() { EXPECT_TRUE(view_->UseKey(Key{'S'}, {.control = true})); }
  [[nodiscard]] std::vector<std::string> Stored(const char* ledger, const char* columns) {
    return tavrix::test::AllRows(book_, std::string("select ccode,") + columns + " from " + ledger +
                                            " where fiscal_year is null order by ccode," + columns);
  }

  static constexpr int kBoxes = 6;
  static constexpr int kForeign = 3;
  static constexpr int kRate = 4;
  static constexpr int kQuantity = 5;

  book::Book book_ = tavrix::test::MakeBook(
      {{.code = "1001", .name = "现金", .category = "资产"},
       {.code = "1002", .name = "银行", .category = "资产"},
       {.code = "100201", .name = "工行", .category = "资产"},
       {.code = "1122", .name = "应收", .category = "资产", .customer = true},
       {.code = "2202", .name = "应付", .category = "负债", .debit = false}});
  tavrix::test::ScriptedUser user_;
  std::optional<OpeningBalanceView> view_;
};

TEST_F(OpeningBalanceViewTest, TypedFromRowToRowAndHeldByAllLedgers) {
  Choose("1001");
  Type("100");  // 1001; on to 100201, past its parent
  Type("1,000.50");
  Choose("1122");  // its first partner
  Type("甲");
  Type("30");
  Choose("1122");
  Type("乙");
  Type("20");
  EXPECT_THAT(Find<viewkit::Label>("Lbl", 4).Caption(), HasSubstr("差额 1,150.50"));
  user_.answers = {viewkit::UserPort::Answer::kNo};
  Save();
  EXPECT_THAT(user_.questions.at(0).text, HasSubstr("借贷不平，差额 1,150.50"));
  EXPECT_THAT(Stored("gl_accsum", "debit"), IsEmpty());
  Choose("2202");
  EXPECT_TRUE(Box(2).Focused()) << "credit is its side";
  Type("1150.5");
  Save();
  EXPECT_FALSE(view_->HasChanges());
  EXPECT_THAT(Stored("gl_accsum", "debit,credit"),
              ElementsAre("1001|10000|0", "100201|100050|0", "1122|5000|0", "2202|0|115050"));
  EXPECT_THAT(Stored("gl_accass", "customer,debit"), ElementsAre("1122|乙|2000", "1122|甲|3000"));
  EXPECT_EQ(Stored("gl_accvouch", "debit,credit").size(), 5U);
  const int parent = view_->Grid().FindRow("1002", 1, OpeningBalanceView::kCode);
  EXPECT_EQ(view_->Grid().TextMatrix(parent, OpeningBalanceView::kDebit), "1,000.50");
  // Typed anew it takes the place of what was there.
  Choose("1001");
  Type("");
  user_.answers = {viewkit::UserPort::Answer::kYes};
  Save();
  EXPECT_EQ(Stored("gl_accsum", "debit").size(), 3U);
  EXPECT_EQ(Stored("gl_accvouch", "debit").size(), 4U);
}

TEST_F(OpeningBalanceViewTest, CountsBeforeTheFirstMonth) {
  Choose("1001");
  Type("100");
  Choose("2202");
  Type("100");
  Save();
  book::Post(book_.GetSession(),
             {.year = 2024,
              .month = 1,
              .day = 1,
              .entries = {{.code = "1001", .credit = 4000}, {.code = "2202", .debit = 4000}}});
  for (const auto& month : {std::optional<book::Month>(), std::optional(book::Month{2024, 1})}) {
    const auto period = book::Period::Of(month);
    const auto row = book::ReadTrialBalance(book_.GetSession(), period).at(0);
    EXPECT_EQ(row.opening, 10'000);
    EXPECT_EQ(row.credit, 4'000);
    EXPECT_EQ(row.Closing(), 6'000);
    EXPECT_EQ(book::ReadAccountLedger(book_.GetSession(), "1001", period)->Closing(), 6'000);
  }
}

TEST_F(OpeningBalanceViewTest, RefusesAndLosesNothing) {
  Choose("1001");
  Box(1).SetText("1");
  Box(2).SetText("2");
  EXPECT_TRUE(view_->UseKey(Key::kEnter, {}));
  EXPECT_THAT(user_.questions.at(0).text, HasSubstr("借方或贷方之一"));
  EXPECT_EQ(Box(1).Text(), "1");
  Choose("100201");
  Type("5");
  user_.answers = {viewkit::UserPort::Answer::kNo};
  EXPECT_FALSE(view_->MayClose());
  view_->Reload();
  EXPECT_TRUE(view_->HasChanges()) << "what was typed stays";
  tavrix::test::Run(book_, "update gl_code set ccode='100209' where ccode='100201'");
  user_.answers = {viewkit::UserPort::Answer::kYes};
  Save();
  EXPECT_THAT(user_.questions.back().text, HasSubstr("没有科目 100201"));
  EXPECT_THAT(Stored("gl_accsum", "debit"), IsEmpty());
  EXPECT_TRUE(view_->HasChanges());
}

class ForeignOpeningTest : public OpeningBalanceViewTest {
 protected:
  ForeignOpeningTest() {
    book_ = tavrix::test::MakeBook(
        {{.code = "1002", .name = "银行", .category = "资产"},
         {.code = "100201", .name = "人民币户", .category = "资产"},
         {.code = "100202", .name = "O'Neil & Sons", .category = "资产", .currency = "美元"},
         {.code = "1405", .name = "商品", .category = "资产", .unit = "吨"},
         {.code = "2202",
          .name = "应付",
          .category = "负债",
          .debit = false,
          .currency = "美元",
          .supplier = true}});
    view_.emplace(book_.GetSession(), user_);
    view_->Resize(15000, 9000);
  }
  [[nodiscard]] std::string Cell(const std::string& code, int col) {
    viewkit::FlexGrid& grid = view_->Grid();
    return std::string(grid.TextMatrix(grid.FindRow(code, 1, OpeningBalanceView::kCode), col));
  }
};

// As in a voucher: of foreign amount, rate and amount two give the third, and entries hold them.
TEST_F(ForeignOpeningTest, ForeignAmountsAndQuantitiesStandWhereVouchersHaveThem) {
  using View = OpeningBalanceView;
  EXPECT_FALSE(view_->Grid().ColHidden(View::kForeign));
  Choose("100201");
  EXPECT_FALSE(Box(kForeign).Visible());
  EXPECT_FALSE(Box(kQuantity).Visible());
  Type("100");
  EXPECT_TRUE(Box(kForeign).Visible());
  EXPECT_TRUE(Box(kForeign).Focused()) << "the next account begins with its foreign amount";
  Type("1,000");
  Type("7.1");
  EXPECT_EQ(Box(1).Text(), "7,100.00");
  Type("7,100");
  EXPECT_TRUE(Box(kQuantity).Focused());
  Type("12.5");
  Type("500");
  Choose("2202");
  Type("甲");
  Type("200");
  Type("");
  Type("1,420");  // no rate: the two amounts give it
  EXPECT_EQ(Cell("2202", View::kForeign), "200.00");
  EXPECT_EQ(view_->Grid().TextMatrix(view_->Grid().Rows() - 1, View::kRate), "7.1");
  EXPECT_EQ(Cell("1002", View::kForeign), "1,000.00") << "all below in one currency";
  EXPECT_EQ(Cell("1002", View::kRate), "") << "some of it is in none";
  EXPECT_EQ(Cell("1405", View::kQuantity), "12.5");
  user_.answers = {viewkit::UserPort::Answer::kYes};
  Save();
  EXPECT_THAT(Stored("gl_accvouch", "debit,credit,currency_name,foreign_amount,quantity,supplier"),
              ElementsAre("100201|10000|0||0|0|", "100202|710000|0|美元|100000|0|",
                          "1405|50000|0||0|12.5|", "2202|0|142000|美元|20000|0|甲"));
  view_.emplace(book_.GetSession(), user_);
  EXPECT_EQ(Cell("2202", View::kForeign), "200.00") << "read as it was written";
  EXPECT_EQ(Cell("100202", View::kRate), "7.1");
  const auto sheet = book::ReadAccountLedger(book_.GetSession(), "2202", {});
  EXPECT_EQ(sheet->lines.at(0).foreign_amount, 20'000);
  EXPECT_EQ(book::ReadAccountLedger(book_.GetSession(), "1405", {})->lines.at(0).quantity, 12.5);
}

TEST_F(ForeignOpeningTest, WhatIsGivenUpGoesAndWhatIsTypedStays) {
  Choose("100202");
  Type("1000");
  Type("7");
  Type("7000");
  Choose("100202");
  Leave();
  Box(1).NotifyFocus(true);
  Type("");  // the amount goes, and what belongs to it
  EXPECT_EQ(Cell("100202", OpeningBalanceView::kForeign), "");
  Choose("1405");
  Type("3");
  Type("");
  EXPECT_THAT(user_.questions.back().text, HasSubstr("也要填写借方或贷方金额"));
  EXPECT_EQ(Box(kQuantity).Text(), "3");
  tavrix::test::Run(book_, "update gl_code set ccode_name='x' where ccode='1405'");
  view_->Follow();
  EXPECT_EQ(Box(kQuantity).Text(), "3") << "others' changes do not empty the boxes";
  user_.answers = {viewkit::UserPort::Answer::kNo};
  EXPECT_FALSE(view_->MayClose());
}

TEST_F(OpeningBalanceViewTest, WithoutForeignAccountsNothingSpeaksOfThem) {
  for (const int col : {OpeningBalanceView::kForeign, OpeningBalanceView::kQuantity}) {
    EXPECT_TRUE(view_->Grid().ColHidden(col));
  }
  EXPECT_FALSE(view_->Grid().ColHidden(OpeningBalanceView::kPartner));
}

TEST_F(OpeningBalanceViewTest, TotalsOfOthersWithoutAPartnerAreALineOfTheirOwn) {
  tavrix::test::Run(book_, "insert into gl_accsum(i_id,ccode,debit,credit)values(1,'1122',900,0)");
  view_.emplace(book_.GetSession(), user_);
  const viewkit::FlexGrid& grid = view_->Grid();
  const int account = grid.FindRow("1122", 1, OpeningBalanceView::kCode);
  EXPECT_EQ(grid.TextMatrix(account + 1, OpeningBalanceView::kPartner), "（未指定）");
  Choose("1122");
  Type("甲");
  Type("1");
  user_.answers = {viewkit::UserPort::Answer::kYes};
  Save();
  EXPECT_THAT(Stored("gl_accsum", "debit"), ElementsAre("1122|1000"));
  EXPECT_THAT(Stored("gl_accvouch", "customer,debit"), ElementsAre("1122||900", "1122|甲|100"));
}

}  // namespace
}  // namespace desk::views
