#include "views/account_ledger_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "book/ledger/posting.h"
#include "support/controls.h"
#include "support/matchers.h"
#include "support/scripted_user.h"
#include "support/test_book.h"

namespace desk::views {
namespace {

using viewkit::Key;

/// The shown columns of each row, as displayed.
std::vector<std::string> Lines(const viewkit::FlexGrid& grid) {
  std::vector<std::string> lines;
  for (int row = 1; row < grid.Rows(); ++row) {
    std::string line;
    for (int col = 0; col < grid.Cols(); ++col) {
      if (!grid.ColHidden(col)) line += grid.DisplayText(row, col) + "|";
    }
    lines.push_back(std::move(line));
  }
  return lines;
}

class AccountLedgerViewTest : public testing::Test {
 protected:
  AccountLedgerViewTest() {
    Post(2023, 12, "100201", 900);
    Post(2024, 1, "100201", 10'000);
    Post(2024, 2, "100202", -2'550);
  }
  void Post(int year, int month, const char* debit, std::int64_t amount) const {
    const std::vector<book::Entry> entries = {{.summary = "收", .code = debit, .debit = amount},
                                              {.code = "1001", .credit = amount}};
    book::Post(book_.GetSession(), {.year = year, .month = month, .day = 1, .entries = entries});
  }
  [[nodiscard]] std::unique_ptr<AccountLedgerView> Open(const char* code) {
    return std::make_unique<AccountLedgerView>(
        book_.GetSession(), user_,
        AccountLedgerView::Plan{
            .code = code, .open_voucher = [this](const book::Month& month, int number) {
              opened_.push_back(book::MonthText(month) + "/" + std::to_string(number));
            }});
  }

  book::Book book_ = tavrix::test::MakeBook();
  tavrix::test::ScriptedUser user_;
  std::vector<std::string> opened_;
};

TEST_F(AccountLedgerViewTest, AParentOfThisYearAtFirst) {
  const auto view = Open("1002");
  EXPECT_EQ(view->Title(), "明细账 1002 银行存款");
  EXPECT_THAT(
      Lines(view->Grid()),
      ElementsAre(
          "||期初余额|||||借|9.00|", "2024-01-01|记-1|收|100201|1001 库存现金|100.00||借|109.00|",
          "2024-01||本月合计|||100.00||借|109.00|", "2024-01||本年累计|||100.00||借|109.00|",
          "2024-02-01|记-1|收|100202|1001 库存现金|-25.50||借|83.50|",
          "2024-02||本月合计|||-25.50||借|83.50|", "2024-02||本年累计|||74.50||借|83.50|"));
  const viewkit::FlexGrid& grid = view->Grid();
  EXPECT_NE(grid.CellForeColor(5, AccountLedgerView::kDebit),
            grid.CellForeColor(2, AccountLedgerView::kDebit))
      << "red";
  EXPECT_THAT(Find<viewkit::Label>(*view, "Lbl", 4).Caption(), HasSubstr("期末余额 借 83.50"));
}

TEST_F(AccountLedgerViewTest, KeysChangeTheAccountAndOpenTheVoucher) {
  const auto view = Open("1002");
  auto& box = Find<viewkit::TextBox>(*view, "Txt");
  box.SetText("工商银行没有");
  box.SetFocus();
  EXPECT_TRUE(view->UseKey(Key::kEnter, {}));
  ASSERT_EQ(user_.questions.size(), 1U);
  EXPECT_EQ(view->Key(), "1002");
  box.SetText(" 库存现金 ");
  EXPECT_TRUE(view->UseKey(Key::kEnter, {}));
  EXPECT_EQ(view->Key(), "1001");
  EXPECT_TRUE(view->Grid().Focused());
  box.NotifyFocus(false);  // as the box's window would
  EXPECT_TRUE(view->UseKey(Key::kEnter, {}));
  EXPECT_THAT(opened_, IsEmpty()) << "the opening balance has no voucher";
  view->Grid().SetRow(2);
  EXPECT_TRUE(view->UseKey(Key::kEnter, {}));
  EXPECT_THAT(opened_, ElementsAre("2024-01/1"));
}

TEST_F(AccountLedgerViewTest, APeriodNeverEndsBeforeItBegins) {
  const auto view = Open("1001");
  auto& first = Find<viewkit::ComboBox>(*view, "Combo", 0);
  auto& last = Find<viewkit::ComboBox>(*view, "Combo", 1);
  EXPECT_EQ(first.Text(), "2024-01");
  last.SetText("2023-12");
  EXPECT_EQ(first.Text(), "2023-12");
  EXPECT_EQ(Lines(view->Grid()).size(), 4U);
  Post(2024, 3, "100201", 1);
  view->Reload();
  EXPECT_EQ(last.Text(), "2023-12");
  EXPECT_EQ(last.ListCount(), 5);
}

// Sheets are read again when others change the chart, too: nobody is to be asked anything then.
TEST_F(AccountLedgerViewTest, FollowsItsAccountAndSaysWhenItHasGone) {
  const auto view = Open("100201");
  view->SetPeriod({});
  EXPECT_EQ(view->Subtitle(), "全部期间");
  tavrix::test::Run(book_, "update gl_code set ccode='100209' where ccode='100201'");
  view->Reload();
  EXPECT_EQ(view->Key(), "100209");
  EXPECT_EQ(Lines(view->Grid()).size(), 7U);
  for (const char* ledger : {"gl_accvouch", "gl_accsum", "gl_code"}) {
    tavrix::test::Run(book_, std::string("delete from ") + ledger + " where ccode='100209'");
  }
  view->Reload();
  EXPECT_THAT(user_.questions, IsEmpty());
  EXPECT_THAT(Find<viewkit::Label>(*view, "Lbl", 4).Caption(), HasSubstr("100209 已不在"));
}

}  // namespace
}  // namespace desk::views
