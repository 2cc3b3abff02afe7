#include "views/trial_balance_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "book/files/files.h"
#include "book/files/paths.h"
#include "book/ledger/posting.h"
#include "book/sample.h"
#include "support/controls.h"
#include "support/matchers.h"
#include "support/scripted_user.h"
#include "support/temp_folder.h"
#include "support/test_book.h"
#include "views/layout_dialog.h"

namespace desk::views {
namespace {

using testing::Contains;
using View = TrialBalanceView;

class TrialBalanceViewTest : public testing::Test {
 protected:
  TrialBalanceViewTest() {
    book_.Environment().user_folder = folder_.File("");
    book_.Environment().user_folder.pop_back();
    Post(1, "100201", "2202", 10'000);
    Post(2, "1001", "100201", 2'550);
  }
  void Post(int month, const char* debit, const char* credit, std::int64_t amount) const {
    const std::vector<book::Entry> entries = {{.code = debit, .debit = amount},
                                              {.code = credit, .credit = amount}};
    book::Post(book_.GetSession(), {.year = 2024, .month = month, .day = 1, .entries = entries});
  }
  [[nodiscard]] std::string Path() const { return folder_.File("selfbb/TrialBalance.txt"); }
  [[nodiscard]] std::unique_ptr<View> Open() {
    return std::make_unique<View>(book_.GetSession(), book_.System(), user_);
  }
  /// The shown columns of each row, as displayed.
  [[nodiscard]] static std::vector<std::string> Lines(View& view) {
    std::vector<std::string> lines;
    const viewkit::FlexGrid& grid = view.Grid();
    for (int row = 1; row < grid.Rows(); ++row) {
      if (grid.RowHidden(row)) continue;
      std::string line;
      for (int col = 0; col < grid.Cols(); ++col) {
        if (grid.ColWidth(col) > 0) line += grid.DisplayText(row, col) + "|";
      }
      lines.push_back(std::move(line));
    }
    return lines;
  }

  tavrix::test::TempFolder folder_;
  book::Book book_ = tavrix::test::MakeBook({{.code = "1001", .name = "现金", .category = "资产"},
                                             {.code = "1002", .name = "银行", .category = "资产"},
                                             {.code = "100201", .name = "工行", .category = "资产"},
                                             {.code = "2202", .name = "应付", .category = "负债"}});
  tavrix::test::ScriptedUser user_;
};

TEST_F(TrialBalanceViewTest, SubtotalsOfEachCategoryAtFirst) {
  const auto view = Open();
  EXPECT_THAT(
      Lines(*view),
      ElementsAre("资产|1001|现金|||25.50||25.50||", "资产|100201|工行|||100.00|25.50|74.50||",
                  "资产小计|||||125.50|25.50|100.00||", "负债|2202|应付||||100.00||100.00|",
                  "负债小计||||||100.00||100.00|", "合计|||||125.50|125.50|100.00|100.00|"));
  EXPECT_THAT(Find<viewkit::Label>(*view, "Lbl", 1).Caption(), HasSubstr("借贷平衡"));
  Find<viewkit::ComboBox>(*view, "Combo").SetText("2024-02");
  EXPECT_EQ(Lines(*view).back(), "合计|||100.00|100.00|25.50|25.50|100.00|100.00|");
  Post(3, "1001", "2202", 100);
  view->Reload();
  EXPECT_EQ(Find<viewkit::ComboBox>(*view, "Combo").Text(), "2024-02");
  EXPECT_EQ(Find<viewkit::ComboBox>(*view, "Combo").ListCount(), 4);
}

TEST_F(TrialBalanceViewTest, SubtotalsOfFirstLevelAccountsComeBack) {
  {
    const auto view = Open();
    Find<viewkit::CheckBox>(*view, "Chk").Click();
    view->Grid().SetColWidth(View::kName, 3333);
  }
  const auto view = Open();
  EXPECT_EQ(Find<viewkit::CheckBox>(*view, "Chk").Value(), viewkit::CheckBox::kChecked);
  EXPECT_EQ(view->Grid().ColWidth(View::kName), 3333);
  EXPECT_EQ(view->Grid().FrozenCols(), 4);
  // An account of the first level that is itself the leaf is not said twice.
  EXPECT_THAT(Lines(*view),
              ElementsAre(HasSubstr("1001|现金"), HasSubstr("工行"), HasSubstr("1002 银行小计"),
                          HasSubstr("资产小计"), HasSubstr("应付"), HasSubstr("负债小计"),
                          HasSubstr("合计")));
  Find<viewkit::CheckBox>(*view, "Chk").Click();
  EXPECT_EQ(Lines(*view).size(), 6u);
  EXPECT_EQ(view->Grid().ColWidth(View::kFirstLevel), 0);
}

TEST_F(TrialBalanceViewTest, TotalsLookAlikeInTheUsersColours) {
  const auto view = Open();
  Find<viewkit::CheckBox>(*view, "Chk").Click();
  const viewkit::FlexGrid& grid = view->Grid();
  int totals = 0;
  for (int row = 1; row < grid.Rows(); ++row) {
    totals += grid.IsTotalRow(row) ? 1 : 0;
    for (int col = 0; col < View::kColumns; ++col) {
      const bool total = grid.IsTotalRow(row);
      EXPECT_EQ(grid.CellFontBold(row, col), total) << row << "," << col;
      const auto fore = grid.CellForeColor(row, col);
      EXPECT_TRUE(!total || (fore & 0x80000000) != 0) << row << "," << col;
      EXPECT_TRUE(!total || (grid.CellBackColor(row, col) & 0x80000000) != 0);
    }
  }
  EXPECT_GE(totals, 5);
}

TEST_F(TrialBalanceViewTest, TheDialogSetsAnyLayoutAndTakesItBack) {
  const auto view = Open();
  const auto before = Lines(*view);
  user_.in_dialog = [&](viewkit::DialogModel& dialog) {
    auto& layout = dynamic_cast<LayoutDialog&>(dialog);
    for (std::size_t i = 0; i < layout.Controls().Count(); ++i) {
      auto* height = dynamic_cast<viewkit::TextBox*>(&layout.Controls().At(i));
      if (height != nullptr && height->Index() != 0) height->SetText("60");
      auto* list = dynamic_cast<viewkit::FlexGrid*>(&layout.Controls().At(i));
      if (list == nullptr) continue;
      list->SetRow(1 + View::kCategory);
      list->HandleDoubleClick(list->Row());
    }
    layout.DefaultButton()->Click();
  };
  view->AskLayout();
  EXPECT_EQ(view->Grid().ColWidth(View::kCategory), 0);
  EXPECT_THAT(Lines(*view).back(), HasSubstr("合计"));  // in the first column that is seen
  EXPECT_EQ(view->Grid().RowHeight(0), 900);
  EXPECT_EQ(view->Grid().RowHeight(1), 900);
  user_.in_dialog = [&](viewkit::DialogModel& dialog) {
    for (std::size_t i = 0; i < dialog.Controls().Count(); ++i) {
      auto* button = dynamic_cast<viewkit::CommandButton*>(&dialog.Controls().At(i));
      if (button != nullptr && button->Caption() == "恢复默认(&R)") button->Click();
    }
  };
  view->AskLayout();
  EXPECT_EQ(Lines(*view), before);
  EXPECT_LT(view->Grid().RowHeight(0), 900);
  EXPECT_LT(view->Grid().RowHeight(1), 900);
}

TEST_F(TrialBalanceViewTest, OpensWithoutAWordOnAnyLayoutFile) {
  std::filesystem::create_directory(book::PathOf(folder_.File("selfbb")));
  const std::string damaged[] = {std::string("\0\xFF[VsIsGroupOn", 15), "[VsIsTotalOn]\nVsCol5=x\n",
                                 std::string((1 << 20) + 1, 'a')};
  for (const std::string& text : damaged) {
    std::ofstream(book::PathOf(Path()), std::ios::binary) << text;
    EXPECT_EQ(Lines(*Open()).size(), 3u);
  }
  EXPECT_EQ(book::ReadFile(book::PathOf(Path())).size(), damaged[2].size());
  EXPECT_THAT(user_.questions, IsEmpty());
  const auto view = Open();
  Find<viewkit::CheckBox>(*view, "Chk").Click();
  EXPECT_EQ(user_.questions.size(), 1u);
  EXPECT_EQ(Find<viewkit::CheckBox>(*view, "Chk").Value(), viewkit::CheckBox::kUnchecked)
      << "what cannot be kept is not so";
}

// Whatever level is shown, the totals say what those of the leaves do.
TEST_F(TrialBalanceViewTest, LevelsShowParentsAndCountNothingTwice) {
  std::vector<std::string> opened;
  const auto view = std::make_unique<View>(
      book_.GetSession(), book_.System(), user_,
      [&](const std::string& code, const book::Period& period) {
        opened.push_back(code + (period == book::Period() ? " all" : " month"));
      });
  const std::string total = Lines(*view).back();
  auto& level = Find<viewkit::ComboBox>(*view, "Combo", 1);
  level.SetText("一级");
  EXPECT_THAT(Lines(*view)[1], HasSubstr("1002|银行|||100.00|25.50|74.50||"));
  EXPECT_EQ(Lines(*view).back(), total);
  level.SetText("全部");
  EXPECT_THAT(Lines(*view), ElementsAre(HasSubstr("1001|现金"), HasSubstr("1002|银行|||100.00"),
                                        HasSubstr("100201|　工行|||100.00"), HasSubstr("资产小计"),
                                        HasSubstr("应付"), HasSubstr("负债小计"),
                                        HasSubstr("125.50|125.50|100.00|100.00")));
  view->Grid().SetFocus();
  for (const int row : {2, 4}) {  // a parent, a row of totals
    view->Grid().SetRow(row);
    EXPECT_EQ(view->UseKey(viewkit::Key::kEnter, {}), row == 2);
  }
  EXPECT_THAT(opened, ElementsAre("1002 all"));
  Find<viewkit::CheckBox>(*view, "Chk").Click();  // grey: parents are there already
  EXPECT_THAT(Lines(*view).back(), HasSubstr("125.50|125.50|100.00|100.00"));
}

// A foreign host has posted to codes that are no accounts.
TEST_F(TrialBalanceViewTest, CodesOutsideTheChartCountAndAreNamed) {
  const std::string total = Lines(*Open()).back();
  tavrix::test::Run(book_, "update gl_accsum set ccode='7001' where ccode='1001'");
  const auto view = Open();
  EXPECT_EQ(Lines(*view).back(), total);
  EXPECT_THAT(Lines(*view), Contains("无科目|7001|（科目表中没有）|||25.50||25.50||"));
  EXPECT_THAT(Find<viewkit::Label>(*view, "Lbl", 1).Caption(), HasSubstr("1 个编码不在科目表中"));
  Find<viewkit::ComboBox>(*view, "Combo", 1).SetText("全部");
  EXPECT_THAT(Lines(*view).back(), HasSubstr("125.50|125.50|100.00|100.00"));
}

TEST_F(TrialBalanceViewTest, SealedAccountsStandBack) {
  tavrix::test::Run(book_, "update gl_code set bclose=1 where ccode='1001'");
  const auto view = Open();
  const viewkit::FlexGrid& grid = view->Grid();
  const int sealed = grid.FindRow("1001", 1, View::kCode);
  EXPECT_EQ(grid.CellForeColor(sealed, View::kName), viewkit::color::kGrayText);
  EXPECT_NE(grid.CellForeColor(sealed, View::kDebit), viewkit::color::kGrayText);
  const int other = grid.FindRow("100201", 1, View::kCode);
  EXPECT_NE(grid.CellForeColor(other, View::kName), viewkit::color::kGrayText);
}

}  // namespace
}  // namespace desk::views
