#include "viewkit/win32/view_window.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "support/matchers.h"
#include "viewkit/controls/check_box.h"
#include "viewkit/controls/combo_box.h"
#include "viewkit/controls/command_button.h"
#include "viewkit/controls/label.h"
#include "viewkit/controls/tab_strip.h"
#include "viewkit/controls/text_box.h"
#include "viewkit/grid/flex_grid.h"
#include "viewkit/tree/tree_view.h"
#include "windows/desktop.h"

namespace tavrix::viewkit::win32 {
namespace {

using test::Frame;
using test::Picture;

/// A view with a row of tabs above two pages.
class ViewWindowTest : public testing::Test {
 protected:
  ViewWindowTest() {
    for (const char* key : {"key1", "key2", "key3"}) tabs.AddTab(key, "资产");
    second.SetVisible(false);
    for (Control* control : {static_cast<Control*>(&tabs), static_cast<Control*>(&first),
                             static_cast<Control*>(&second), static_cast<Control*>(&name)}) {
      controls.Add(*control);
    }
  }
  void Open() {
    view.emplace(controls, ViewWindowOptions{
                               .parent = frame->Get(),
                               .place = {0, 0, 400, 300},
                               .back_color = 0x00C0FF,
                               .resized = [this](int width, int height) { LayOut(width, height); },
                               .focus_changed = [this](bool inside) { focus.push_back(inside); },
                               .destroyed = [this] { ++destroyed; }});
    test::Pump();
  }
  void LayOut(int width, int height) {
    sizes.emplace_back(width, height);
    tabs.SetBounds({0, 0, width, 400});
    first.SetBounds({0, 400, width, height - 1000});
    second.SetBounds(first.GetBounds());
    name.SetBounds({0, height - 500, 1500, 300});
  }
  /// A key as a container's message loop hands it in; true when the view used it.
  bool Key(WORD key) {
    MSG message{};
    message.hwnd = GetFocus();
    message.message = WM_KEYDOWN;
    message.wParam = key;
    return view->TranslateAccelerator(message);
  }
  static HWND Window(const Control& control) {
    return reinterpret_cast<HWND>(control.WindowHandle());
  }

  std::optional<Frame> frame{std::in_place};
  TabStrip tabs{"vxVSTab"};
  FlexGrid first{"Vs", 0};
  FlexGrid second{"Vs", 1};
  TextBox name{"name"};
  ControlList controls;
  std::vector<std::pair<int, int>> sizes;
  std::vector<bool> focus;
  int destroyed = 0;
  std::optional<ViewWindow> view;
};

TEST_F(ViewWindowTest, TellsItsSizeInTwipsBeforeAndAfterItIsSized) {
  Open();
  view->SetPlace({10, 20, 310, 220});
  EXPECT_THAT(sizes, ElementsAre(std::pair(6000, 4500), std::pair(4500, 3000)));
  RECT place{};
  GetWindowRect(Window(tabs), &place);
  MapWindowPoints(nullptr, view->Handle(), reinterpret_cast<POINT*>(&place), 2);
  EXPECT_EQ(place.right, 300);
  EXPECT_EQ(place.bottom, view->ToPixels(400));
}

TEST_F(ViewWindowTest, FollowsWhatTheModelsShowAndEnable) {
  Open();
  EXPECT_FALSE(IsWindowVisible(Window(second)));
  first.SetVisible(false);
  second.SetVisible(true);
  EXPECT_TRUE(IsWindowVisible(Window(second)));
  EXPECT_FALSE(IsWindowVisible(Window(first)));
  second.SetEnabled(false);
  EXPECT_FALSE(IsWindowEnabled(Window(second)));
  EXPECT_FALSE(second.SetFocus());
  EXPECT_FALSE(first.SetFocus());
}

TEST_F(ViewWindowTest, TabGoesThroughTheControlsAndLeavesAtTheEnds) {
  Open();
  EXPECT_TRUE(view->FocusFirst());
  EXPECT_TRUE(first.Focused());  // a grid prefers it
  tabs.SetFocus();
  EXPECT_TRUE(Key(VK_TAB));
  EXPECT_TRUE(first.Focused());
  EXPECT_TRUE(Key(VK_TAB));
  EXPECT_TRUE(name.Focused());  // the hidden page is passed by
  EXPECT_FALSE(Key(VK_TAB));
  const test::HeldKey shift(VK_SHIFT);
  EXPECT_TRUE(Key(VK_TAB));
  EXPECT_TRUE(first.Focused());
  EXPECT_TRUE(Key(VK_TAB));
  EXPECT_FALSE(Key(VK_TAB));
  EXPECT_TRUE(view->FocusFirst(true));
  EXPECT_TRUE(name.Focused());
}

TEST_F(ViewWindowTest, TakesFromTheContainerTheKeysThatTheFocusedControlWants) {
  Open();
  first.SetFocus();
  EXPECT_TRUE(Key(VK_DOWN));
  EXPECT_TRUE(Key(VK_RETURN));
  EXPECT_FALSE(Key(VK_F2));
  EXPECT_FALSE(Key('S'));
  name.SetFocus();
  EXPECT_TRUE(Key(VK_LEFT));
  EXPECT_FALSE(Key(VK_RETURN));
  const test::HeldKey control(VK_CONTROL);
  EXPECT_TRUE(Key('V'));
  EXPECT_FALSE(Key('S'));
  tabs.SetFocus();
  EXPECT_FALSE(Key('V'));
  SetFocus(frame->Get());
  EXPECT_FALSE(Key(VK_DOWN));
}

TEST_F(ViewWindowTest, TellsWhenTheFocusComesAndGoesAsAWhole) {
  Open();
  tabs.SetFocus();
  first.SetFocus();
  name.SetFocus();
  EXPECT_TRUE(view->HasFocus());
  SetFocus(frame->Get());
  EXPECT_THAT(focus, ElementsAre(true, false));
  SetFocus(view->Handle());  // goes back to where it was
  EXPECT_TRUE(name.Focused());
}

TEST_F(ViewWindowTest, ViewAndModelsMayEndInsideANoticeOfTheFocus) {
  auto model = std::make_unique<TextBox>("passing");
  controls.Add(*model);
  Open();
  model->SetBounds({0, 0, 1000, 300});
  model->GotFocus.Add([&] {
    view.reset();
    model.reset();
  });
  SetFocus(Window(*model));
  EXPECT_EQ(model, nullptr);
  EXPECT_EQ(tabs.GetPeer(), nullptr);
}

TEST_F(ViewWindowTest, ModelsLiveOnWhenTheParentTakesTheWindowAlong) {
  Open();
  frame.reset();
  EXPECT_EQ(destroyed, 1);
  EXPECT_EQ(view->Handle(), nullptr);
  EXPECT_EQ(first.WindowHandle(), 0);
  first.SetFormatString("科目编码|科目名称");
  first.AutoSize(0);
  view->SetPlace({0, 0, 10, 10});
  view->SetFont({.face = L"Tahoma"});
  EXPECT_FALSE(view->FocusFirst());
  view.reset();
  EXPECT_EQ(destroyed, 1);
}

TEST_F(ViewWindowTest, ANewFontReachesTheMeasureOfTheGrids) {
  Open();
  const int before = first.Measure().Width("科目编码", false);
  view->SetFont({.face = L"Tahoma", .height = 360});
  EXPECT_GT(first.Measure().Width("科目编码", false), before * 3 / 2);
  view.reset();
  EXPECT_EQ(&first.Measure(), &PlainTextMeasure());
}

TEST_F(ViewWindowTest, DrawsItselfIntoAnotherContext) {
  Open();
  first.SetLook({.back_empty = 0x3060F0});
  const Picture shown(view->Handle());
  const Picture drawn(400, 300, [this](HDC dc) { view->Draw(dc, {0, 0, 400, 300}); });
  const RECT page{0, 80, 400, 200};
  EXPECT_EQ(drawn.Count(page, 0x3060F0), 400 * 120);
  EXPECT_EQ(shown.Count({200, 280, 400, 300}, 0x00C0FF), 200 * 20);
  EXPECT_EQ(drawn.Count({200, 280, 400, 300}, 0x00C0FF), 200 * 20);
}

TEST_F(ViewWindowTest, TabsAreActivatedByClickAndByKey) {
  std::vector<std::string> keys;
  tabs.TabActivated.Add([&](const std::string& key) { keys.push_back(key); });
  Open();
  test::Click(Window(tabs), 75, 10);
  test::Press(Window(tabs), VK_RIGHT);
  test::Press(Window(tabs), VK_RIGHT);  // there is no further one
  test::Press(Window(tabs), VK_HOME);
  test::Click(Window(tabs), 390, 10);  // right of all
  EXPECT_THAT(keys, ElementsAre("key2", "key3", "key1"));
  EXPECT_TRUE(tabs.Focused());
}

TEST_F(ViewWindowTest, ControlTabGoesRoundTheTabsAndEntersThePage) {
  tabs.TabActivated.Add([this](const std::string& key) {
    first.SetVisible(key == "key1");
    second.SetVisible(key != "key1");
  });
  Open();
  first.SetFocus();
  const test::HeldKey control(VK_CONTROL);
  EXPECT_TRUE(Key(VK_TAB));
  EXPECT_EQ(tabs.CurrTab(), 1);
  EXPECT_TRUE(second.Focused());
  const test::HeldKey shift(VK_SHIFT);
  EXPECT_TRUE(Key(VK_TAB));
  EXPECT_TRUE(Key(VK_TAB));
  EXPECT_EQ(tabs.CurrTab(), 2);
}

TEST_F(ViewWindowTest, TheActiveTabIsMarkedWhoeverActivatedIt) {
  Open();
  const auto marked = [this] {
    UpdateWindow(Window(tabs));
    return Picture(Window(tabs)).At(75, 1) == GetSysColor(COLOR_HIGHLIGHT);
  };
  EXPECT_FALSE(marked());
  tabs.SetCurrTab(1);
  EXPECT_TRUE(marked());
}

TEST_F(ViewWindowTest, RefusesAParentThatIsNone) {
  EXPECT_THROW(ViewWindow(controls, {.parent = nullptr}), std::system_error);
  EXPECT_EQ(tabs.GetPeer(), nullptr);
}

/// A control that no window is made for.
class Strange : public Control {
 public:
  Strange() : Control("strange") {}
  [[nodiscard]] std::string TypeName() const override { return "Strange"; }
};

TEST_F(ViewWindowTest, ModelsKnowNothingOfAWindowThatOpensHalf) {
  Strange strange;
  TreeView tree{"TV"};
  controls.Add(tree);
  controls.Add(strange);
  EXPECT_THROW(Open(), std::invalid_argument);
  EXPECT_EQ(first.GetPeer(), nullptr);
  first.SetCols(2);
  first.SetRows(5);
  first.AutoSize(0);
  tree.Nodes().Add(nullptr, Relationship::kLast, "key", "资产");
  EXPECT_EQ(tree.Nodes().Count(), 1);
}

TEST_F(ViewWindowTest, AListenerToItsEndMayFail) {
  view.emplace(controls, ViewWindowOptions{
                             .parent = frame->Get(), .place = {0, 0, 400, 300}, .destroyed = [] {
                               throw std::runtime_error("too late");
                             }});
  frame.reset();
  EXPECT_EQ(view->Handle(), nullptr);
}

TEST_F(ViewWindowTest, ManyViewsLeaveNothingBehind) {
  const auto cycle = [this] {
    Open();
    first.SetFormatString("科目编码|科目名称");
    first.SetRows(50);
    UpdateWindow(view->Handle());
    view->SetFont({.face = L"Tahoma", .height = 240});
    view.reset();
    test::Pump();
  };
  for (int i = 0; i < 5; ++i) cycle();
  const int objects = test::GdiObjects();
  const int windows = test::ThreadWindows();
  for (int i = 0; i < 100; ++i) cycle();
  EXPECT_EQ(test::GdiObjects(), objects);
  EXPECT_EQ(test::ThreadWindows(), windows);
}

}  // namespace
}  // namespace tavrix::viewkit::win32
