#include "book/host/grid_navigator.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <utility>

#include "host/grid_update.h"
#include "host/text.h"

namespace desk::book {

namespace {

constexpr int kFirstColumn = 0;

std::string SearchText(const host::Value& data) {
  return std::string(host::Trimmed(Folded(data.ToText())));
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

bool IsDataRow(const host::Grid& grid, int row) {
  return row >= grid.FixedRows() && row < grid.Rows();
}

std::vector<int> VisibleColumns(const host::Grid& grid) {
  std::vector<int> columns;
  for (int col = 0; col < grid.Cols(); ++col) {
    if (!grid.ColHidden(col)) columns.push_back(col);
  }
  return columns;
}

int KeyOf(const host::Grid& grid) {
  constexpr int kOutsideArrays = -1;
  return grid.Index().value_or(kOutsideArrays);
}

}  // namespace

/// What is looked for, and the columns that it is looked for in.
class GridSearch::Pattern {
 public:
  Pattern(const host::Grid& grid, const std::string& text, const Unseen& unseen)
      : text_(text), columns_(VisibleColumns(grid)) {
    if (unseen) unseen_ = unseen(text_);
  }
  [[nodiscard]] bool Matches(const host::Grid& grid, int row) const {
    if (grid.IsTotalRow(row)) return false;
    const bool seen = std::ranges::any_of(
        columns_, [&](int col) { return text_.FoundIn(grid.TextMatrix(row, col)); });
    return seen || MatchesUnseen(grid, row);
  }

 private:
  [[nodiscard]] bool MatchesUnseen(const host::Grid& grid, int row) const {
    return !unseen_.empty() &&
           std::ranges::binary_search(unseen_, grid.TextMatrix(row, kFirstColumn), std::less<>());
  }

  FoldedPattern text_;
  std::vector<int> columns_;
  std::vector<std::string> unseen_;
};

/// What a filter leaves; -1 for none.
struct GridSearch::Shown {
  int first_row = -1;
  int first_match = -1;
};

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
  *tally_ = {};
  if (sought_.empty() || grid.Rows() <= grid.FixedRows()) return false;
  const int current = grid.Row();
  int first = -1;
  int next = -1;
  for (const int row : MatchesOf(grid)) {
    if (grid.RowHidden(row)) continue;
    ++tally_->matches;
    if (first < 0) first = row;
    if (next >= 0 || row <= current) continue;
    next = row;
    tally_->position = tally_->matches;
  }
  if (first < 0) return false;
  if (next < 0) tally_->position = 1;
  const host::GridUpdate update(grid);
  const int found = next < 0 ? first : next;
  ExpandAncestors(grid, found);
  return Select(grid, found);
}

const std::vector<int>& GridSearch::MatchesOf(const host::Grid& grid) {
  Matches now{sought_, KeyOf(grid), grid.TextVersion(), VisibleColumns(grid), {}};
  if (now.version != 0 && now.text == matches_.text && now.grid == matches_.grid &&
      now.version == matches_.version && now.columns == matches_.columns) {
    return matches_.rows;
  }
  const Pattern pattern = PatternFor(grid, sought_);
  for (int row = grid.FixedRows(); row < grid.Rows(); ++row) {
    if (pattern.Matches(grid, row)) now.rows.push_back(row);
  }
  matches_ = std::move(now);
  return matches_.rows;
}

bool GridSearch::Filter(host::Grid& grid, const host::Value& data) {
  *tally_ = {};
  const std::string text = SearchText(data);
  const host::GridUpdate update(grid);
  if (text.empty()) {
    ShowAll(grid);
    return true;
  }
  const Shown shown = ShowMatches(grid, PatternFor(grid, text));
  if (shown.first_match < 0) return false;
  const int row = grid.Row();
  if (IsDataRow(grid, row) && grid.IsShown(row)) return Select(grid, row);
  grid.SetRow(shown.first_match);
  // The way to the first match shows with it.
  grid.SetTopRow(shown.first_row);
  return Select(grid, shown.first_match);
}

GridSearch::Pattern GridSearch::PatternFor(const host::Grid& grid, const std::string& text) const {
  return Pattern(grid, text, unseen_);
}

/// From the last row up, so that a node comes after all that lies below it.
GridSearch::Shown GridSearch::ShowMatches(host::Grid& grid, const Pattern& pattern) {
  std::vector<std::string>& opened = opened_[KeyOf(grid)];
  Shown shown;
  int wanted_below = 0;  // nodes of a lower level than this lie above a row that is shown
  for (int row = grid.Rows() - 1; row >= grid.FixedRows(); --row) {
    const int level = LevelOf(grid, row);
    const bool match = pattern.Matches(grid, row);
    const bool ancestor = level < wanted_below && !grid.IsTotalRow(row);
    grid.SetRowHidden(row, !match && !ancestor);
    if (ancestor && grid.IsCollapsed(row)) {
      opened.emplace_back(grid.TextMatrix(row, kFirstColumn));
      grid.SetCollapsed(row, false);
    }
    if (match) {
      shown.first_match = row;
      ++tally_->matches;
    }
    if (!match && !ancestor) continue;
    wanted_below = level;
    shown.first_row = row;
  }
  return shown;
}

void GridSearch::ShowAll(host::Grid& grid) {
  for (int row = grid.FixedRows(); row < grid.Rows(); ++row) grid.SetRowHidden(row, false);
  CloseOpened(grid);
  const int row = grid.Row();
  if (!IsDataRow(grid, row)) return;
  ExpandAncestors(grid, row);
  if (!grid.IsInView(row)) grid.SetTopRow(row);
}

void GridSearch::CloseOpened(host::Grid& grid) {
  std::vector<std::string> opened = std::exchange(opened_[KeyOf(grid)], {});
  if (opened.empty()) return;
  std::ranges::sort(opened);
  const int current = grid.Row();
  int level = IsDataRow(grid, current) ? LevelOf(grid, current) : 0;
  for (int row = grid.Rows() - 1; row >= grid.FixedRows(); --row) {
    if (row < current && level > 0 && LevelOf(grid, row) < level) {  // the way to the current row
      level = LevelOf(grid, row);
      continue;
    }
    if (grid.IsCollapsed(row)) continue;
    const std::string_view code = grid.TextMatrix(row, kFirstColumn);
    if (std::ranges::binary_search(opened, code, std::less<>())) grid.SetCollapsed(row, true);
  }
}

}  // namespace desk::book
