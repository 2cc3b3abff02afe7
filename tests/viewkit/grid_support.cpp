#include "viewkit/grid_support.h"

#include <gtest/gtest.h>

namespace tavrix::viewkit {

host::RowSet RowSetOf(const Texts& rows) {
  host::RowSet set(rows.empty() ? 0 : rows.front().size());
  for (const auto& row : rows) {
    for (const auto& text : row) set.AppendText(text);
  }
  return set;
}

void Fill(FlexGrid& grid, const Texts& rows) {
  if (!rows.empty()) grid.SetCols(static_cast<int>(rows.front().size()));
  grid.LoadRows(RowSetOf(rows));
}

void FillOutline(FlexGrid& grid, const std::vector<int>& levels) {
  Texts rows;
  for (std::size_t row = 0; row < levels.size(); ++row) rows.push_back({"r" + std::to_string(row)});
  Fill(grid, rows);
  for (std::size_t row = 0; row < levels.size(); ++row) {
    if (levels[row] < 0) continue;
    grid.SetIsSubtotal(static_cast<int>(row) + 1, true);
    grid.SetRowOutlineLevel(static_cast<int>(row) + 1, levels[row]);
  }
}

std::vector<std::string> ColumnOf(const FlexGrid& grid, int col) {
  std::vector<std::string> texts;
  for (int row = grid.FixedRows(); row < grid.Rows(); ++row) {
    texts.emplace_back(grid.TextMatrix(row, col));
  }
  return texts;
}

std::vector<std::string> ShownColumn(const FlexGrid& grid, int col) {
  std::vector<std::string> texts;
  for (int row = grid.FixedRows(); row < grid.Rows(); ++row) {
    if (grid.IsShown(row)) texts.emplace_back(grid.TextMatrix(row, col));
  }
  return texts;
}

std::vector<int> SelectionOf(const FlexGrid& grid) {
  std::vector<int> rows;
  for (int n = 0; n < grid.SelectedRows(); ++n) rows.push_back(grid.SelectedRow(n));
  return rows;
}

namespace {

bool Below(const FlexGrid& grid, int row, int node) {
  if (!grid.IsNode(row)) return true;
  return grid.RowOutlineLevel(row) > grid.RowOutlineLevel(node);
}

int PlainParent(const FlexGrid& grid, int row) {
  for (int node = row - 1; node >= grid.FixedRows(); --node) {
    if (grid.IsNode(node) && Below(grid, row, node)) return node;
  }
  return -1;
}

bool PlainShown(const FlexGrid& grid, int row) {
  if (grid.RowHidden(row)) return false;
  for (int node = PlainParent(grid, row); node >= 0; node = PlainParent(grid, node)) {
    if (grid.IsCollapsed(node)) return false;
  }
  return true;
}

void CheckNode(const FlexGrid& grid, int row) {
  int last = row;
  while (grid.IsNode(row) && last + 1 < grid.Rows() && Below(grid, last + 1, row)) ++last;
  EXPECT_EQ(grid.LastRowOfNode(row), last) << row;
  EXPECT_EQ(grid.HasRowsBelow(row), last > row) << row;
  int first = -1;
  int children = 0;
  for (int child = last; child > row; --child) {
    if (!grid.IsNode(child) || PlainParent(grid, child) != row) continue;
    first = child;
    ++children;
  }
  EXPECT_EQ(grid.FirstChildRow(row), first) << row;
  EXPECT_EQ(grid.ChildCount(row), children) << row;
  EXPECT_EQ(grid.ParentRow(row), PlainParent(grid, row)) << row;
  EXPECT_TRUE(grid.IsNode(row) || !grid.IsCollapsed(row)) << row;
  EXPECT_EQ(grid.IsSubtotal(row), grid.IsNode(row) || grid.IsTotalRow(row)) << row;
}

void CheckScroll(const FlexGrid& grid) {
  const int top = grid.TopRow();
  if (grid.ShownRows() == 0) {
    EXPECT_EQ(top, grid.FixedRows());
    return;
  }
  EXPECT_TRUE(top >= grid.FixedRows() && grid.IsShown(top)) << top;
  EXPECT_LE(grid.LeftCol(), std::max(grid.Cols() - 1, 0));
}

void CheckSelection(const FlexGrid& grid) {
  int count = 0;
  for (int row = grid.FixedRows(); row < grid.Rows(); ++row) {
    if (!grid.IsSelected(row)) continue;
    EXPECT_EQ(grid.SelectedRow(count), row);
    ++count;
  }
  EXPECT_EQ(grid.SelectedRows(), count);
  EXPECT_LT(grid.Row(), grid.Rows());
}

}  // namespace

void CheckInvariants(const FlexGrid& grid) {
  int shown = 0;
  int before = -1;
  for (int row = grid.FixedRows(); row < grid.Rows(); ++row) {
    CheckNode(grid, row);
    const bool is_shown = PlainShown(grid, row);
    EXPECT_EQ(grid.IsShown(row), is_shown) << row;
    EXPECT_EQ(grid.ShownPosition(row), is_shown ? shown : -1) << row;
    EXPECT_EQ(grid.PreviousShownRow(row), before) << row;
    if (!is_shown) continue;
    EXPECT_EQ(grid.RowAtShownPosition(shown), row);
    if (before >= 0) {
      EXPECT_EQ(grid.NextShownRow(before), row);
    }
    before = row;
    ++shown;
  }
  EXPECT_EQ(grid.ShownRows(), shown);
  CheckScroll(grid);
  CheckSelection(grid);
}

GridListener::GridListener(FlexGrid& grid) : grid_(grid) {
  grid.SetPeer(this);
  grid.RowColChange.Add([this] { heard_.push_back("RowColChange"); });
  grid.SelChange.Add([this] { heard_.push_back("SelChange"); });
  grid.AfterScroll.Add([this] { heard_.push_back("AfterScroll"); });
  grid.DoubleClick.Add([this] { heard_.push_back("DoubleClick"); });
  grid.AfterCollapse.Add(
      [this](int node) { heard_.push_back("AfterCollapse " + std::to_string(node)); });
}

GridListener::~GridListener() {
  grid_.SetPeer(nullptr);
}

void GridListener::Update(const Change& change) {
  constexpr const char* kNames[] = {"bounds",  "state",     "content", "rows",
                                    "columns", "selection", "scroll"};
  std::string text = kNames[static_cast<int>(change.kind)];
  if (change.kind == Change::Kind::kRows) {
    text += " " + std::to_string(change.first) + "-" + std::to_string(change.last);
  }
  heard_.push_back(text);
}

}  // namespace tavrix::viewkit
