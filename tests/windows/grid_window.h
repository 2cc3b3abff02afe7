#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "host/utf.h"
#include "viewkit/grid/flex_grid.h"
#include "viewkit/grid/grid_metrics.h"
#include "viewkit/win32/grid_layout.h"
#include "viewkit/win32/view_window.h"
#include "windows/desktop.h"

namespace tavrix::viewkit::win32 {

/// `heads` nodes of level 0, each with `leaves` below it.
inline host::RowSet Accounts(int heads, int leaves) {
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

  test::Frame frame;
  FlexGrid grid{"Vs", 0};
  ControlList controls;
  std::optional<ViewWindow> view;
};

}  // namespace tavrix::viewkit::win32
