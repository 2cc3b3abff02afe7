#include "book/grid_navigator.h"

#include <algorithm>
#include <limits>

#include "host/grid_update.h"
#include "host/text.h"

namespace desk::book {

namespace {

/// A text, and the columns that it is looked for in.
class Pattern {
 public:
  Pattern(const host::Grid& grid, std::string_view text) : text_(text) {
    for (int col = 0; col < grid.Cols(); ++col) {
      if (!grid.ColHidden(col)) columns_.push_back(col);
    }
  }
  [[nodiscard]] bool Matches(const host::Grid& grid, int row) const {
    if (grid.IsTotalRow(row)) return false;
    return std::ranges::any_of(columns_,
                               [&](int col) { return text_.IsIn(grid.TextMatrix(row, col)); });
  }

 private:
  host::CaselessText text_;
  std::vector<int> columns_;
};

std::string SearchText(const host::Value& data) {
  return std::string(host::Trimmed(data.ToText()));
}

/// A row that is no node lies below every node above it.
int LevelOf(const host::Grid& grid, int row) {
  return grid.IsSubtotal(row) ? grid.RowOutlineLevel(row) : std::numeric_limits<int>::max();
}

void ExpandAncestors(host::Grid& grid, int row) {
  int level = LevelOf(grid, row);
  for (int above = row - 1; above >= grid.FixedRows() && level > 0; --above) {
    if (LevelOf(grid, above) >= level) continue;
    level = LevelOf(grid, above);
    grid.SetCollapsed(above, false);
  }
}

bool Select(host::Grid& grid, int row) {
  grid.SetRow(row);
  if (!grid.IsInView(row)) grid.SetTopRow(row);
  return true;
}

/// Selects the first shown row from `row` on, in steps of `step`.
bool SelectShown(host::Grid& grid, int row, int step) {
  for (; row >= grid.FixedRows() && row < grid.Rows(); row += step) {
    if (grid.IsShown(row)) return Select(grid, row);
  }
  return false;
}

int FindRow(const host::Grid& grid, const Pattern& pattern) {
  const int first = grid.FixedRows();
  const int count = grid.Rows() - first;
  const int start = std::max(grid.Row(), first - 1) + 1 - first;
  for (int i = 0; i < count; ++i) {
    const int row = first + (start + i) % count;
    if (!grid.RowHidden(row) && pattern.Matches(grid, row)) return row;
  }
  return -1;
}

void ShowAll(host::Grid& grid) {
  for (int row = grid.FixedRows(); row < grid.Rows(); ++row) grid.SetRowHidden(row, false);
}

/// From the last row up, so that a node comes after all that lies below it. Gives the first match.
int ShowMatches(host::Grid& grid, const Pattern& pattern) {
  int first_match = -1;
  int wanted_below = 0;  // nodes of a lower level than this lie above a row that is shown
  for (int row = grid.Rows() - 1; row >= grid.FixedRows(); --row) {
    const int level = LevelOf(grid, row);
    const bool match = pattern.Matches(grid, row);
    const bool ancestor = level < wanted_below && !grid.IsTotalRow(row);
    grid.SetRowHidden(row, !match && !ancestor);
    if (ancestor) grid.SetCollapsed(row, false);
    if (match) first_match = row;
    if (match || ancestor) wanted_below = level;
  }
  return first_match;
}

}  // namespace

bool GridSearch::MoveTop(host::Grid& grid) {
  return SelectShown(grid, grid.FixedRows(), 1);
}

bool GridSearch::MoveBottom(host::Grid& grid) {
  return SelectShown(grid, grid.Rows() - 1, -1);
}

bool GridSearch::MovePrevious(host::Grid& grid) {
  return SelectShown(grid, grid.Row() - 1, -1);
}

bool GridSearch::MoveNext(host::Grid& grid) {
  return SelectShown(grid, std::max(grid.Row() + 1, grid.FixedRows()), 1);
}

bool GridSearch::Find(host::Grid& grid, const host::Value& data) {
  sought_ = SearchText(data);
  return FindNext(grid);
}

bool GridSearch::FindNext(host::Grid& grid) {
  if (sought_.empty() || grid.Rows() <= grid.FixedRows()) return false;
  const int row = FindRow(grid, Pattern(grid, sought_));
  if (row < 0) return false;
  const host::GridUpdate update(grid);
  ExpandAncestors(grid, row);
  return Select(grid, row);
}

bool GridSearch::Filter(host::Grid& grid, const host::Value& data) {
  const std::string text = SearchText(data);
  const host::GridUpdate update(grid);
  if (text.empty()) {
    ShowAll(grid);
    return true;
  }
  const int match = ShowMatches(grid, Pattern(grid, text));
  if (match < 0) return false;
  const int row = grid.Row();
  const bool stays = row >= grid.FixedRows() && row < grid.Rows() && grid.IsShown(row);
  return stays || Select(grid, match);
}

}  // namespace desk::book
