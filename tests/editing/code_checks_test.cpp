#include <optional>
#include <string>

#include "editor_test.h"
#include "host/report.h"

namespace tavrix::editing {
namespace {

using host::kCommandError;

class CodeChecksTest : public EditorTest {};
INSTANTIATE_TEST_SUITE_P(Dialects, CodeChecksTest, testing::ValuesIn(test::Engines()), DialectName);

struct RuleCase {
  const char* code;
  std::int32_t record_id;
  int level;  // 0 when refused
  const char* refusal;
};

TEST_P(CodeChecksTest, BmIsTrueNamesTheFirstThingWrong) {
  constexpr std::int32_t kOwn1001 = 1;
  constexpr std::int32_t kOwn100201 = 3;
  const RuleCase cases[] = {
      {"9999", 0, 1, ""},
      {"100203", 0, 2, ""},
      {"5001010102", 0, 4, ""},
      {"10010", 0, 0, "编码长度不对"},
      {"1", 0, 0, "编码长度不对"},
      {"100201010101", 0, 0, "本软件仅支持 4 级编码"},
      {"100301", 0, 0, "找不到它的上级编码"},
      {"10010101", 0, 0, "找不到它的上级编码"},  // 1001 is there, 100101 is not
      {"100101", kOwn1001, 0, "不能将上级编码修改为下级"},
      {"100201", 0, 0, "编码重复"},
      {"100201", kOwn100201, 2, ""},
      {"100201", FmBkmAdd::kNoRecord, 2, ""},
      {"1001", 0, 0, "编码重复!"},
      {"1001", kOwn1001, 1, ""},
      {"1001", FmBkmAdd::kNoRecord, 1, ""},
      {"１００３", 0, 1, ""},  // full-width digits are four characters
  };
  editor_.Open(Edit(1), [&] {
    for (const RuleCase& c : cases) {
      SCOPED_TRACE(c.code);
      editor_.reports.clear();
      const auto level = editor_.dialog->BmIsTrue(c.code, c.record_id);
      EXPECT_EQ(level.value_or(0), c.level);
      EXPECT_EQ(editor_.reports, c.level != 0 ? Reports{} : Reports({{c.refusal, kCommandError}}));
    }
  });
}

TEST(CodeChecks, TheRuleMayBeEmptyOrHoldCharactersThatCountNothing) {
  const std::pair<const char*, const char*> rules[] = {{"", "本软件仅支持 0 级编码"},
                                                       {"4二2", "本软件仅支持 3 级编码"}};
  for (const auto& [rule, refusal] : rules) {
    Editor editor(test::MakeBook(test::FewAccounts(), rule));
    editor.Open(Edit(1), [&] {
      EXPECT_EQ(editor.dialog->BmIsTrue("10010101", 0), std::nullopt);
      EXPECT_EQ(editor.reports, (Reports{{refusal, kCommandError}}));
    });
  }
}

TEST_P(CodeChecksTest, IsCanCodeRuleShowsWhatItDoesAndPutsTheFocus) {
  editor_.Open(Edit(3), [&] {
    editor_.SetCode("");
    EXPECT_TRUE(editor_.dialog->IsCanCodeRule());
    EXPECT_TRUE(editor_.recorder.Statements().empty());
    editor_.dialog->Txt(kNameBox).SetFocus();
    editor_.messages.clear();
    editor_.SetCode(" 100209 ");
    EXPECT_TRUE(editor_.dialog->IsCanCodeRule());
    EXPECT_FALSE(editor_.CodeHasFocus());
    EXPECT_EQ(editor_.messages, (Texts{"正在验证编码规则", ""}));
    EXPECT_EQ(editor_.recorder.Statements(),
              Texts{"Select i_ID,ccode from gl_code where left(ccode,4)='1002'"});
    // A search starts at the current row: each one from the first.
    EXPECT_EQ(editor_.recorder.Count("Recordset.MoveFirst"), 2);
    EXPECT_EQ(editor_.user.deepest_wait, 1);
    editor_.SetCode("10020");
    EXPECT_FALSE(editor_.dialog->IsCanCodeRule());
    EXPECT_TRUE(editor_.CodeHasFocus());
    EXPECT_EQ(editor_.messages.back(), "");
  });
}

TEST_P(CodeChecksTest, IsCanSaveRefusesInItsOrder) {
  editor_.Open(Beside("1001"), [&] {
    EXPECT_FALSE(editor_.dialog->IsCanSave());  // nothing changed: no word
    EXPECT_TRUE(editor_.reports.empty());
    editor_.dialog->Cmd(kSaveButton).SetFocus();
    editor_.SetCode("   ");
    EXPECT_FALSE(editor_.dialog->IsCanSave());
    EXPECT_TRUE(editor_.CodeHasFocus());
    editor_.SetCode("10030");
    EXPECT_FALSE(editor_.dialog->IsCanSave());
    editor_.SetCode("1003");
    editor_.SetName("  ");
    EXPECT_FALSE(editor_.dialog->IsCanSave());
    EXPECT_EQ(editor_.reports, (Reports{{"科目编码为空！", kCommandError},
                                        {"编码长度不对", kCommandError},
                                        {"科目名称为空！", kCommandError}}));
    editor_.SetName("其他货币资金");
    EXPECT_TRUE(editor_.dialog->IsCanSave());
    EXPECT_EQ(editor_.recorder.Statements(),
              Texts{"Select ccode,i_ID from gl_code where ccode='1003'"});
  });
}

TEST_P(CodeChecksTest, AnUneditedOrOnceCheckedCodeIsNotCheckedAgain) {
  editor_.Open(Edit(4), [&] {
    editor_.SetName("建设银行");
    EXPECT_TRUE(editor_.dialog->IsCanSave());
    EXPECT_TRUE(editor_.recorder.Statements().empty());
    editor_.SetCode("100209");
    editor_.SetCode("100202");  // typed back
    EXPECT_TRUE(editor_.dialog->IsCanSave());
    EXPECT_TRUE(editor_.recorder.Statements().empty());
    editor_.SetCode("100209");
    EXPECT_TRUE(editor_.dialog->IsCanSave());
    EXPECT_TRUE(editor_.dialog->IsCanSave());
    EXPECT_EQ(editor_.recorder.Statements().size(), 1U);
  });
}

TEST_P(CodeChecksTest, AnAccountWithSubAccountsKeepsItsCodeAndNothingElse) {
  editor_.Open(Edit(2), [&] {
    editor_.SetCode("1003");
    EXPECT_FALSE(editor_.dialog->FileSave());
    EXPECT_EQ(editor_.reports, (Reports{{"不能修改非明细级编码!", kCommandError}}));
    EXPECT_EQ(editor_.recorder.Statements().back(), "Select bend,ccode from gl_code Where i_ID=2");
    EXPECT_TRUE(editor_.dialog->Close());  // the refusal counts as no change: nothing is asked
  });
  // A flag that is missing is not that of a leaf.
  test::Run(editor_.book, "update gl_code set bend=null where i_id=3");
  editor_.Open(Edit(3), [&] {
    editor_.SetCode("1003");
    EXPECT_FALSE(editor_.dialog->FileSave());
    EXPECT_EQ(editor_.reports.back(), (ReportSeen{"不能修改非明细级编码!", kCommandError}));
  });
  // Whatever the reason, a check that fails counts as no change.
  editor_.Open(Edit(4), [&] {
    editor_.SetCode("1003");
    editor_.recorder.BeforeEach([&](const std::string& sql) {
      if (sql.starts_with("Select bend"))
        editor_.recorder.FailNext("Recordset.EOF", test::Fault::kThrow);
    });
    EXPECT_FALSE(editor_.dialog->FileSave());
    EXPECT_TRUE(editor_.dialog->Close());
  });
  editor_.recorder.BeforeEach({});
  editor_.reports.clear();
  editor_.Open(Edit(2), [&] {
    editor_.SetName("银行");
    EXPECT_TRUE(editor_.dialog->FileSave());
  });
  EXPECT_TRUE(editor_.reports.empty());
  EXPECT_EQ(test::Scalar(editor_.book, "select ccode_name from gl_code where ccode='1002'"),
            "银行");
}

TEST_P(CodeChecksTest, LeavingTheCodeBoxChecksItButNotOnTheWayOut) {
  editor_.Open(Edit(3), [&] {
    editor_.SetCode("10020");
    editor_.dialog->Txt(kNameBox).SetFocus();
    EXPECT_EQ(editor_.reports, (Reports{{"编码长度不对", kCommandError}}));
    EXPECT_TRUE(editor_.CodeHasFocus());
    editor_.dialog->Cmd(kCancelButton).SetFocus();
    EXPECT_FALSE(editor_.CodeHasFocus());
    editor_.dialog->Txt(kCodeBox).SetFocus();
    editor_.user.answers = {viewkit::UserPort::Answer::kNo};
    EXPECT_TRUE(editor_.dialog->Close());
    EXPECT_EQ(editor_.reports.size(), 1U);
  });
}

TEST(CodeChecks, WithoutAnOpenDialogNothingIsAllowed) {
  Editor editor;
  EXPECT_FALSE(editor.dialog->IsCanSave());
  EXPECT_FALSE(editor.dialog->IsCanCodeRule());
  EXPECT_FALSE(editor.dialog->IsCanEdit("1001", 1).allowed);
  EXPECT_EQ(editor.dialog->NextBm("1001", "资产", false), std::nullopt);
  EXPECT_FALSE(editor.dialog->FileSave());
  Reports refusals;
  for (const std::string prefix :
       {"IsCanSave->", "IsCanCodeRule->", "IsCanEdit::", "-->NextBm::", "FileSave->"}) {
    refusals.push_back({prefix + "窗体尚未打开", kCommandError});
  }
  EXPECT_EQ(editor.reports, refusals);
  EXPECT_TRUE(editor.dialog->CloseForm());
}

}  // namespace
}  // namespace tavrix::editing
