#include "views/layout_dialog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "book/files/files.h"
#include "book/files/paths.h"
#include "support/controls.h"
#include "support/matchers.h"
#include "support/scripted_user.h"
#include "support/test_book.h"
#include "views/column_layout.h"

namespace desk::views {
namespace {

using tavrix::viewkit::Alignment;
using tavrix::viewkit::ColumnType;
using tavrix::viewkit::SortOrder;

class LayoutDialogTest : public testing::Test {
 protected:
  LayoutDialogTest() {
    grid_.SetFixedRows(1);
    grid_.SetCols(4);
    const char* titles[] = {"编码", "名称", "标识", "余额"};
    for (int col = 0; col < 4; ++col) {
      grid_.SetTextMatrix(0, col, titles[col]);
      grid_.SetColWidth(col, 1507);
    }
    grid_.SetColHidden(2, true);
    grid_.SetColDataType(1, ColumnType::kString);
    grid_.SetColFormat(3, "#,##0.00");
  }
  [[nodiscard]] LayoutChoice Read() const { return ReadLayout(path_, grid_, *book_.System()); }
  void Write(const LayoutChoice& before, const LayoutChoice& after) const {
    WriteLayout(path_, grid_, before, after, *book_.System());
  }
  [[nodiscard]] std::string OnDisk() const { return book::ReadFile(book::PathOf(path_)); }

  tavrix::test::TempFolder folder_;
  std::string path_ = folder_.File("布局.txt");
  book::Book book_ = tavrix::test::MakeBook();
  viewkit::FlexGrid grid_{"Vs", 3};
  tavrix::test::ScriptedUser user_;
};

TEST_F(LayoutDialogTest, WritesWhatHasChangedAndNothingElse) {
  std::ofstream(book::PathOf(path_), std::ios::binary)
      << "; mine\n[VsColFormat_Xs_3]\nVsCol3= 3 \n[Other]\nx=1\n";
  const LayoutChoice before = Read();
  ASSERT_EQ(before.columns.size(), 3u);  // the view itself hides one
  EXPECT_EQ(before.columns[2].decimals, "3");

  LayoutDialog dialog({.subject = "测试"}, before, user_);
  auto& list = Find<viewkit::FlexGrid>(dialog, "Vs");
  list.HandleDoubleClick(1);
  list.SetRow(3);
  Find<viewkit::TextBox>(dialog, "Txt").SetText("120");
  Find<viewkit::ComboBox>(dialog, "Combo", 3).SetListIndex(4);
  Find<viewkit::ComboBox>(dialog, "Combo", 4).SetListIndex(2);
  Find<viewkit::CheckBox>(dialog, "Chk", 2).Click();
  list.SetRow(2);
  EXPECT_FALSE(Find<viewkit::ComboBox>(dialog, "Combo", 3).Enabled());  // a column of texts
  Find<viewkit::ComboBox>(dialog, "Combo", 6).SetListIndex(2);          // now of numbers
  EXPECT_TRUE(Find<viewkit::ComboBox>(dialog, "Combo", 3).Enabled());
  Find<viewkit::CheckBox>(dialog, "Chk", 1).Click();
  Find<viewkit::ComboBox>(dialog, "Combo", 0).SetListIndex(2);
  Find<viewkit::ComboBox>(dialog, "Combo", 5).SetListIndex(1);
  Find<viewkit::TextBox>(dialog, "Txt", 1).SetText("");
  Find<viewkit::TextBox>(dialog, "Txt", 2).SetText("30");
  Find<viewkit::CheckBox>(dialog, "Chk", 5).Click();
  Find<viewkit::CommandButton>(dialog, "Cmd", 0).Click();
  ASSERT_EQ(dialog.Result(), LayoutDialog::Outcome::kAccepted);

  Write(before, dialog.Choice());
  EXPECT_EQ(
      OnDisk(),
      "; mine\n[VsColFormat_Xs_3]\nVsCol3= 3 \n[Other]\nx=1\n"
      "\n[VsIsHidden_3]\nVsCol0=1\n\n[VsColDataType_3]\nVsCol1=5\n\n[VsColAlignment_3]\n"
      "VsCol1=4\n\n[VsIsGroupOn_3]\nVsCol1=1\n\n"
      "[VsColWidth_3]\nVsCol3=1800\n\n[VsColValDataType_3]\nVsCol3=4\n\n[VsIsSort_3]\nVsCol3=2\n\n"
      "[VsIsTotalOn_3]\nVsCol3=1\n\n[Vs_3]\nVsFixedCols=1\nVsFixedRowHeight=0\nVsRowHeight=450\n"
      "VsTotalSave=1\n");
}

// A width is not rounded by being looked at, and a column that comes back gets one.
TEST_F(LayoutDialogTest, FitsIntoASmallScreen) {
  constexpr int kWidth = 640 * 15 - 8 * 15;  // with a border
  constexpr int kHeight = 480 * 15 - 32 * 15;
  for (const int room : {kHeight, 20'000}) {
    LayoutDialog dialog({.subject = "x", .has_defaults = true}, Read(), user_);
    const int before = dialog.Height();
    dialog.FitInto(room);
    EXPECT_LE(dialog.Width(), kWidth);
    EXPECT_EQ(dialog.Height(), std::min(before, room));
    const auto& list = Find<viewkit::FlexGrid>(dialog, "Vs");
    EXPECT_GE(list.GetBounds().height, 1500);
    for (std::size_t i = 0; i < dialog.Controls().Count(); ++i) {
      const auto& control = dialog.Controls().At(i);
      const host::Bounds place = control.GetBounds();
      EXPECT_LT(place.top + place.height, dialog.Height()) << control.Name();
      if (&control == &list) continue;
      EXPECT_GE(place.top, list.GetBounds().top + list.GetBounds().height) << control.Name();
    }
  }
}

TEST_F(LayoutDialogTest, WidthsOfColumnsThatComeAndGo) {
  grid_.SetColWidth(0, 0);
  const LayoutChoice before = Read();
  LayoutDialog dialog({.scope = LayoutScope::kWidths, .for_others = "同样"}, before, user_);
  auto& list = Find<viewkit::FlexGrid>(dialog, "Vs");
  for (int row = 1; row <= 3; ++row) list.SetRow(row);
  EXPECT_EQ(dialog.Choice(), before);
  list.SetRow(1);
  list.KeyDown.Raise(viewkit::Key::kSpace, {});
  Write(before, dialog.Choice());
  EXPECT_EQ(OnDisk(), "[VsIsHidden_3]\r\nVsCol0=0\r\n\r\n[VsColWidth_3]\r\nVsCol0=1440\r\n");
}

/// What somebody has written by hand is nothing to complain of, or to change, as long as the user
/// leaves it alone.
TEST_F(LayoutDialogTest, WhatStandsAndWasNotTouchedStays) {
  std::ofstream(book::PathOf(path_), std::ios::binary)
      << "[VsColFormat_Xs_3]\nVsCol3= 3 \n[VsColValDataType_3]\nVsCol3=9\n[VsIsSort_3]\nVsCol1=77\n"
         "[Vs_3]\nVsRowHeight=32000\nVsFixedRowHeight=3\n";
  const std::string file = OnDisk();
  grid_.SetColWidth(0, 45'000);
  grid_.SetColWidth(1, 5);
  grid_.SetColFormat(3, " 0.0 ");
  grid_.SetColDataType(3, static_cast<ColumnType>(14));
  grid_.SetColAlignment(3, Alignment::kRightBottom);
  grid_.SetCols(6);
  grid_.SetFrozenCols(6);
  grid_.SetColHidden(5, true);
  const LayoutChoice before = Read();
  for (const int shown_row : {1, 2, 3}) {
    LayoutDialog dialog({.subject = "测试"}, before, user_);
    Find<viewkit::FlexGrid>(dialog, "Vs").SetRow(shown_row);
    Find<viewkit::CommandButton>(dialog, "Cmd", 0).Click();
    EXPECT_EQ(dialog.Result(), LayoutDialog::Outcome::kAccepted);
    EXPECT_EQ(dialog.Choice(), before);
  }
  LayoutDialog dialog({.subject = "测试"}, before, user_);
  for (const int row : {1, 2, 3}) {
    Find<viewkit::FlexGrid>(dialog, "Vs").SetRow(row);
    Find<viewkit::CheckBox>(dialog, "Chk", 3).Click();
  }
  Find<viewkit::CheckBox>(dialog, "Chk", 5).Click();
  Find<viewkit::CommandButton>(dialog, "Cmd", 0).Click();
  EXPECT_EQ(dialog.Result(), LayoutDialog::Outcome::kAccepted);
  Write(before, dialog.Choice());
  EXPECT_EQ(OnDisk(), file + "VsTotalSave=1\n\n[VsIsColMerge_3]\nVsCol0=1\nVsCol1=1\nVsCol3=1\n")
      << "and nothing else is written";
  EXPECT_TRUE(user_.questions.empty());

  for (int col = 0; col < 6; ++col) grid_.SetColWidth(col, 0);
  LayoutDialog hidden({.subject = "测试"}, Read(), user_);
  Find<viewkit::CommandButton>(hidden, "Cmd", 0).Click();
  EXPECT_EQ(hidden.Result(), LayoutDialog::Outcome::kAccepted)
      << "no column was shown before either";
}

TEST_F(LayoutDialogTest, RefusesWhatNoGridCanShow) {
  LayoutDialog dialog({.subject = "测试"}, Read(), user_);
  auto& ok = Find<viewkit::CommandButton>(dialog, "Cmd", 0);
  auto& width = Find<viewkit::TextBox>(dialog, "Txt");
  for (const char* typed : {"", "0", "2001", "-5", "1.5", "宽", "99999999999"}) {
    width.SetText(typed);
    ok.Click();
    EXPECT_EQ(dialog.Result(), LayoutDialog::Outcome::kCancelled) << typed;
  }
  width.SetText(" 80 ");
  for (const int box : {1, 2}) {
    auto& height = Find<viewkit::TextBox>(dialog, "Txt", box);
    height.SetText("501");
    ok.Click();
    EXPECT_EQ(dialog.Result(), LayoutDialog::Outcome::kCancelled);
    height.SetText("");
  }
  for (int row = 1; row <= 3; ++row) Find<viewkit::FlexGrid>(dialog, "Vs").HandleDoubleClick(row);
  auto& list = Find<viewkit::FlexGrid>(dialog, "Vs");
  for (int row = 1; row <= 3; ++row) {
    list.SetRow(row);
    auto& shown = Find<viewkit::CheckBox>(dialog, "Chk", 0);
    if (shown.Value() == viewkit::CheckBox::kChecked) shown.Click();
  }
  ok.Click();
  EXPECT_EQ(dialog.Result(), LayoutDialog::Outcome::kCancelled);
  EXPECT_EQ(user_.questions.size(), 10u);
  Find<viewkit::CheckBox>(dialog, "Chk", 0).Click();
  ok.Click();
  EXPECT_EQ(dialog.Result(), LayoutDialog::Outcome::kAccepted);
}

}  // namespace
}  // namespace desk::views
