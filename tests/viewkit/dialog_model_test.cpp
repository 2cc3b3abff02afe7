#include "viewkit/controls/dialog_model.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "viewkit/controls/check_box.h"
#include "viewkit/controls/combo_box.h"
#include "viewkit/controls/label.h"
#include "viewkit/controls/option_button.h"
#include "viewkit/controls/tab_strip.h"
#include "viewkit/controls/text_box.h"
#include "viewkit/ports.h"

namespace tavrix::viewkit {
namespace {

TEST(CheckBox, ItsValueIsTheProgramsToSetAndItsClickTheUsers) {
  CheckBox box("Chk");
  int clicks = 0;
  box.Clicked.Add([&] { ++clicks; });
  for (const int value : {1, 1, 7, -1}) box.SetValue(value);
  EXPECT_EQ(clicks, 1);
  box.Click();
  EXPECT_EQ(box.Value(), CheckBox::kUnchecked);
  box.SetEnabled(false);
  box.Click();
  EXPECT_EQ(box.Value(), CheckBox::kUnchecked);
  box.SetValue(CheckBox::kGrayed);
  EXPECT_EQ(clicks, 3);
}

TEST(OptionButton, OneOfAGroupIsChosen) {
  OptionGroup group;
  OptionButton first(group, "opt", 0);
  OptionButton second(group, "opt", 1);
  int clicks = 0;
  second.Clicked.Add([&] {
    EXPECT_FALSE(first.Value());  // nobody sees two of them chosen
    ++clicks;
  });
  first.Click();
  second.Click();
  second.Click();
  EXPECT_TRUE(second.Value());
  EXPECT_EQ(clicks, 1);
  EXPECT_TRUE(second.StopsTab() && !first.StopsTab());
  second.SetValue(false);
  EXPECT_TRUE(first.StopsTab() && !second.StopsTab()) << "where none is chosen";
  first.SetEnabled(false);
  first.Click();
  EXPECT_FALSE(first.Value());
}

TEST(TabStrip, KeysGoFromTabToTab) {
  TabStrip tabs("Tabs");
  for (const char* key : {"a", "b", "c"}) tabs.AddTab(key, key);
  std::string seen;
  tabs.TabActivated.Add([&](const std::string& key) { seen += key; });
  for (const Key key : {Key::kLeft, Key::kRight, Key::kEnd, Key::kRight}) {
    EXPECT_TRUE(tabs.HandleKey(key));
  }
  EXPECT_TRUE(tabs.HandleKey(Key::kTab, {.control = true}));
  EXPECT_TRUE(tabs.HandleKey(Key::kTab, {.shift = true, .control = true}));
  EXPECT_TRUE(tabs.HandleKey(Key::kHome));
  EXPECT_TRUE(tabs.Activate("b"));
  EXPECT_EQ(seen, "bcacab") << "it ends at the last by arrows, and goes round by Control and Tab";
  EXPECT_FALSE(tabs.Activate("x") || tabs.HandleKey(Key::kDown));
  EXPECT_FALSE(tabs.HandleKey(Key::kLeft, {.control = true}) ||
               tabs.HandleKey(Key::kLeft, {.alt = true}));
  tabs.SetEnabled(false);
  EXPECT_FALSE(tabs.HandleKey(Key::kLeft));
  EXPECT_EQ(seen, "bcacab");
}

TEST(PlainTextMeasure, WideLettersTakeTwoPlaces) {
  const auto width = [](std::string_view text) { return PlainTextMeasure().Width(text, false); };
  for (const char* narrow : {"a", "é", "\u10FF", "\u1180", "\u2E7F", "\uFF61", "\uFFBF"}) {
    EXPECT_EQ(width(narrow), 90) << narrow;
  }
  for (const char* wide : {"\u1100", "\u115F", "\u2E80", "\u3000", "科", "\uFF60", "Ａ", "😀"}) {
    EXPECT_EQ(width(wide), 180) << wide;
  }
  EXPECT_EQ(PlainTextMeasure().Width("a科", true), 270 + 15);
}

TEST(ComboBox, AListShowsItsItemsOnlyWhileAnEditableBoxTakesAnyText) {
  using enum ComboBox::Style;
  for (const auto style : {kList, kEditable}) {
    ComboBox box(style, "Combo", 0);
    box.AddItem("人民币", 1);
    box.AddItem("美元", 7);
    box.AddItem("美元", 8);
    int changes = 0;
    box.Changed.Add([&] { ++changes; });
    box.SetText("美元");
    EXPECT_EQ(box.ItemData(box.ListIndex()), 7);  // the first of two
    box.SetListIndex(3);
    EXPECT_EQ(changes, 1);
    box.SetText("欧元");
    EXPECT_EQ(box.Text(), style == kList ? "美元" : "欧元");
    box.SetListIndex(-1);
    EXPECT_EQ(box.Text(), "");
    box.SetListIndex(2);
    box.Clear();
    EXPECT_EQ(box.Text(), style == kList ? "" : "美元");
    EXPECT_EQ(box.ListIndex(), -1);
    EXPECT_EQ(changes, style == kList ? 4 : 5);
  }
}

class Dialog : public DialogModel {
 public:
  Dialog() : DialogModel("Dialog") {
    Add(label);
    Add(first, 100);
    Add(second, 101);
    Add(ok, 500);
    Add(cancel, 501);
    SetButtons(ok, cancel);
    ok.Clicked.Add([this] { log.push_back("ok"); });
    cancel.Clicked.Add([this] { Close(); });
  }

  Label label{"Label"};
  TextBox first{"Txt", 0};
  TextBox second{"Txt", 1};
  CommandButton ok{"Cmd", 0};
  CommandButton cancel{"Cmd", 1};
  bool willing = true;
  std::vector<std::string> log;

 protected:
  bool QueryUnload() override {
    log.push_back("asked");
    EXPECT_FALSE(Close());  // a second request while the first is being answered
    return willing;
  }
  void OnUnload() override { log.push_back("unloaded"); }
  void OnFocusMoved(Control& from, Control& to) override {
    log.push_back(std::to_string(Identifier(from)) + ">" + std::to_string(Identifier(to)));
  }
};

using Log = std::vector<std::string>;

TEST(DialogModel, ClosesOnlyWhenItAgreesAndOnlyOnce) {
  Dialog dialog;
  dialog.Closed.Add([&] {
    EXPECT_FALSE(dialog.IsOpen());
    dialog.log.push_back("closed");
  });
  EXPECT_FALSE(dialog.Close());  // not open
  dialog.Opened();
  dialog.willing = false;
  EXPECT_FALSE(dialog.Close());
  EXPECT_TRUE(dialog.IsOpen());
  dialog.willing = true;
  EXPECT_TRUE(dialog.Close());
  dialog.Unload();
  EXPECT_EQ(dialog.log, (Log{"asked", "asked", "unloaded", "closed"}));

  dialog.log.clear();
  dialog.Opened();
  dialog.Unload();  // without asking
  EXPECT_EQ(dialog.log, (Log{"unloaded", "closed"}));
}

TEST(DialogModel, FollowsTheFocusAmongItsControls) {
  Dialog dialog;
  dialog.first.SetEnabled(false);
  dialog.Opened();
  EXPECT_EQ(dialog.FocusControl(), &dialog.second);  // the first that can take it; no label
  dialog.first.SetEnabled(true);
  dialog.first.SetFocus();
  EXPECT_FALSE(dialog.second.Focused());
  dialog.first.NotifyFocus(false);  // another window is active for a while
  dialog.first.NotifyFocus(true);
  dialog.second.SetFocus();
  EXPECT_EQ(dialog.log, (Log{"101>100", "100>101"}));
  dialog.Unload();
  EXPECT_FALSE(dialog.second.Focused());
}

TEST(DialogModel, EnterAndEscapeClickTheirButtons) {
  Dialog dialog;
  dialog.Opened();
  EXPECT_TRUE(dialog.KeyDown(Key::kEnter));
  EXPECT_EQ(dialog.log, Log{"ok"});
  EXPECT_FALSE(dialog.KeyDown(Key::kDown));
  dialog.cancel.SetFocus();
  EXPECT_TRUE(dialog.KeyDown(Key::kEnter));  // the button with the focus goes before the default
  EXPECT_FALSE(dialog.IsOpen());

  dialog.Opened();
  EXPECT_TRUE(dialog.KeyDown(Key::kEscape));
  EXPECT_FALSE(dialog.IsOpen());
}

}  // namespace
}  // namespace tavrix::viewkit
