#include "views/import_dialog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

#include "book/exchange/import_chart.h"
#include "support/controls.h"
#include "support/matchers.h"
#include "support/scripted_user.h"
#include "support/test_book.h"
#include "views/mnemonic_dialog.h"

namespace desk::views {
namespace {

using viewkit::Key;

std::vector<std::string> TextsOf(const viewkit::FlexGrid& grid) {
  std::vector<std::string> rows;
  for (int row = grid.FixedRows(); row < grid.Rows(); ++row) {
    std::string text;
    for (int col = 0; col < grid.Cols(); ++col) {
      text += (col == 0 ? "" : "|") + std::string(grid.TextMatrix(row, col));
    }
    rows.push_back(std::move(text));
  }
  return rows;
}

class ImportDialogTest : public testing::Test {
 protected:
  ImportDialogTest() {
    user_.in_dialog = [this](viewkit::DialogModel& dialog) {
      dialog.Opened();
      steps_(dialog);
    };
  }
  /// Shows the dialog for a file, and does these steps in it.
  bool Show(const std::string& bytes, std::function<void(viewkit::DialogModel&)> steps) {
    steps_ = std::move(steps);
    ImportDialog dialog(
        {.file = "a.csv",
         .session = book_.GetSession(),
         .run =
             [this](const book::SourceTable& table, const book::ImportOptions& options,
                    const book::ImportPlan& plan) {
               if (before_run_) before_run_();
               book::ImportChart(book_.GetSession(), table, options, plan);
             }},
        book::ImportSource(bytes), user_);
    user_.ShowModal(dialog);
    return dialog.Done();
  }
  static std::string Summary(const viewkit::DialogModel& dialog) {
    return Find<viewkit::Label>(dialog, "Lbl", 4).Caption();
  }

  book::Book book_ = tavrix::test::MakeBook();
  tavrix::test::ScriptedUser user_;
  std::function<void(viewkit::DialogModel&)> steps_;
  std::function<void()> before_run_;
};

TEST_F(ImportDialogTest, ShowsWhatWouldBeAndImportsTheRestOnlyWhenTold) {
  EXPECT_TRUE(Show("编码,名称\n1001,现金\n1002,银行存款\n1003,'存放'\n9,短\n",
                   [&](viewkit::DialogModel& dialog) {
                     auto& lines = Find<viewkit::FlexGrid>(dialog, "Lines");
                     EXPECT_TRUE(lines.Focused());
                     EXPECT_EQ(Summary(dialog), "新增 1，修改 1，不变 1，拒绝 1");
                     EXPECT_THAT(TextsOf(lines)[0], "2|修改|1001|现金|科目名称：库存现金 → 现金");
                     auto& ok = Find<viewkit::CommandButton>(dialog, "Cmd", 0);
                     EXPECT_FALSE(ok.Enabled());
                     EXPECT_EQ(lines.Row(), lines.FixedRows() + 3);  // the one that is refused
                     Find<viewkit::CheckBox>(dialog, "Chk", 2).Click();
                     EXPECT_EQ(lines.Rows() - lines.FixedRows(), 1);  // those that are refused
                     Find<viewkit::CheckBox>(dialog, "Chk", 3).Click();
                     ok.Click();
                     EXPECT_FALSE(dialog.IsOpen());
                   }));
  EXPECT_EQ(Scalar(book_, "select ccode_name from gl_code where ccode='1001'"), "现金");
}

TEST_F(ImportDialogTest, ColumnsAreMatchedByHandAndTheFileIsReadOtherwise) {
  EXPECT_TRUE(Show("1003;Außen;x\n1004;Innen;y\n", [&](viewkit::DialogModel& dialog) {
    auto& columns = Find<viewkit::FlexGrid>(dialog, "Columns");
    auto& meaning = Find<viewkit::ComboBox>(dialog, "Combo", 2);
    auto& ok = Find<viewkit::CommandButton>(dialog, "Cmd", 0);
    EXPECT_THAT(TextsOf(columns),
                ElementsAre("A|1003|科目编码", "B|Außen|科目名称", "C|x|（不导入）"));
    columns.SetRow(3);
    columns.KeyDown.Raise(static_cast<Key>(0x71), viewkit::Modifiers{});
    EXPECT_TRUE(meaning.Focused());
    meaning.SetText("助记码");
    EXPECT_EQ(TextsOf(columns)[2], "C|x|助记码");
    EXPECT_EQ(columns.Row(), 3);
    EXPECT_EQ(Summary(dialog), "新增 2，修改 0，不变 0，拒绝 0");
    // One meaning stands in one column.
    columns.SetRow(2);
    meaning.SetText("助记码");
    EXPECT_EQ(TextsOf(columns)[2], "C|x|（不导入）");
    EXPECT_FALSE(ok.Enabled()) << "no names any more";
    // Another separator makes one column; back again all is proposed anew.
    auto& separator = Find<viewkit::ComboBox>(dialog, "Combo", 1);
    separator.SetListIndex(0);
    EXPECT_EQ(columns.Rows(), 2);
    separator.SetListIndex(1);
    EXPECT_EQ(TextsOf(columns)[1], "B|Außen|科目名称");
    Find<viewkit::CheckBox>(dialog, "Chk", 1).Click();  // with mnemonics
    ok.Click();
  }));
  EXPECT_EQ(Scalar(book_, "select chelp from gl_code where ccode='1003'"), "a");
  EXPECT_TRUE(user_.questions.empty());
}

TEST_F(ImportDialogTest, WhatFailsIsToldAndTheDialogShowsHowThingsStand) {
  before_run_ = [&] {
    tavrix::test::Run(book_, "update gl_code set ccode_name='他人' where ccode='1001'");
  };
  EXPECT_FALSE(Show("编码,名称\n1001,现金\n", [&](viewkit::DialogModel& dialog) {
    Find<viewkit::CommandButton>(dialog, "Cmd", 0).Click();
    EXPECT_THAT(user_.questions.back().text, HasSubstr("其他用户"));
    EXPECT_TRUE(dialog.IsOpen());
    EXPECT_THAT(TextsOf(Find<viewkit::FlexGrid>(dialog, "Lines"))[0], HasSubstr("他人 → 现金"));
    dialog.KeyDown(Key::kEscape);
  }));
  EXPECT_THROW(book::ImportSource("\xD0\xCF\x11\xE0 old"), book::SourceError);
}

TEST_F(ImportDialogTest, MnemonicsAreProposedOverwrittenAndWrittenAtOnce) {
  tavrix::test::Run(book_, "update gl_code set chelp='' where ccode in('1001','1002','100201')");
  tavrix::test::Run(book_, "update gl_code set ccode_name='😀' where ccode='100201'");
  MnemonicDialog dialog(book::ReadMnemonics(book_.GetSession()), user_,
                        [&](const std::vector<book::NewMnemonic>& wanted) {
                          EXPECT_EQ(book::WriteMnemonics(book_.GetSession(), wanted), 2U);
                        });
  auto& list = Find<viewkit::FlexGrid>(dialog, "List");
  steps_ = [&](viewkit::DialogModel&) {
    EXPECT_THAT(TextsOf(list),
                ElementsAre("√|1001|库存现金||kcxj", "√|1002|银行存款||yhck", "|100201|😀||"));
    auto& box = Find<viewkit::TextBox>(dialog, "Txt");
    box.SetFocus();
    box.SetText("xj");
    dialog.KeyDown(Key::kEnter);
    EXPECT_EQ(box.Text(), "yhck") << "Enter goes on";
    list.KeyDown.Raise(Key::kSpace, viewkit::Modifiers{});
    EXPECT_EQ(TextsOf(list)[1], "|1002|银行存款||yhck");
    Find<viewkit::CheckBox>(dialog, "Chk", 0).Click();
    EXPECT_EQ(list.Rows() - list.FixedRows(), 8);
    list.SetRow(4);  // 100202, which has one
    box.SetText("jhzh");
    box.SetText("jh'");
    auto& ok = Find<viewkit::CommandButton>(dialog, "Cmd", 0);
    ok.Click();
    EXPECT_THAT(user_.questions.back().text, HasSubstr("单引号"));
    box.SetText("jhzh");
    ok.Click();
  };
  user_.ShowModal(dialog);
  EXPECT_EQ(dialog.Written(), 2U);
  EXPECT_THAT(
      tavrix::test::AllRows(book_, "select chelp from gl_code where ccode<'1003' order by ccode"),
      ElementsAre("xj", "", "", "jhzh"));
}

}  // namespace
}  // namespace desk::views
