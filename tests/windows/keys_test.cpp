// Keys as a keyboard sends them, held ones too, through a container's message loop.

#include <gtest/gtest.h>

#include "maintenance/view_test.h"
#include "picker/picker_support.h"
#include "windows/desktop.h"
#include "windows/shown.h"

namespace tavrix::test {
namespace {

HWND Window(const viewkit::Control& control) {
  return reinterpret_cast<HWND>(control.WindowHandle());
}

class PickerKeys : public testing::Test, protected picker::PickerFixture {
 protected:
  PickerKeys() {
    picker.Refresh();
    Vs().SetRow(RowOf("1001"));
  }
  [[nodiscard]] std::string Current() {
    return Vs().Row() < 1 ? "" : std::string(Vs().TextMatrix(Vs().Row(), 1));
  }
  Shown<picker::selKjkm> shown_{picker};
};

TEST_F(PickerKeys, OneEnterGivesOnePickHoweverLongItIsHeld) {
  shown_.Press(Vs(), VK_RETURN, 6);
  EXPECT_EQ(picks, 1);
  shown_.Press(Search(), VK_RETURN, 6);
  EXPECT_EQ(picks, 2);
  shown_.Press(TV(), VK_RETURN, 6);
  EXPECT_EQ(picks, 3);
  shown_.Press(Box("Check"), VK_RETURN);
  EXPECT_EQ(picks, 4);
  EXPECT_EQ(Box("Check").Value(), viewkit::CheckBox::kUnchecked);
}

TEST_F(PickerKeys, EnterOnAButtonIsItsClickAndNothingMore) {
  shown_.Press(Cmd(1), VK_RETURN, 3);
  EXPECT_EQ(cancels, 1);
  EXPECT_EQ(picks, 0);
  shown_.Press(Cmd(0), VK_RETURN, 3);
  EXPECT_EQ(picks, 1);
  const auto reload = StatementsOf([this] { shown_.Press(Cmd(2), VK_RETURN); });
  EXPECT_FALSE(reload.empty());
  EXPECT_EQ(picks, 1);
}

TEST_F(PickerKeys, AKeyThatWasDownBeforeThePickerCameIsNotThePickers) {
  for (viewkit::Control* control :
       {static_cast<viewkit::Control*>(&Vs()), static_cast<viewkit::Control*>(&Search()),
        static_cast<viewkit::Control*>(&Cmd(0))}) {
    ASSERT_TRUE(control->SetFocus());
    for (int repeats = 0; repeats < 3; ++repeats) shown_.Down(VK_RETURN, true);
    shown_.Up(VK_RETURN);
    EXPECT_EQ(picks, 0) << control->Name();
  }
}

TEST_F(PickerKeys, OneArrowIsOneStepWhereverTheFocusIs) {
  for (viewkit::Control* control :
       {static_cast<viewkit::Control*>(&Vs()), static_cast<viewkit::Control*>(&Search()),
        static_cast<viewkit::Control*>(&Box("Chk")), static_cast<viewkit::Control*>(&Cmd(1))}) {
    shown_.Press(*control, VK_DOWN);
    EXPECT_EQ(Current(), "1002") << control->Name();
    shown_.Press(*control, VK_UP);
    EXPECT_EQ(Current(), "1001") << control->Name();
  }
}

TEST_F(PickerKeys, TypingOnTheListSeeksTheCode) {
  ASSERT_TRUE(Vs().SetFocus());
  Type(Window(Vs()), L"5001");
  EXPECT_EQ(Current(), "5001");
}

TEST(MaintenanceKeys, AHeldEnterOpensTheDialogOnce) {
  ViewTest test;
  test.Start();
  test.user.in_dialog = [](viewkit::DialogModel& dialog) { dialog.Unload(); };
  Shown<maintenance::Kjkm> shown(test.view);
  test.Select("1001");
  shown.Press(test.Grid(), VK_RETURN, 6);
  EXPECT_EQ(test.user.dialogs, 1);
  // It has saved and closed the dialog, and is still down.
  shown.Down(VK_RETURN, true);
  shown.Up(VK_RETURN);
  EXPECT_EQ(test.user.dialogs, 1);
  shown.Press(test.Grid(), VK_RETURN);
  EXPECT_EQ(test.user.dialogs, 2);
}

}  // namespace
}  // namespace tavrix::test
