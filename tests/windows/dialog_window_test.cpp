#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/utf.h"
#include "support/matchers.h"
#include "viewkit/controls/check_box.h"
#include "viewkit/controls/combo_box.h"
#include "viewkit/controls/dialog_model.h"
#include "viewkit/controls/label.h"
#include "viewkit/controls/option_button.h"
#include "viewkit/controls/text_box.h"
#include "viewkit/win32/windows_user.h"
#include "windows/desktop.h"

namespace tavrix::viewkit::win32 {
namespace {

using test::Frame;
using test::Steps;

/// A dialog with one control of each kind.
class Form : public DialogModel {
 public:
  Form() : DialogModel("TavrixTestForm") {
    SetCaption("新增下级");
    SetSize(4500, 3000);
    name_label.SetCaption("名称(&N)");
    category.AddItem("资产");
    category.AddItem("负债");
    Place(name_label, 0);
    Place(name, 100);
    Place(category, 400);
    Place(debit, 300);
    Place(credit, 301);
    Place(foreign, 200);
    Place(save, 500);
    Place(cancel, 501);
    SetButtons(save, cancel);
    save.Clicked.Add([this] { Log("save"); });
    save.Clicked.Add([this] { Close(); });
    cancel.Clicked.Add([this] { Close(); });
    credit.Clicked.Add([this] { Log("credit"); });
  }
  void Log(std::string entry) { log.push_back(std::move(entry)); }
  void OnFocusMoved(Control&, Control& to) override { Log(to.Name()); }
  bool QueryUnload() override { return refusals-- <= 0; }

  Label name_label{"name_label"};
  TextBox name{"name"};
  ComboBox category{ComboBox::Style::kList, "category"};
  OptionGroup sides;
  OptionButton debit{sides, "debit"};
  OptionButton credit{sides, "credit"};
  CheckBox foreign{"foreign"};
  CommandButton save{"save"};
  CommandButton cancel{"cancel"};
  std::vector<std::string> log;
  int refusals = 0;

 private:
  void Place(Control& control, int identifier) {
    control.SetBounds({150, top_, 2000, 300});
    top_ += 330;
    Add(control, identifier);
  }
  int top_ = 60;
};

TEST(Question, EnterGivesTheAnswerThatLosesNothing) {
  WindowsUser user;
  using Buttons = UserPort::Buttons;
  using Answer = UserPort::Answer;
  const std::pair<Buttons, Answer> cases[] = {{Buttons::kYesNo, Answer::kYes},
                                              {Buttons::kYesNoDefaultNo, Answer::kNo},
                                              {Buttons::kOk, Answer::kOk}};
  for (const auto& [buttons, answer] : cases) {
    const Steps steps({[] { test::PostKey(GetFocus(), VK_RETURN); }});
    EXPECT_EQ(
        user.Ask("是否删除当前科目：1001 现金", "提示：", UserPort::Icon::kInformation, buttons),
        answer);
  }
}

class DialogWindowTest : public testing::Test {
 protected:
  void Show(std::vector<std::function<void()>> script) {
    const Steps steps(std::move(script));
    user.ShowModal(form);
    EXPECT_FALSE(form.IsOpen());
  }
  [[nodiscard]] static HWND Window(const Control& control) {
    return reinterpret_cast<HWND>(control.WindowHandle());
  }
  [[nodiscard]] static std::function<void()> Key(WORD key) {
    return [key] { test::PostKey(GetFocus(), key); };
  }

  Frame frame;
  WindowsUser user{{.owner = [this] { return frame.Get(); }}};
  Form form;
};

TEST_F(DialogWindowTest, CarriesItsNameTheCaptionAndTheIdentifiers) {
  Show({[&] {
          const HWND dialog = FindWindowW(L"TavrixTestForm", L"新增下级");
          ASSERT_NE(dialog, nullptr);
          EXPECT_EQ(GetDlgItem(dialog, 100), Window(form.name));
          EXPECT_EQ(GetDlgItem(dialog, 501), Window(form.cancel));
          form.SetCaption("修改");
          EXPECT_EQ(FindWindowW(L"TavrixTestForm", L"修改"), dialog);
        },
        Key(VK_ESCAPE)});
  EXPECT_EQ(FindWindowW(L"TavrixTestForm", nullptr), nullptr);
  EXPECT_EQ(form.name.WindowHandle(), 0);
}

TEST_F(DialogWindowTest, TypedTextReachesTheModelAndEnterClicksTheDefaultButton) {
  Show({[&] { test::Type(GetFocus(), L"库存𠀀"); }, Key(VK_RETURN)});
  EXPECT_EQ(form.name.Text(), "库存𠀀");
  EXPECT_THAT(form.log, ElementsAre("save"));
}

TEST_F(DialogWindowTest, AKeyThatIsHeldSinceItOpenedTheDialogDoesNotEndIt) {
  const auto held = [](WORD key) {
    return [key] { PostMessageW(GetFocus(), WM_KEYDOWN, key, 0x40000001); };
  };
  Show({held(VK_RETURN), held(VK_ESCAPE), [&] { EXPECT_TRUE(form.IsOpen()); }, Key(VK_RETURN)});
  EXPECT_THAT(form.log, ElementsAre("save"));
}

TEST_F(DialogWindowTest, TextOfTheModelIsShownAndAnEditOfItIsTakenOver) {
  form.name.SetText("旧");
  Show({[&] { form.name.SetText("现金"); }, Key(VK_END), [&] { test::Type(GetFocus(), L"1"); },
        Key(VK_ESCAPE)});
  EXPECT_EQ(form.name.Text(), "现金1");
}

TEST_F(DialogWindowTest, TabGoesRoundAndPassesByWhatIsDisabled) {
  form.debit.SetEnabled(false);
  form.credit.SetEnabled(false);
  Show({Key(VK_TAB), Key(VK_TAB), Key(VK_TAB), Key(VK_TAB), Key(VK_TAB), Key(VK_ESCAPE)});
  EXPECT_THAT(form.log, ElementsAre("category", "foreign", "save", "cancel", "name"));
}

TEST_F(DialogWindowTest, TabStopsOnceAtOptionsThatBelongTogether) {
  form.credit.SetValue(true);
  form.log.clear();
  Show({Key(VK_TAB), Key(VK_TAB), Key(VK_TAB), Key(VK_ESCAPE)});
  EXPECT_THAT(form.log, ElementsAre("category", "credit", "foreign"));
}

TEST_F(DialogWindowTest, TheMnemonicOfALabelLeadsToTheBoxBehindIt) {
  Show({[&] { form.save.SetFocus(); },
        [&] { PostMessageW(Window(form.save), WM_SYSCHAR, L'n', 1 << 29); },
        [&] { EXPECT_EQ(GetFocus(), Window(form.name)); }, Key(VK_ESCAPE)});
}

TEST_F(DialogWindowTest, AnOptionIsChosenByArrowsButNotByPassingIt) {
  form.debit.SetValue(true);
  Show({[&] { form.credit.SetFocus(); }, [&] { EXPECT_TRUE(form.debit.Value()); }, Key(VK_LEFT),
        Key(VK_RIGHT), [&] { EXPECT_EQ(SendMessageW(Window(form.credit), BM_GETCHECK, 0, 0), 1); },
        Key(VK_ESCAPE)});
  EXPECT_TRUE(form.credit.Value());
  EXPECT_THAT(form.log, ElementsAre("credit", "debit", "credit", "credit"));
}

TEST_F(DialogWindowTest, BoxesFollowTheUserAndTheModel) {
  Show({[&] { test::Click(Window(form.foreign), 8, 8); },
        [&] { EXPECT_EQ(form.foreign.Value(), CheckBox::kChecked); },
        [&] { form.foreign.SetValue(CheckBox::kUnchecked); },
        [&] { EXPECT_EQ(SendMessageW(Window(form.foreign), BM_GETCHECK, 0, 0), BST_UNCHECKED); },
        [&] { form.category.SetFocus(); }, Key(VK_DOWN), Key(VK_DOWN),
        [&] { EXPECT_EQ(form.category.Text(), "负债"); }, [&] { form.category.SetText("资产"); },
        [&] { EXPECT_EQ(SendMessageW(Window(form.category), CB_GETCURSEL, 0, 0), 0); },
        Key(VK_ESCAPE)});
}

TEST_F(DialogWindowTest, AnOpenListTakesEscapeForItself) {
  Show({[&] { form.category.SetFocus(); },
        [&] { SendMessageW(Window(form.category), CB_SHOWDROPDOWN, TRUE, 0); }, Key(VK_ESCAPE),
        [&] { EXPECT_TRUE(form.IsOpen()); }, Key(VK_ESCAPE)});
}

TEST_F(DialogWindowTest, ARefusedCloseLeavesItOpen) {
  form.refusals = 1;
  const auto close = [] { SendMessageW(GetActiveWindow(), WM_CLOSE, 0, 0); };
  Show({close, [&] { EXPECT_TRUE(form.IsOpen()); }, close});
}

TEST_F(DialogWindowTest, TheOwnerIsDisabledMeanwhileAndGetsTheFocusBack) {
  const HWND button = CreateWindowW(L"BUTTON", L"", WS_CHILD | WS_VISIBLE, 0, 0, 50, 20,
                                    frame.Get(), nullptr, nullptr, nullptr);
  SetFocus(button);
  Show({[&] { EXPECT_FALSE(IsWindowEnabled(frame.Get())); }, Key(VK_ESCAPE)});
  EXPECT_TRUE(IsWindowEnabled(frame.Get()));
  EXPECT_EQ(GetFocus(), button);
}

TEST_F(DialogWindowTest, AQuitMessageEndsItAndStaysForTheOuterLoop) {
  Show({[] { PostQuitMessage(7); }});
  MSG message{};
  ASSERT_EQ(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE), TRUE);
  EXPECT_EQ(message.wParam, 7U);
}

TEST_F(DialogWindowTest, EndsWithAWindowThatIsDestroyedFromOutside) {
  Show({[&] { DestroyWindow(GetActiveWindow()); }});
  EXPECT_EQ(form.name.GetPeer(), nullptr);
}

TEST_F(DialogWindowTest, ADialogOfTheSameKindOpensAboveAnother) {
  Form inner;
  Show({[&] {
          const Steps steps({Key(VK_ESCAPE)});
          user.ShowModal(inner);
        },
        [&] { EXPECT_TRUE(form.IsOpen()); }, Key(VK_ESCAPE)});
}

TEST_F(DialogWindowTest, ThePromptGivesTheTypedLineOrNothing) {
  const Steps typing({[] { test::Type(GetFocus(), L"1002"); }, Key(VK_RETURN)});
  EXPECT_EQ(user.Input("新的科目编码：", "复制"), "1002");
  const Steps giving_up({[] { test::Type(GetFocus(), L"1002"); }, Key(VK_ESCAPE)});
  EXPECT_EQ(user.Input("新的科目编码：", "复制"), "");
}

TEST(WindowsUserTest, NamesTheProgramByItsDescriptionElseByItsFile) {
  EXPECT_EQ(WindowsUser().ApplicationTitle(), "总账");
  EXPECT_EQ(ProgramTitle(L"C:\\无\\此程序.exe"), "此程序");
}

}  // namespace
}  // namespace tavrix::viewkit::win32
