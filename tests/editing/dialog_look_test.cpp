#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "editor_test.h"
#include "host/report.h"

namespace tavrix::editing {
namespace {

std::string Above(Editor& editor) {
  return test::LabelBehind(*editor.dialog, "上级科目");
}

TEST(DialogLook, TellsTheAccountAboveAsFarAsItIsKnown) {
  Editor editor;
  editor.Open(Below("1002"), [&] { EXPECT_EQ(Above(editor), "1002"); });
  editor.dialog->SetAbove({"1002", "银行存款"});
  editor.Open(Below("1002"), [&] {
    EXPECT_EQ(Above(editor), "1002 银行存款");
    editor.SetCode("100101");
    EXPECT_EQ(Above(editor), "") << "of another account nobody knows the name";
    editor.SetCode("100299");
    EXPECT_EQ(Above(editor), "1002 银行存款");
    editor.dialog->SetAbove({"5001", "生产成本"});  // for an opening that is refused
    editor.SetCode("100298");
    EXPECT_EQ(Above(editor), "1002 银行存款");
    EXPECT_TRUE(editor.recorder.Statements().empty()) << "it is told, not read";
  });
  editor.Open(Beside("100201"), [&] { EXPECT_EQ(Above(editor), "") << "what was told is over"; });
  editor.dialog->SetAbove({});
  editor.Open(Beside("1002"), [&] { EXPECT_EQ(Above(editor), "无（一级科目）"); });
}

TEST(DialogLook, BeginsWhereTheUserTypesNext) {
  Editor editor;
  const auto focus = [&] { return editor.dialog->FocusControl(); };
  editor.Open(Below("1002"), [&] { EXPECT_EQ(focus(), &editor.dialog->Txt(kNameBox)); });
  editor.Open(Edit(1), [&] { EXPECT_EQ(focus(), &editor.dialog->Txt(kCodeBox)); });
  editor.Open(Below("1002010101"), [&] {
    EXPECT_EQ(focus(), &editor.dialog->Txt(kCodeBox)) << "no code could be proposed";
  });
}

// The code that is proposed behind the last of its siblings begins with another parent's.
TEST(DialogLook, AProposedCodeIsCheckedAllTheSame) {
  Editor editor;
  test::Run(editor.book, "update gl_code set ccode='100299' where ccode='100202'");
  const std::string check = "Select i_ID,ccode from gl_code where left(ccode,4)='1003'";
  const auto opened = [&](const std::function<void()>& act) {
    editor.reports.clear();
    editor.Open(Below("1002"), [&] {
      ASSERT_EQ(editor.Code(), "100300");
      editor.SetName("x");
      act();
      EXPECT_EQ(editor.reports, (Reports{{"找不到它的上级编码", host::kCommandError}}));
      EXPECT_TRUE(editor.CodeHasFocus());
      EXPECT_EQ(editor.recorder.Statements(), Texts{check});
    });
    EXPECT_TRUE(editor.saved.empty());
  };
  opened([&] { editor.dialog->KeyDown(viewkit::Key::kEnter); });
  opened([&] { editor.dialog->Txt(kMnemonicBox).SetFocus(); });
  editor.reports.clear();
  editor.Open(Below("1002"), [&] { editor.dialog->Cmd(kCancelButton).SetFocus(); });
  EXPECT_TRUE(editor.reports.empty()) << "nor is a user held back who is giving up";
}

}  // namespace
}  // namespace tavrix::editing
