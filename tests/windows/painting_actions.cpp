#include "windows/painting_actions.h"

#include <windows.h>

#include <algorithm>
#include <optional>
#include <string>

#include "host/grid_update.h"
#include "windows/desktop.h"

namespace tavrix::test {
namespace {

using viewkit::FlexGrid;
using viewkit::TreeNode;
using viewkit::TreeView;

constexpr const char* kTexts[] = {"",
                                  "银行存款",
                                  "银行存款",
                                  "1,234.50",
                                  "-7",
                                  "x",
                                  "一行比任何一列都宽得多的文字，写到窗口之外去"};
constexpr viewkit::Color kColors[] = {0x80000008, 0x0000FF, 0xC0FFC0, 0x800000,
                                      viewkit::color::kDefault};

HWND Window(const viewkit::Control& control) {
  return reinterpret_cast<HWND>(control.WindowHandle());
}

LRESULT Send(const viewkit::Control& control, UINT message, WPARAM wparam, LPARAM lparam = 0) {
  return SendMessageW(Window(control), message, wparam, lparam);
}

SIZE ClientSize(const viewkit::Control& control) {
  RECT client{};
  GetClientRect(Window(control), &client);
  return {client.right, client.bottom};
}

/// A data row; -1 when there is none.
int AnyRow(const FlexGrid& grid, Dice& dice) {
  const int rows = grid.Rows() - grid.FixedRows();
  return rows == 0 ? -1 : grid.FixedRows() + dice.Below(rows);
}

int AnyCol(const FlexGrid& grid, Dice& dice) {
  return dice.Below(grid.Cols());
}

template <class Change>
void OnAnyRow(FlexGrid& grid, Dice& dice, Change change) {
  const int row = AnyRow(grid, dice);
  if (row >= 0) change(row);
}

LPARAM AnyPoint(const viewkit::Control& control, Dice& dice) {
  const SIZE size = ClientSize(control);
  const int x = dice.Below(static_cast<int>(size.cx));
  return MAKELPARAM(x, dice.Below(static_cast<int>(size.cy)));
}

void PressKey(FlexGrid& grid, Dice& dice) {
  constexpr WORD kKeys[] = {VK_DOWN, VK_DOWN,     VK_DOWN,  VK_UP,      VK_UP,   VK_NEXT,
                            VK_NEXT, VK_PRIOR,    VK_HOME,  VK_END,     VK_LEFT, VK_RIGHT,
                            VK_ADD,  VK_SUBTRACT, VK_SPACE, VK_MULTIPLY};
  std::optional<HeldKey> shift;
  std::optional<HeldKey> control;
  if (dice.OneIn(6)) shift.emplace(VK_SHIFT);
  if (dice.OneIn(8)) control.emplace(VK_CONTROL);
  const WORD key = dice.OneOf(kKeys);
  for (int repeats = dice.OneIn(3) ? 1 + dice.Below(12) : 1; repeats > 0; --repeats) {
    Send(grid, WM_KEYDOWN, key, 1);
  }
  Send(grid, WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
}

void ClickAnywhere(FlexGrid& grid, Dice& dice) {
  std::optional<HeldKey> held;
  if (dice.OneIn(4)) held.emplace(dice.OneIn(2) ? VK_SHIFT : VK_CONTROL);
  const LPARAM point = AnyPoint(grid, dice);
  Send(grid, dice.OneIn(10) ? WM_RBUTTONDOWN : WM_LBUTTONDOWN, MK_LBUTTON, point);
  Send(grid, WM_LBUTTONUP, 0, point);
}

void DragAnywhere(FlexGrid& grid, Dice& dice) {
  Send(grid, WM_LBUTTONDOWN, MK_LBUTTON, AnyPoint(grid, dice));
  for (int moves = 1 + dice.Below(4); moves > 0; --moves) {
    Send(grid, WM_MOUSEMOVE, MK_LBUTTON, AnyPoint(grid, dice));
  }
  if (dice.OneIn(3)) {
    Send(grid, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(20, ClientSize(grid).cy + 30));
    for (int ticks = dice.Below(6); ticks > 0; --ticks) Send(grid, WM_TIMER, 1);
  }
  Send(grid, WM_LBUTTONUP, 0, AnyPoint(grid, dice));
}

/// Along the middle of the header: some of the presses meet a border.
void SizeAColumnByMouse(FlexGrid& grid, Dice& dice) {
  const int width = static_cast<int>(ClientSize(grid).cx);
  for (int x = dice.Below(20); x < width; x += 4) {
    Send(grid, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, 5));
    const bool held = GetCapture() == Window(grid);
    if (held) Send(grid, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(x + dice.Below(90) - 40, 5));
    Send(grid, WM_LBUTTONUP, 0, MAKELPARAM(x, 5));
    if (held && dice.OneIn(2)) return;
  }
}

void TurnTheWheel(FlexGrid& grid, Dice& dice) {
  const int delta = (dice.Below(9) - 4) * WHEEL_DELTA / 2;
  Send(grid, WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(delta)));
}

void UseABar(FlexGrid& grid, Dice& dice) {
  constexpr WORD kRequests[] = {SB_LINEUP,   SB_LINEDOWN, SB_LINEDOWN, SB_PAGEUP,
                                SB_PAGEDOWN, SB_TOP,      SB_BOTTOM};
  const bool across = dice.OneIn(3);
  for (int times = 1 + dice.Below(3); times > 0; --times) {
    Send(grid, across ? WM_HSCROLL : WM_VSCROLL, dice.OneOf(kRequests));
  }
}

void TypeADigit(FlexGrid& grid, Dice& dice) {
  Send(grid, WM_CHAR, static_cast<WPARAM>(L'0' + dice.Below(10)), 1);
}

constexpr Action<FlexGrid> kInputs[] = {
    {"key", PressKey},
    {"key", PressKey},
    {"key", PressKey},
    {"click", ClickAnywhere},
    {"click", ClickAnywhere},
    {"drag", DragAnywhere},
    {"drag a border", SizeAColumnByMouse},
    {"wheel", TurnTheWheel},
    {"bar", UseABar},
    {"type", TypeADigit},
    {"focus", [](FlexGrid& grid, Dice&) { (void)grid.SetFocus(); }},
};

void AddTotals(FlexGrid& grid, Dice& dice) {
  if (dice.OneIn(2)) return grid.Subtotal(viewkit::SubtotalFunction::kClear);
  viewkit::SubtotalOptions options;
  options.group_on = dice.OneIn(3) ? -1 : AnyCol(grid, dice);
  options.total_on = AnyCol(grid, dice);
  options.back = dice.OneOf(kColors);
  options.fore = dice.OneOf(kColors);
  options.bold = dice.OneIn(2);
  options.caption = "%s小计";
  options.total_only = dice.OneIn(2);
  grid.SetSubtotalPosition(dice.OneIn(2) ? viewkit::SubtotalPosition::kAbove
                                         : viewkit::SubtotalPosition::kBelow);
  grid.Subtotal(viewkit::SubtotalFunction::kSum, options);
}

void SizeAColumn(FlexGrid& grid, Dice& dice) {
  const int col = AnyCol(grid, dice);
  if (dice.OneIn(3)) return grid.AutoSize(col);
  grid.SetColWidth(col, dice.OneIn(6) ? 0 : 200 + dice.Below(4000));
}

void ChangeALook(FlexGrid& grid, Dice& dice) {
  FlexGrid::Look look = grid.GetLook();
  if (dice.OneIn(3)) look.outline_bar = 5 - look.outline_bar;
  if (dice.OneIn(3)) look.grid_lines = !look.grid_lines;
  if (dice.OneIn(3)) look.select_back = dice.OneOf(kColors);
  if (dice.OneIn(3)) look.sheet_border = dice.OneOf(kColors);
  grid.SetLook(look);
}

void ChangeACell(FlexGrid& grid, Dice& dice) {
  OnAnyRow(grid, dice, [&](int row) {
    const int col = AnyCol(grid, dice);
    switch (dice.Below(4)) {
      case 0:
        return grid.SetCellForeColor(row, col, dice.OneOf(kColors));
      case 1:
        return grid.SetCellBackColor(row, col, dice.OneOf(kColors));
      case 2:
        return grid.SetCellFontBold(row, col, dice.OneIn(2));
      default:
        return grid.SetTextMatrix(row, col, dice.OneOf(kTexts));
    }
  });
}

void ChangeARow(FlexGrid& grid, Dice& dice) {
  OnAnyRow(grid, dice, [&](int row) {
    switch (dice.Below(4)) {
      case 0:
        return grid.SetRowHidden(row, !grid.RowHidden(row));
      case 1:
        return grid.SetRowHeight(row, dice.OneIn(2) ? 0 : dice.Below(900));
      case 2:
        return grid.SetRowOutlineLevel(row, dice.Below(5));
      default:
        return grid.SetIsSubtotal(row, !grid.IsSubtotal(row));
    }
  });
}

void ShowAllRows(FlexGrid& grid, Dice&) {
  const host::GridUpdate update(grid);
  for (int row = grid.FixedRows(); row < grid.Rows(); ++row) grid.SetRowHidden(row, false);
}

void AddOrRemoveARow(FlexGrid& grid, Dice& dice) {
  if (dice.OneIn(2)) {
    const int row = grid.AddItem();
    if (dice.OneIn(2)) grid.SetTextMatrix(row, 0, "9999");
    return;
  }
  OnAnyRow(grid, dice, [&](int row) {
    if (dice.OneIn(4) && grid.LastRowOfNode(row) - row < 12) return grid.RemoveNode(row);
    grid.RemoveItem(row);
  });
}

void SortByAColumn(FlexGrid& grid, Dice& dice) {
  const int rows = grid.Rows() - 1;
  grid.SortRows(dice.OneIn(2) ? 0 : AnyCol(grid, dice), viewkit::SortOrder::kStringAscending,
                grid.FixedRows(), rows);
}

void Select(FlexGrid& grid, Dice& dice) {
  constexpr viewkit::SelectionMode kModes[] = {viewkit::SelectionMode::kFree,
                                               viewkit::SelectionMode::kByRow,
                                               viewkit::SelectionMode::kListBox};
  if (dice.OneIn(8)) return grid.SetSelectionMode(dice.OneOf(kModes));
  OnAnyRow(grid, dice, [&](int row) {
    if (dice.OneIn(3)) return grid.SetSelected(row, !grid.IsSelected(row));
    grid.SetRow(row);
    if (dice.OneIn(2)) grid.ShowRow(row);
  });
}

void Scroll(FlexGrid& grid, Dice& dice) {
  if (dice.OneIn(4)) return grid.SetLeftCol(AnyCol(grid, dice));
  grid.SetTopRow(dice.OneIn(2) ? grid.TopRow() + dice.Below(5) - 2 : dice.Below(grid.Rows()));
}

void Fold(FlexGrid& grid, Dice& dice) {
  if (dice.OneIn(4)) return grid.Outline(dice.Below(4) - 1);
  OnAnyRow(grid, dice, [&](int row) { grid.SetCollapsed(row, !grid.IsCollapsed(row)); });
}

void ChangeColumns(FlexGrid& grid, Dice& dice) {
  const int col = AnyCol(grid, dice);
  switch (dice.Below(6)) {
    case 0:
      return grid.SetFrozenCols(dice.Below(3));
    case 1:
      return grid.SetFixedCols(dice.OneIn(3) ? 1 : 0);
    case 2:
      return grid.SetMergeCol(col, dice.OneIn(2) && !grid.MergeCol(col));
    case 3:
      return grid.SetColHidden(col, !grid.ColHidden(col));
    case 4:
      return grid.SetColFormat(col, dice.OneIn(2) ? "#,##0.00" : "");
    default:
      return grid.SetColAlignment(col, static_cast<viewkit::Alignment>(dice.Below(10)));
  }
}

void ChangeSeveral(FlexGrid& grid, Dice& dice);

constexpr Action<FlexGrid> kChanges[] = {
    {"cell", ChangeACell},
    {"cell", ChangeACell},
    {"row", ChangeARow},
    {"all shown", ShowAllRows},
    {"rows", AddOrRemoveARow},
    {"columns", ChangeColumns},
    {"width", SizeAColumn},
    {"totals", AddTotals},
    {"sort", SortByAColumn},
    {"select", Select},
    {"select", Select},
    {"scroll", Scroll},
    {"scroll", Scroll},
    {"fold", Fold},
    {"look", ChangeALook},
    {"enabled", [](FlexGrid& grid, Dice& dice) { grid.SetEnabled(!dice.OneIn(4)); }},
    {"several", ChangeSeveral},
};

void ChangeSeveral(FlexGrid& grid, Dice& dice) {
  const host::GridUpdate update(grid);
  for (int times = 2 + dice.Below(2); times > 0; --times) (void)RunOne(GridChanges(), grid, dice);
}

TreeNode* AnyNode(TreeView& tree, Dice& dice) {
  const int count = tree.Nodes().Count();
  return count == 0 ? nullptr : &tree.Nodes().Item(1 + dice.Below(count));
}

template <class Change>
void OnAnyNode(TreeView& tree, Dice& dice, Change change) {
  if (TreeNode* node = AnyNode(tree, dice)) change(*node);
}

constexpr Action<TreeView> kTreeActions[] = {
    {"key in the tree",
     [](TreeView& tree, Dice& dice) {
       constexpr WORD kKeys[] = {VK_DOWN, VK_DOWN, VK_UP,   VK_NEXT,  VK_PRIOR,
                                 VK_HOME, VK_END,  VK_LEFT, VK_RIGHT, VK_MULTIPLY};
       const WORD key = dice.OneOf(kKeys);
       Send(tree, WM_KEYDOWN, key, 1);
       Send(tree, WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
     }},
    {"fold a node",
     [](TreeView& tree, Dice& dice) {
       OnAnyNode(tree, dice, [](TreeNode& node) { node.SetExpanded(!node.Expanded()); });
     }},
    {"select a node",
     [](TreeView& tree, Dice& dice) {
       OnAnyNode(tree, dice, [](TreeNode& node) { node.SetSelected(true); });
     }},
    {"show a node",
     [](TreeView& tree, Dice& dice) {
       OnAnyNode(tree, dice, [&](TreeNode& node) {
         dice.OneIn(2) ? node.EnsureVisible() : tree.ScrollTo(node);
       });
     }},
    {"look of a node",
     [](TreeView& tree, Dice& dice) {
       OnAnyNode(tree, dice, [&](TreeNode& node) {
         TreeNode::Look look = node.GetLook();
         look.bold = dice.OneIn(3);
         look.fore = dice.OneOf(kColors);
         look.back = dice.OneIn(2) ? dice.OneOf(kColors) : viewkit::color::kDefault;
         node.SetLook(look);
       });
     }},
    {"wheel on the tree",
     [](TreeView& tree, Dice& dice) {
       const int delta = (dice.Below(7) - 3) * WHEEL_DELTA;
       Send(tree, WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(delta)));
     }},
};

}  // namespace

std::span<const Action<FlexGrid>> GridInputs() {
  return kInputs;
}

std::span<const Action<FlexGrid>> GridChanges() {
  return kChanges;
}

std::span<const Action<TreeView>> TreeActions() {
  return kTreeActions;
}

}  // namespace tavrix::test
