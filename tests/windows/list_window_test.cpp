#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <optional>

#include "viewkit/controls/date_picker.h"
#include "viewkit/controls/list_view.h"
#include "viewkit/controls/text_box.h"
#include "viewkit/win32/view_window.h"
#include "windows/desktop.h"

namespace tavrix::viewkit::win32 {
namespace {

HWND Window(const Control& control) {
  return reinterpret_cast<HWND>(control.WindowHandle());
}

// The system's list and date box, asked by the system's own messages.
TEST(ListAndDateWindows, ShowTheirModelsAndTellThemOfTheUser) {
  const test::Frame frame;
  ListView list("Lv");
  list.SetColumns({{"A", 1500}, {"B", 900, true}});
  list.SetMultiSelect(false);
  list.SetItems({{"1", "一"}, {"2", "二"}, {"3", "三"}});
  list.SetBounds({0, 0, 6000, 3000});
  DTPicker date("Dtp");
  date.SetValue(std::chrono::year(2024) / 2 / 29);
  date.SetBounds({0, 3300, 2000, 345});
  ControlList controls;
  controls.Add(list);
  controls.Add(date);
  std::optional<ViewWindow> view(
      std::in_place, controls, ViewWindowOptions{.parent = frame.Get(), .place = {0, 0, 500, 400}});
  test::Pump();

  wchar_t text[10] = L"";
  ListView_GetItemText(Window(list), 2, 1, text, 10);
  EXPECT_STREQ(text, L"三");
  EXPECT_EQ(ListView_GetColumnWidth(Window(list), 0), view->ToPixels(1500));
  int chosen = 0;
  list.ItemClick.Add([&] { ++chosen; });
  SetFocus(Window(list));
  for (const UINT key : {UINT{VK_HOME}, UINT{VK_DOWN}})
    SendMessageW(Window(list), WM_KEYDOWN, key, 0);
  EXPECT_EQ(list.FirstSelected(), 2);
  EXPECT_EQ(list.SelectedItem(), 2);
  EXPECT_EQ(chosen, 2);
  EXPECT_FALSE(list.Selected(1));
  list.SetItems({{"4", "四"}});
  EXPECT_EQ(ListView_GetItemCount(Window(list)), 1);
  EXPECT_EQ(ListView_GetSelectedCount(Window(list)), 0u);
  list.SetSelected(1, true);
  EXPECT_EQ(ListView_GetNextItem(Window(list), -1, LVNI_SELECTED), 0);

  SYSTEMTIME day{};
  DateTime_GetSystemtime(Window(date), &day);
  EXPECT_EQ(day.wYear * 10'000 + day.wMonth * 100 + day.wDay, 20'240'229);
  SetFocus(Window(date));
  SendMessageW(Window(date), WM_KEYDOWN, VK_RIGHT, 0);
  const auto press_up = [&] { SendMessageW(Window(date), WM_KEYDOWN, VK_UP, 0); };
  for (const int presses : {1, 2, 3, 4}) {
    press_up();
    DateTime_GetSystemtime(Window(date), &day);
    const std::chrono::year_month_day shown{
        std::chrono::year{day.wYear}, std::chrono::month{day.wMonth}, std::chrono::day{day.wDay}};
    EXPECT_EQ(date.Value(), shown) << presses << " presses from a leap day";
  }
  date.SetValue(std::chrono::year(2024) / 5 / 15);
  press_up();
  EXPECT_NE(date.Value(), std::chrono::year(2024) / 5 / 15);

  const auto type = [&](const wchar_t* keys) {
    SetFocus(nullptr);
    SetFocus(Window(date));
    for (; *keys != 0; ++keys) SendMessageW(Window(date), WM_CHAR, static_cast<WPARAM>(*keys), 0);
    SetFocus(nullptr);
    test::Pump();
    DateTime_GetSystemtime(Window(date), &day);
    return day.wYear * 10'000 + day.wMonth * 100 + day.wDay;
  };
  EXPECT_EQ(type(L"20240115"), 20'240'115) << "a day typed at one go";
  EXPECT_EQ(date.Value(), std::chrono::year(2024) / 1 / 15);
  EXPECT_EQ(type(L"2025-12-31"), 20'251'231);
  EXPECT_EQ(type(L"202420231130"), 20'231'130) << "the year put right at once";
  type(L"20230231");
  EXPECT_EQ(date.Value(), std::chrono::year(2023) / 11 / 30) << "not a day of the calendar";
  view.reset();
  list.SetItems({{"5"}});
  EXPECT_EQ(list.Count(), 1);
}

}  // namespace
}  // namespace tavrix::viewkit::win32
