#include "views/voucher_list_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "book/ledger/posting.h"
#include "support/controls.h"
#include "support/matchers.h"
#include "support/scripted_user.h"
#include "support/test_book.h"
#include "views/date_text.h"
#include "views/reverse_dialog.h"
#include "views/voucher_sheet.h"

namespace desk::views {
namespace {

using viewkit::Key;

class VoucherListViewTest : public testing::Test {
 protected:
  VoucherListViewTest() {
    Post(1, "100201", 10'000);
    Post(2, "100202", -2'550);
    Post(2, "100202", 70);
  }
  void Post(int month, const char* debit, std::int64_t amount) const {
    const std::vector<book::Entry> entries = {{.summary = "收款", .code = debit, .debit = amount},
                                              {.code = "1001", .credit = amount}};
    book::Post(book_.GetSession(), {.year = 2024, .month = month, .day = 29, .entries = entries});
  }
  [[nodiscard]] VoucherActions::Calls Calls() {
    return {.open = [this](const book::VoucherKey& key) { opened_.push_back(VoucherName(key)); },
            .enter = [this](const book::Voucher& voucher) { entered_ = voucher; },
            .today = [] { return *ParseDate("2024-03-05", false); }};
  }
  [[nodiscard]] std::unique_ptr<VoucherListView> Open() {
    return std::make_unique<VoucherListView>(book_.GetSession(), user_, Calls());
  }
  static std::vector<std::string> Names(VoucherListView& view) {
    std::vector<std::string> names;
    for (int row = 1; row < view.Grid().Rows(); ++row) {
      names.emplace_back(view.Grid().TextMatrix(row, VoucherListView::kNumber));
    }
    return names;
  }

  book::Book book_ = tavrix::test::MakeBook();
  tavrix::test::ScriptedUser user_;
  std::vector<std::string> opened_;
  book::Voucher entered_;
};

TEST_F(VoucherListViewTest, SearchesByKeysAndKeepsItsPlace) {
  const auto view = Open();
  EXPECT_THAT(Names(*view), ElementsAre("2024-02 记-2 号", "2024-02 记-1 号", "2024-01 记-1 号"));
  const auto& lines = Find<viewkit::FlexGrid>(*view, "VsLines");
  EXPECT_EQ(lines.TextMatrix(3, VoucherLines::kDebit), "0.70");
  view->Grid().SetRow(2);
  EXPECT_EQ(lines.TextMatrix(1, VoucherLines::kDebit), "-25.50");
  Post(3, "100201", 1);
  view->Reload();
  EXPECT_EQ(view->Grid().Row(), 3) << "the same voucher";
  auto& date = Find<viewkit::TextBox>(*view, "Txt", 1);
  date.SetText("2024.1");
  date.SetFocus();
  EXPECT_TRUE(view->UseKey(Key::kEnter, {}));
  EXPECT_THAT(Names(*view), ElementsAre("2024-01 记-1 号"));
  date.NotifyFocus(false);
  EXPECT_TRUE(view->UseKey(Key::kEnter, {}));
  EXPECT_THAT(opened_, ElementsAre("2024-01 记-1 号"));
  Find<viewkit::TextBox>(*view, "Txt", 4).SetText("1.234");
  Find<viewkit::CommandButton>(*view, "Cmd", 0).Click();
  EXPECT_THAT(user_.questions.at(0).text, HasSubstr("金额最多有两位小数"));
}

TEST_F(VoucherListViewTest, TakesOneBackOnTheDateThatIsAskedFor) {
  const auto view = Open();
  view->Grid().SetRow(3);
  user_.in_dialog = [](viewkit::DialogModel& dialog) { dialog.Close(); };
  Find<viewkit::CommandButton>(*view, "Cmd", 4).Click();
  EXPECT_EQ(Names(*view).size(), 3U);
  user_.in_dialog = [](viewkit::DialogModel& dialog) {
    EXPECT_EQ(DateText(dynamic_cast<ReverseDialog&>(dialog).Date()), "2024-03-05");
    dialog.DefaultButton()->Click();
  };
  Find<viewkit::CommandButton>(*view, "Cmd", 4).Click();
  EXPECT_EQ(Names(*view).at(0), "2024-03 记-1 号");
  EXPECT_EQ(view->Grid().Row(), 1) << "the new one";
  Find<viewkit::CommandButton>(*view, "Cmd", 4).Click();
  EXPECT_THAT(user_.questions.at(0).text, HasSubstr("是冲销凭证"));
  Find<viewkit::CommandButton>(*view, "Cmd", 3).Click();
  EXPECT_THAT(user_.questions.at(1).text, HasSubstr("不能复制"));
  EXPECT_TRUE(entered_.entries.empty());
  VoucherSheet sheet(book_.GetSession(), user_, {{2024, 1}, 1}, Calls());
  EXPECT_FALSE(Find<viewkit::CommandButton>(sheet, "Cmd", 1).Enabled());
  EXPECT_THAT(Find<viewkit::Label>(sheet, "Lbl", 1).Caption(), HasSubstr("2024-03 记-1 号"));
  Find<viewkit::CommandButton>(sheet, "Cmd", 0).Click();
  ASSERT_EQ(entered_.entries.size(), 2U);
  EXPECT_EQ(entered_.entries[0].code, "100201");
}

TEST(DateText, TakesWhatUsersType) {
  const auto read = [](const char* text, bool last) {
    const auto date = ParseDate(text, last);
    return date ? DateText(*date) : std::string("-");
  };
  EXPECT_EQ(read(" 2024-2 ", true), "2024-02-29");
  EXPECT_EQ(read("202402", false), "2024-02-01");
  EXPECT_EQ(read("2023", true), "2023-12-31");
  EXPECT_EQ(read("20230228", true), "2023-02-28");
  EXPECT_EQ(read("2023/2/8", true), "2023-02-08");
  for (const char* wrong : {"", "2023-2-29", "2023-13", "23-1-1", "2024--1", "x", "2024-1-1-1",
                            "99999999999", "2024-1-"}) {
    EXPECT_EQ(read(wrong, false), "-") << wrong;
  }
}

}  // namespace
}  // namespace desk::views
