// Texts that are cut, and texts whose colours do not go together.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <vector>

#include "host/non_copyable.h"
#include "host/utf.h"
#include "viewkit/controls/label.h"
#include "viewkit/controls/tab_strip.h"
#include "viewkit/grid/flex_grid.h"
#include "viewkit/win32/fonts.h"
#include "viewkit/win32/handles.h"
#include "viewkit/win32/line_text.h"
#include "viewkit/win32/view_window.h"
#include "windows/desktop.h"

namespace tavrix::viewkit::win32 {
namespace {

using host::Narrow;
using host::Wide;

using test::Picture;

constexpr const char* kLong = "银行存款 — 一个很长的名称";
constexpr COLORREF kDarkRed = 0x000080;

/// Some of the system's colours are others while this lives.
class SystemColors : private host::NonCopyable {
 public:
  SystemColors(std::vector<int> elements, std::vector<COLORREF> colors)
      : elements_(std::move(elements)) {
    for (const int element : elements_) before_.push_back(GetSysColor(element));
    Set(colors);
  }
  ~SystemColors() { Set(before_); }

 private:
  void Set(const std::vector<COLORREF>& colors) const {
    SetSysColors(static_cast<int>(elements_.size()), elements_.data(), colors.data());
    test::Pump();
  }
  std::vector<int> elements_;
  std::vector<COLORREF> before_;
};

class LegibilityTest : public testing::Test {
 protected:
  LegibilityTest() {
    tabs.AddTab("key1", "全部");
    tabs.AddTab("key2", kLong);
    grid.SetFormatString("科目编码|科目名称");
    grid.SetLook({.grid_lines = false});
    grid.SetRows(3);
    grid.SetColWidth(0, 3000);
    label.SetBounds({0, 3000, 2000, 400});
    tabs.SetBounds({0, 0, 3000, 400});
    grid.SetBounds({0, 400, 6000, 2400});
    for (Control* control : {static_cast<Control*>(&tabs), static_cast<Control*>(&grid),
                             static_cast<Control*>(&label)}) {
      controls.Add(*control);
    }
    view.emplace(controls, ViewWindowOptions{.parent = frame.Get(), .place = frame.Client()});
    test::Pump();
  }
  static Picture Shown(const Control& control) {
    const auto window = reinterpret_cast<HWND>(control.WindowHandle());
    UpdateWindow(window);
    return Picture(window);
  }
  static int Count(const Picture& picture, COLORREF color) {
    return picture.Count({0, 0, picture.Width(), picture.Height()}, color);
  }

  /// The last column left of `edge` in which the first row of the grid shows any ink.
  int LastInk(int edge) const {
    const Picture picture = Shown(grid);
    const int top = view->ToPixels(grid.RowHeight(0)) + 2;
    const int bottom = top + view->ToPixels(grid.RowHeight(1)) - 4;
    for (int x = edge - 2; x >= 0; --x) {
      const RECT column{x, top, x + 1, bottom};
      if (picture.Count(column, GetSysColor(COLOR_WINDOW)) < bottom - top) return x;
    }
    return -1;
  }

  test::Frame frame;
  TabStrip tabs{"vxVSTab"};
  FlexGrid grid{"Vs", 0};
  Label label{"Lbl"};
  ControlList controls;
  std::optional<ViewWindow> view;
};

TEST_F(LegibilityTest, ACutTextEndsInOneEllipsisAndFits) {
  const MemoryDc dc;
  const auto width = [&](const std::wstring& text) {
    SIZE size{};
    GetTextExtentPoint32W(dc.Get(), text.data(), static_cast<int>(text.size()), &size);
    return static_cast<int>(size.cx);
  };
  for (const std::wstring text : {L"1002010203", L"银行存款 工商银行", L"a b c d e f",
                                  L"到此为止……", L"𠀀𠀁𠀂𠀃", L"x\r\ny"}) {
    const int whole = width(text);
    EXPECT_EQ(CutToFit(dc.Get(), text, whole + 20).size(), text.size());
    for (int room = width(L"…"); room < whole - 3; ++room) {
      const std::wstring cut = CutToFit(dc.Get(), text, room);
      ASSERT_LE(width(cut), room);
      ASSERT_EQ(std::count(cut.begin(), cut.end(), L'…'), 1) << Narrow(cut);
      ASSERT_EQ(cut.back(), L'…');
      ASSERT_NE(cut.size() > 1 ? cut[cut.size() - 2] : L'x', L' ');
      ASSERT_EQ(Wide(Narrow(cut)), cut) << "half a character";
    }
    EXPECT_EQ(CutToFit(dc.Get(), text, 0), L"…");
  }
}

TEST_F(LegibilityTest, WhatWasCutIsPaintedWhole) {
  constexpr int kRoom = 120;
  constexpr int kWide = 400;
  const FontSet fonts(FontSpec::System(), Scale{96});
  const auto painted = [&](std::wstring text, int room) {
    return Picture(kWide, 20, [&](HDC dc) {
      const Selected font(dc, fonts.Get(false));
      SetTextColor(dc, RGB(255, 255, 255));
      SetBkMode(dc, TRANSPARENT);
      DrawLine(dc, text, {0, 0, room, 20}, DT_LEFT | DT_VCENTER);
    });
  };
  const MemoryDc dc;
  const Selected font(dc.Get(), fonts.Get(false));
  for (const std::wstring text :
       {L"L’achat d’études et de prestations de services",
        L"Produits des cessions d’éléments d’actif d’exploitation",
        L"2024-01-31 -- 2024-02-29 -- 2024-03-31", L"—— 一个很长的名称 ——"}) {
    const std::wstring cut = CutToFit(dc.Get(), text, kRoom);
    ASSERT_EQ(cut.back(), L'…');
    EXPECT_EQ(painted(text, kRoom), painted(cut, kWide)) << Narrow(cut);
  }
}

TEST_F(LegibilityTest, CellsAndLabelsAreCutAlike) {
  // What is shown of a long text is what its beginning with an ellipsis looks like.
  const auto same = [](const Control& control, const auto& set) {
    set(kLong);
    const Picture cut = Shown(control);
    std::string text = kLong;
    for (int left_out = 1; left_out < 12; ++left_out) {
      std::wstring shorter = Wide(kLong);
      shorter.resize(shorter.size() - static_cast<std::size_t>(left_out));
      set(Narrow(shorter + L"…"));
      if (Shown(control) == cut) return true;
    }
    return false;
  };
  grid.SetColWidth(0, 1500);
  EXPECT_TRUE(same(grid, [this](const std::string& text) { grid.SetTextMatrix(1, 0, text); }));
  label.SetBounds({0, 3000, 1500, 400});
  EXPECT_TRUE(same(label, [this](const std::string& text) { label.SetCaption(text); }));
}

TEST_F(LegibilityTest, AmountsEndOnOneLine) {
  grid.SetColAlignment(0, Alignment::kRightCenter);
  std::vector<int> first_ends;
  for (const bool bold : {false, true}) {
    std::vector<int> ends;
    for (const char* amount : {"8,881.88", "18,111.18", "111,111.18", "188,888,888.88"}) {
      grid.SetTextMatrix(1, 0, amount);
      grid.SetCellFontBold(1, 0, bold);
      ends.push_back(LastInk(view->ToPixels(3000)));
    }
    EXPECT_EQ(std::ranges::max(ends), std::ranges::min(ends)) << "bold: " << bold;
    first_ends.push_back(ends.front());
  }
  EXPECT_GT(first_ends.front(), view->ToPixels(2000));
  constexpr int kThickerStroke = 2;  // pixels by which the ink of a bold figure ends elsewhere
  EXPECT_LE(std::abs(first_ends[0] - first_ends[1]), kThickerStroke);
}

TEST_F(LegibilityTest, OnDarkGroundsDarkTextsTakeTheSystemsColour) {
  grid.SetTextMatrix(1, 0, "应收账款合计");
  grid.SetCellForeColor(1, 0, kDarkRed);
  grid.SetTextMatrix(2, 0, "资产小计");
  grid.SetCellBackColor(2, 0, 0xFFFF80);
  label.SetCaption("共:8条");
  EXPECT_GT(Count(Shown(grid), kDarkRed), 20);
  const SystemColors dark({COLOR_WINDOW, COLOR_WINDOWTEXT, COLOR_BTNFACE, COLOR_BTNTEXT},
                          {0x000000, 0xF0FFF0, 0x000000, 0xF0FFF0});
  const Picture picture = Shown(grid);
  EXPECT_EQ(Count(picture, kDarkRed), 0);
  EXPECT_GT(Count(picture, 0xF0FFF0), 50);  // the header and the first row
  EXPECT_GT(Count(Shown(label), 0xF0FFF0), 20);
  view->SetForeColor(0x101010);
  EXPECT_GT(Count(Shown(label), 0xF0FFF0), 20);
  EXPECT_GT(Count(Shown(tabs), 0xF0FFF0), 20);
}

// Sealed accounts, on systems whose grey is hardly seen.
TEST_F(LegibilityTest, WhatStandsBackDoesSoLegibly) {
  constexpr COLORREF kBetween = 0x666666;
  const SystemColors pale({COLOR_GRAYTEXT, COLOR_WINDOW, COLOR_WINDOWTEXT},
                          {0xC0C0C0, 0xFFFFFF, 0x000000});
  grid.SetTextMatrix(1, 0, "应收账款");
  EXPECT_EQ(Count(Shown(grid), kBetween), 0);
  grid.SetCellForeColor(1, 0, color::kGrayText);
  EXPECT_GT(Count(Shown(grid), kBetween), 20);
}

TEST_F(LegibilityTest, OnALightCellOfADarkSystemTheTextIsDark) {
  const SystemColors dark({COLOR_WINDOW, COLOR_WINDOWTEXT, COLOR_BTNFACE, COLOR_BTNTEXT},
                          {0x000000, 0xF0FFF0, 0x000000, 0xF0FFF0});
  grid.SetFixedRows(0);
  grid.SetRows(1);
  grid.SetTextMatrix(0, 0, "资产小计");
  const RECT cell{0, 0, view->ToPixels(3000), 12};
  EXPECT_GT(Shown(grid).Count(cell, 0xF0FFF0), 20);
  grid.SetCellBackColor(0, 0, 0xFFFF80);
  const Picture picture = Shown(grid);
  EXPECT_EQ(picture.Count(cell, 0xF0FFF0), 0);
  EXPECT_GT(picture.Count(cell, 0x000000), 20);
}

}  // namespace
}  // namespace tavrix::viewkit::win32
