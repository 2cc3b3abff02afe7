#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

#include "host/utf.h"
#include "viewkit/grid/flex_grid.h"
#include "viewkit/grid/grid_metrics.h"
#include "viewkit/win32/grid_layout.h"
#include "viewkit/win32/view_window.h"
#include "windows/desktop.h"

namespace tavrix::viewkit::win32 {
namespace {

using test::Frame;
using test::Picture;
using testing::ElementsAre;

/// `heads` nodes of level 0, each with `leaves` below it.
host::RowSet Accounts(int heads, int leaves) {
  host::RowSet rows(3);
  for (int head = 0; head < heads; ++head) {
    for (int leaf = 0; leaf <= leaves; ++leaf) {
      std::string code = std::to_string(1001 + head);
      if (leaf > 0) code += std::to_string(10 + leaf);
      rows.AppendText(code);
      rows.AppendText(leaf > 0 ? "人民币账户" : "银行存款");
      rows.AppendInteger(leaf > 0 ? 2 : 1);
    }
  }
  return rows;
}

class GridWindowTest : public testing::Test {
 protected:
  GridWindowTest() {
    grid.SetFormatString("科目编码      |科目名称                    |级次");
    grid.SetColHidden(2, true);
    grid.SetLook({.select_back = 0x00F0F0, .select_fore = 0xC00000, .outline_bar = 5});
    grid.SetSelectionMode(SelectionMode::kByRow);
    grid.SetOutlineCol(0);
    grid.SetRowHeightMin(350);
    controls.Add(grid);
    view.emplace(controls, ViewWindowOptions{.parent = frame.Get(),
                                             .place = frame.Client(),
                                             .resized = [this](int width, int height) {
                                               grid.SetBounds({0, 0, width, height});
                                             }});
    Load(3, 4);
  }
  void Load(int heads, int leaves) {
    grid.LoadRows(Accounts(heads, leaves));
    grid.SetOutlineFromColumn(2);
    test::Pump();
  }
  [[nodiscard]] HWND Window() const { return reinterpret_cast<HWND>(grid.WindowHandle()); }
  [[nodiscard]] GridLayout Layout() const {
    RECT client{};
    GetClientRect(Window(), &client);
    return {grid, Scale{view->Dpi()}, {client.right, client.bottom}};
  }
  [[nodiscard]] RECT Cell(int row, int col) const {
    const GridLayout layout = Layout();
    return layout.Cell(*layout.RowOf(row), *layout.ColumnOf(col));
  }
  void ClickCell(int row, int col) {
    const RECT cell = Cell(row, col);
    test::Click(Window(), static_cast<int>(cell.right) - 10, static_cast<int>(cell.top) + 5);
  }
  void ClickSymbol(int row) {
    const RECT place = Layout().SymbolPlace(Cell(row, 0), grid.RowOutlineLevel(row));
    test::Click(Window(), static_cast<int>(place.left + place.right) / 2,
                static_cast<int>(place.top + place.bottom) / 2);
  }
  /// What waits to be painted, after everything before has been.
  [[nodiscard]] RECT Damage(const std::function<void()>& change) {
    UpdateWindow(Window());
    change();
    RECT damage{};
    GetUpdateRect(Window(), &damage, FALSE);
    return damage;
  }
  void Mouse(UINT message, LONG x, LONG y) {
    const auto point = MAKELPARAM(x, y);
    SendMessageW(Window(), message, message == WM_LBUTTONUP ? 0 : MK_LBUTTON, point);
  }
  [[nodiscard]] SCROLLINFO Bar(int which) const {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL;
    GetScrollInfo(Window(), which, &info);
    return info;
  }

  Frame frame;
  FlexGrid grid{"Vs", 0};
  ControlList controls;
  std::optional<ViewWindow> view;
};

TEST_F(GridWindowTest, AClickTakesTheFocusAndSelectsTheRow) {
  int got_focus = 0;
  grid.GotFocus.Add([&] { ++got_focus; });
  ClickCell(3, 1);
  EXPECT_EQ(GetFocus(), Window());
  EXPECT_EQ(got_focus, 1);
  EXPECT_EQ(grid.Row(), 3);
  EXPECT_EQ(grid.Col(), 1);
  SetFocus(frame.Get());
  EXPECT_FALSE(grid.Focused());
}

TEST_F(GridWindowTest, TheBoxCollapsesAndExpandsWithoutSelecting) {
  ClickSymbol(1);
  EXPECT_TRUE(grid.IsCollapsed(1));
  EXPECT_EQ(grid.ShownRows(), 11);
  EXPECT_LT(grid.Row(), 1);
  ClickSymbol(1);
  EXPECT_FALSE(grid.IsCollapsed(1));
  ClickSymbol(2);  // a leaf has none
  EXPECT_EQ(grid.Row(), 2);
}

TEST_F(GridWindowTest, ADoubleClickCountsOnACellAndNotOnABoxOrTheHeader) {
  int doubled = 0;
  grid.DoubleClick.Add([&] { ++doubled; });
  const RECT cell = Cell(2, 1);
  Mouse(WM_LBUTTONDBLCLK, cell.left + 5, cell.top + 5);
  Mouse(WM_LBUTTONUP, cell.left + 5, cell.top + 5);
  EXPECT_EQ(doubled, 1);
  const RECT box = Layout().SymbolPlace(Cell(1, 0), 0);
  Mouse(WM_LBUTTONDBLCLK, (box.left + box.right) / 2, (box.top + box.bottom) / 2);
  Mouse(WM_LBUTTONDBLCLK, 20, 5);
  EXPECT_EQ(doubled, 1);
  EXPECT_TRUE(grid.IsCollapsed(1));
}

TEST_F(GridWindowTest, KeysMoveAndAreToldBefore) {
  std::vector<int> seen;
  grid.KeyDown.Add([&](Key key, Modifiers) { seen.push_back(static_cast<int>(key)); });
  grid.KeyUp.Add([&](Key key, Modifiers) { seen.push_back(-static_cast<int>(key)); });
  grid.SetFocus();
  grid.SetRow(1);
  test::Press(Window(), VK_DOWN);
  EXPECT_EQ(grid.Row(), 2);
  test::Press(Window(), VK_RETURN);
  test::Press(Window(), VK_END);
  EXPECT_EQ(grid.Row(), 15);
  EXPECT_THAT(seen, ElementsAre(VK_DOWN, -VK_DOWN, VK_RETURN, -VK_RETURN, VK_END, -VK_END));
}

TEST_F(GridWindowTest, OutlineKeysComeAsKeysOrAsCharacters) {
  grid.SetRow(1);
  test::Press(Window(), VK_SUBTRACT);
  EXPECT_TRUE(grid.IsCollapsed(1));
  test::Type(Window(), L"+");
  EXPECT_FALSE(grid.IsCollapsed(1));
  test::Type(Window(), L"-");
  EXPECT_TRUE(grid.IsCollapsed(1));
}

TEST_F(GridWindowTest, TypingSeeksTheCode) {
  test::Type(Window(), L"100212");
  EXPECT_EQ(grid.TextMatrix(grid.Row(), 0), "100212");
}

TEST_F(GridWindowTest, DraggingAHeaderBorderSizesTheColumn) {
  std::vector<int> resized;
  grid.AfterUserResize.Add([&](int col) { resized.push_back(col); });
  const RECT header = Cell(0, 0);
  Mouse(WM_LBUTTONDOWN, header.right - 1, header.top + 5);
  Mouse(WM_MOUSEMOVE, header.right + 30, header.top + 5);
  Mouse(WM_MOUSEMOVE, header.right + 60, header.top + 5);
  EXPECT_THAT(resized, ElementsAre());
  Mouse(WM_LBUTTONUP, header.right + 60, header.top + 5);
  EXPECT_EQ(Cell(0, 0).right, header.right + 60);
  EXPECT_THAT(resized, ElementsAre(0));
  Mouse(WM_LBUTTONDBLCLK, header.right + 60, header.top + 5);
  EXPECT_LT(Cell(0, 0).right, header.right + 60);
  EXPECT_THAT(resized, ElementsAre(0, 0));
}

TEST_F(GridWindowTest, AutoSizeLeavesNothingClippedAndNoSpaceUnused) {
  grid.AutoSize(0);
  UpdateWindow(Window());
  const GridLayout layout = Layout();
  const RECT cell = Cell(2, 0);
  const int text = view->ToPixels(grid.Measure().Width("100111", false));
  const int space = static_cast<int>(cell.right) - layout.Padding() - layout.TextLeft(cell, 2, 0);
  EXPECT_GE(space, text);
  EXPECT_LE(space, text + 4);
}

TEST_F(GridWindowTest, OnlyTheRowsWhoseSelectionChangedArePainted) {
  grid.SetRow(2);
  const RECT damage = Damage([&] { grid.SetRow(4); });
  EXPECT_EQ(damage.top, Cell(2, 0).top);
  EXPECT_EQ(damage.bottom, Cell(4, 0).bottom);
  const RECT text = Damage([&] { grid.SetTextMatrix(3, 1, "现金"); });
  EXPECT_EQ(text.top, Cell(3, 0).top);
  EXPECT_EQ(text.bottom, Cell(3, 0).bottom);
  const RECT nothing = Damage([&] { grid.SetTextMatrix(3, 1, "现金"); });
  EXPECT_TRUE(IsRectEmpty(&nothing));
}

TEST_F(GridWindowTest, ScrollingByARowPaintsOnlyWhatComesIn) {
  Load(100, 4);
  const int height = RowPixels(grid, Scale{view->Dpi()}, 1);
  const RECT damage = Damage([&] { grid.SetTopRow(2); });
  RECT client{};
  GetClientRect(Window(), &client);
  EXPECT_GE(damage.top, client.bottom - 2 * height);
  EXPECT_EQ(damage.bottom, client.bottom);
}

TEST_F(GridWindowTest, WhatIsScrolledLooksAsIfPaintedAnew) {
  Load(100, 4);
  grid.SetFocus();
  for (const bool merged : {false, true}) {
    grid.SetMergeCol(1, merged);
    for (const int top : {2, 7, 5, 300, 1, 40}) {
      grid.SetTopRow(top);
      grid.SetRow(top + 3);
      UpdateWindow(Window());
      const Picture scrolled(Window());
      InvalidateRect(Window(), nullptr, FALSE);
      UpdateWindow(Window());
      EXPECT_EQ(Picture(Window()), scrolled) << "top row " << top;
    }
  }
}

TEST_F(GridWindowTest, EqualNeighboursOfAMergedColumnArePaintedAsOneCell) {
  const auto line_below = [&](int row) {
    UpdateWindow(Window());
    const RECT cell = Cell(row, 1);
    const int x = static_cast<int>(cell.left + cell.right) / 2;
    const Picture picture(Window());
    return picture.At(x, static_cast<int>(cell.bottom) - 1) !=
           picture.At(x, static_cast<int>(cell.bottom) - 2);
  };
  EXPECT_TRUE(line_below(2));
  grid.SetMergeCol(1, true);  // the four rows below each head have one name
  EXPECT_FALSE(line_below(2));
  EXPECT_TRUE(line_below(5));
  grid.SetRow(2);
  UpdateWindow(Window());
  EXPECT_EQ(Picture(Window()).Count(Cell(2, 1), 0x00F0F0), 0);  // a part only is selected
}

TEST_F(GridWindowTest, RowsOfTotalsStandInTheirColours) {
  SubtotalOptions options;
  options.group_on = 1;
  options.total_on = 0;
  options.fore = 128;
  options.bold = true;
  options.caption = "%s小计，比这一列宽得多的一行文字";
  grid.SetColWidth(1, 1000);
  grid.Subtotal(SubtotalFunction::kSum, options);
  options = {};
  options.back = 0xFFFF80;
  grid.Subtotal(SubtotalFunction::kSum, options);
  grid.SetColWidth(0, 3000);
  grid.SetCols(4);
  UpdateWindow(Window());
  const Picture picture(Window());
  EXPECT_GT(picture.Count(Cell(2, 0), 128), 10);
  EXPECT_GT(picture.Count(Cell(2, 3), 128), 10);  // the caption runs on
  EXPECT_EQ(picture.Count(Cell(3, 1), 128), 0);
  const int last = grid.Rows() - 1;
  if (const Span* row = Layout().RowOf(last); row != nullptr) {
    EXPECT_GT(picture.Count(Cell(last, 1), 0xFFFF80), 500);
  }
}

TEST_F(GridWindowTest, RowsHiddenOneByOneAreArrangedOnce) {
  Load(100, 4);
  for (int row = 1; row < 400; ++row) grid.SetRowHidden(row, true);
  EXPECT_EQ(Bar(SB_VERT).nMax, 499);
  UpdateWindow(Window());
  EXPECT_EQ(Bar(SB_VERT).nMax, 100);
  for (int row = 400; row < 490; ++row) grid.SetRowHidden(row, true);
  grid.SetTopRow(495);  // whoever scrolls needs to know what is seen
  EXPECT_EQ(Bar(SB_VERT).nMax, 10);
}

TEST_F(GridWindowTest, SelectedRowsStandInTheColoursOfTheLook) {
  grid.SetRow(2);
  UpdateWindow(Window());
  const Picture picture(Window());
  EXPECT_GT(picture.Count(Cell(2, 1), 0x00F0F0), 500);
  EXPECT_GT(picture.Count(Cell(2, 1), 0xC00000), 10);
  EXPECT_EQ(picture.Count(Cell(3, 1), 0x00F0F0), 0);
}

TEST_F(GridWindowTest, TheBarFollowsTheShownRowsAndMovesThem) {
  Load(100, 4);
  EXPECT_EQ(Bar(SB_VERT).nMax, 499);
  grid.Outline(0);
  EXPECT_EQ(Bar(SB_VERT).nMax, 99);
  SendMessageW(Window(), WM_VSCROLL, SB_LINEDOWN, 0);
  EXPECT_EQ(grid.TopRow(), 6);
  EXPECT_EQ(Bar(SB_VERT).nPos, 1);
  SendMessageW(Window(), WM_VSCROLL, SB_BOTTOM, 0);
  EXPECT_TRUE(grid.IsInView(grid.RowAtShownPosition(99)));
  EXPECT_EQ(Bar(SB_VERT).nPos, 100 - static_cast<int>(Bar(SB_VERT).nPage));
  grid.SetRows(2);
  EXPECT_EQ(GetWindowLongW(Window(), GWL_STYLE) & WS_VSCROLL, 0);
}

TEST_F(GridWindowTest, ColumnsScrollSidewaysPastTheFrozenOne) {
  EXPECT_EQ(GetWindowLongW(Window(), GWL_STYLE) & WS_HSCROLL, 0);
  grid.SetCols(12);
  grid.SetFrozenCols(1);
  EXPECT_EQ(Bar(SB_HORZ).nMax, 9);  // one is frozen, one hidden
  SendMessageW(Window(), WM_HSCROLL, SB_LINEDOWN, 0);
  EXPECT_EQ(grid.LeftCol(), 3);
  EXPECT_EQ(Layout().ColumnOf(1), nullptr);
  EXPECT_EQ(Layout().ColumnOf(3)->begin, Layout().ColumnOf(0)->end);
  // Borders are where they are seen.
  for (const int col : {0, 3}) {
    const RECT header = Cell(0, col);
    Mouse(WM_LBUTTONDOWN, header.right - 1, header.top + 5);
    Mouse(WM_MOUSEMOVE, header.right + 15, header.top + 5);
    Mouse(WM_LBUTTONUP, header.right + 15, header.top + 5);
    EXPECT_EQ(Cell(0, col).right, header.right + 15);
    EXPECT_EQ(Cell(0, col).left, header.left);
  }
  const RECT moved = Cell(2, 3);
  test::Click(Window(), static_cast<int>(moved.left) + 5, static_cast<int>(moved.top) + 5);
  EXPECT_EQ(grid.Col(), 3);
  SendMessageW(Window(), WM_HSCROLL, SB_LINEUP, 0);
  EXPECT_EQ(grid.LeftCol(), 1);
  grid.SetColWidth(3, 0);  // as a layout hides a column
  SendMessageW(Window(), WM_HSCROLL, SB_LINEDOWN, 0);
  EXPECT_EQ(grid.LeftCol(), 4);
  SendMessageW(Window(), WM_HSCROLL, SB_LINEUP, 0);
  EXPECT_EQ(grid.LeftCol(), 1);
  grid.SetFrozenCols(0);  // what scrolls again is seen again
  EXPECT_EQ(grid.LeftCol(), 0);
}

TEST_F(GridWindowTest, TheWheelScrollsThreeRowsWhenNobodyElseTakesIt) {
  Load(100, 4);
  SendMessageW(Window(), WM_MOUSEWHEEL, MAKEWPARAM(0, -WHEEL_DELTA), 0);
  EXPECT_EQ(grid.TopRow(), 4);
  SendMessageW(Window(), WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA / 3), 0);
  EXPECT_EQ(grid.TopRow(), 3);
}

TEST_F(GridWindowTest, TheWheelThatTiltsScrollsColumns) {
  grid.SetCols(12);
  SendMessageW(Window(), WM_MOUSEHWHEEL, MAKEWPARAM(0, WHEEL_DELTA), 0);
  SendMessageW(Window(), WM_MOUSEHWHEEL, MAKEWPARAM(0, WHEEL_DELTA / 2), 0);
  EXPECT_EQ(grid.LeftCol(), 1);
  SendMessageW(Window(), WM_MOUSEHWHEEL, MAKEWPARAM(0, WHEEL_DELTA / 2), 0);
  EXPECT_EQ(grid.LeftCol(), 3);  // one is hidden
  SendMessageW(Window(), WM_MOUSEHWHEEL, MAKEWPARAM(0, static_cast<WORD>(-2 * WHEEL_DELTA)), 0);
  EXPECT_EQ(grid.LeftCol(), 0);
}

TEST_F(GridWindowTest, DraggingOutsideGoesOnScrolling) {
  Load(100, 4);
  RECT client{};
  GetClientRect(Window(), &client);
  ClickCell(2, 1);
  const RECT cell = Cell(2, 1);
  Mouse(WM_LBUTTONDOWN, cell.left + 5, cell.top + 5);
  Mouse(WM_MOUSEMOVE, cell.left + 5, client.bottom + 20);
  const int top = grid.TopRow();
  for (int tick = 0; tick < 5; ++tick) SendMessageW(Window(), WM_TIMER, 1, 0);
  EXPECT_GT(grid.TopRow(), top);
  EXPECT_GT(grid.SelectedRows(), 10);
  Mouse(WM_LBUTTONUP, cell.left + 5, client.bottom + 20);
  const int selected = grid.SelectedRows();
  SendMessageW(Window(), WM_TIMER, 1, 0);
  EXPECT_EQ(grid.SelectedRows(), selected);
  EXPECT_NE(GetCapture(), Window());
}

TEST_F(GridWindowTest, ControlCCopiesTheSelectedRows) {
  ClickCell(2, 1);
  const test::HeldKey control(VK_CONTROL);
  test::Press(Window(), 'C');
  EXPECT_EQ(test::ClipboardText(), L"100111\t人民币账户\r\n");
}

TEST_F(GridWindowTest, ALongOrOddTextPaintsAndADeepLevelToo) {
  grid.SetTextMatrix(1, 1, std::string(10000, 'x') + "\r\n\x01末");
  grid.SetRowOutlineLevel(2, 2000000000);
  InvalidateRect(Window(), nullptr, FALSE);
  UpdateWindow(Window());
  RECT nothing{};
  EXPECT_FALSE(GetUpdateRect(Window(), &nothing, FALSE));
}

TEST_F(GridWindowTest, AnEmptyGridAndOneWithoutColumnsTakeEveryInput) {
  for (const int cols : {3, 0}) {
    grid.SetRows(1);
    grid.SetCols(cols);
    for (const LONG y : {5, 100}) test::Click(Window(), 20, static_cast<int>(y));
    for (const int key : {VK_DOWN, VK_UP, VK_END, VK_HOME, VK_NEXT, VK_LEFT, VK_ADD}) {
      test::Press(Window(), static_cast<WORD>(key));
    }
    for (const int bar : {WM_VSCROLL, WM_HSCROLL}) {
      for (int request = SB_LINEUP; request <= SB_BOTTOM; ++request) {
        SendMessageW(Window(), static_cast<UINT>(bar), static_cast<WPARAM>(request), 0);
      }
    }
    test::Type(Window(), L"1*");
    UpdateWindow(Window());
    EXPECT_LT(grid.Row(), 1);
  }
}

/// A column that a layout hides by its width has no border of its own: the one that is seen there
/// is the visible neighbour's.
TEST_F(GridWindowTest, ABorderBesideAHiddenColumnSizesTheVisibleOne) {
  grid.SetCols(4);
  grid.SetColHidden(2, false);
  for (const int col : {1, 2}) grid.SetColWidth(col, 0);
  const RECT cell = Cell(0, 0);
  Mouse(WM_LBUTTONDOWN, cell.right - 1, cell.top + 3);
  Mouse(WM_MOUSEMOVE, cell.right + 29, cell.top + 3);
  Mouse(WM_LBUTTONUP, cell.right + 29, cell.top + 3);
  EXPECT_EQ(Cell(0, 0).right, cell.right + 29);
  EXPECT_EQ(grid.ColWidth(1), 0);
  EXPECT_EQ(grid.ColWidth(2), 0);
  const RECT sized = Cell(0, 0);
  Mouse(WM_LBUTTONDBLCLK, sized.right, sized.top + 3);
  EXPECT_EQ(grid.ColWidth(2), 0) << "nor does a double click bring it back";
  EXPECT_LT(Cell(0, 0).right, sized.right);
}

TEST_F(GridWindowTest, CollapsedRowsSettleTheTopRowWhenTheyArePainted) {
  Load(40, 3);
  grid.SetTopRow(150);
  UpdateWindow(Window());
  int scrolls = 0;
  grid.AfterScroll.Add([&] { ++scrolls; });
  for (int row = 1; row < grid.Rows(); ++row) grid.SetCollapsed(row, true);
  UpdateWindow(Window());
  EXPECT_EQ(scrolls, 1);
  EXPECT_EQ(Bar(SB_VERT).nMax, 39);
  EXPECT_EQ(Bar(SB_VERT).nPos, grid.ShownPosition(grid.TopRow()));
}

TEST_F(GridWindowTest, TheViewMayEndInsideAnEventOfTheGrid) {
  grid.RowColChange.Add([&] { view.reset(); });
  ClickCell(2, 1);
  EXPECT_FALSE(view.has_value());
  EXPECT_EQ(grid.GetPeer(), nullptr);
  EXPECT_EQ(grid.Row(), 2);
}

/// So many rows that one glance at each of them would take longer than the painting itself. Closed
/// nodes and hidden rows lie between, so that the shown ones have to be found.
TEST_F(GridWindowTest, PaintingAMillionRowsCostsNoMoreThanPaintingAHundred) {
  using Clock = std::chrono::steady_clock;
  const auto fastest = [&](int heads) {
    Load(heads, 9);
    for (const int row : {11, 21, 51}) grid.SetCollapsed(row, true);
    grid.SetRowHidden(35, true);
    UpdateWindow(Window());
    auto best = Clock::duration::max();
    for (int i = 0; i < 40; ++i) {
      const auto start = Clock::now();
      grid.SetTopRow(1 + i * 7 % 50);
      InvalidateRect(Window(), nullptr, FALSE);
      UpdateWindow(Window());
      best = std::min(best, Clock::now() - start);
    }
    return best;
  };
  // Other programs run at the same time: the fastest of several rounds counts.
  auto few = Clock::duration::max();
  auto many = Clock::duration::max();
  for (int round = 0; round < 5 && (round == 0 || many / 2 >= few); ++round) {
    few = std::min(few, fastest(10));
    many = std::min(many, fastest(100'000));
  }
  EXPECT_LT(many / 2, few);
}

}  // namespace
}  // namespace tavrix::viewkit::win32
