// Rows of a layout: totals, heights, frozen columns.

#include "host/report.h"
#include "viewkit/layout/layout_reader.h"

namespace tavrix::viewkit {

using host::IgnoreErrors;

namespace {

constexpr Color kGroupFore = 128;  // dark red; it also tells a group's total from other rows
constexpr Color kGrandBack = 0xFFFF80;
constexpr const char* kGroupCaption = "小计";
constexpr const char* kGrandCaption = "合计";
constexpr int kWholeGrid = -1;

}  // namespace

void LayoutReader::ApplyRows() {
  ApplyTotals();
  ApplyHeights();
}

void LayoutReader::ApplyTotals() {
  IgnoreErrors([&] {
    if (file_.ReadFlag(layout::kGrid, layout::kClearTotals, false)) ClearTotals();
  });
  if (totals_.empty()) return;
  ClearTotals();
  AddGroupTotals();
  IgnoreErrors([&] {
    if (groups_.size() == 1) {
      TidySingleGroup();
    } else if (groups_.size() > 1) {
      TidyGroups();
    }
  });
  AddGrandTotals();
}

void LayoutReader::ClearTotals() {
  IgnoreErrors([&] { grid_.Subtotal(SubtotalFunction::kClear); });
  IgnoreErrors([&] { grid_.SetSubtotalPosition(SubtotalPosition::kBelow); });
}

void LayoutReader::AddGroupTotals() {
  for (const int group : groups_) {
    SubtotalOptions options;
    options.group_on = group;
    options.fore = kGroupFore;
    options.bold = true;
    options.caption = std::string("%s") + kGroupCaption;
    if (groups_.size() == 1) {
      options.match_from = group;
      options.total_only = true;
    }
    for (const int total : totals_) {
      options.total_on = total;
      IgnoreErrors([&] { grid_.Subtotal(SubtotalFunction::kSum, options); });
    }
  }
}

bool LayoutReader::IsGroupTotal(int row, int first_col) const {
  return grid_.CellForeColor(row, first_col, row, grid_.Cols() - 1) == kGroupFore;
}

/// Repeats the group's name in the first column, because its own may be far to the right.
void LayoutReader::TidySingleGroup() {
  const int caption = grid_.FixedCols();
  for (int row = grid_.FixedRows(); row < grid_.Rows(); ++row) {
    if (!IsGroupTotal(row, caption)) continue;
    grid_.SetTextMatrix(row, caption, std::string(grid_.TextMatrix(row, groups_.front())));
  }
}

void LayoutReader::TidyGroups() {
  const int rows = grid_.Rows();
  const int last = grid_.Cols() - 1;
  for (int row = grid_.FixedRows(); row < rows; ++row) {
    const bool may_be_total = grid_.CellForeColor(row, last) == kGroupFore;  // most rows are none
    if (may_be_total) ClearRepeatedTexts(row);
  }
}

/// Clears what a row of totals repeats of its rows in the columns before that of its group. Only
/// the first group that fits counts; one on column 0 has nothing before it.
void LayoutReader::ClearRepeatedTexts(int row) {
  for (const int group : groups_) {
    if (!IsGroupTotal(row, group)) continue;
    for (int col = grid_.FixedCols(); col < group; ++col) grid_.SetTextMatrix(row, col, "");
    return;
  }
}

void LayoutReader::AddGrandTotals() {
  SubtotalOptions options;
  options.group_on = kWholeGrid;
  options.back = kGrandBack;
  options.bold = true;
  options.caption = kGrandCaption;
  for (const int total : totals_) {
    options.total_on = total;
    IgnoreErrors([&] { grid_.Subtotal(SubtotalFunction::kSum, options); });
  }
  // Where the leading columns are hidden the caption goes into the first one that is shown.
  IgnoreErrors([&] {
    const int last = grid_.Rows() - 1;
    const int label = LabelColumn();
    if (label == grid_.FixedCols() || !grid_.IsTotalRow(last)) return;
    grid_.SetTextMatrix(last, label, kGrandCaption);
  });
}

int LayoutReader::LabelColumn() const {
  for (int col = grid_.FixedCols(); col < grid_.Cols(); ++col) {
    if (!grid_.ColHidden(col) && grid_.ColWidth(col) > 0) return col;
  }
  return grid_.FixedCols();
}

void LayoutReader::ApplyHeights() {
  const int fixed = grid_.FixedRows();
  IgnoreErrors([&] {
    const int now = grid_.Rows() > fixed ? grid_.RowHeight(fixed) : 0;
    grid_.SetDataRowHeights(file_.ReadNumber(layout::kGrid, layout::kRowHeight, now));
  });
  if (fixed == 0) return;
  IgnoreErrors([&] {
    const int height = file_.ReadNumber(layout::kGrid, layout::kFixedRowHeight, grid_.RowHeight(0));
    // A height of its own costs memory for all rows.
    for (int row = 0; row < fixed; ++row) {
      if (grid_.RowHeight(row) != height) grid_.SetRowHeight(row, height);
    }
  });
}

void LayoutReader::ApplyFrozenCols() {
  IgnoreErrors([&] {
    const int cols = file_.ReadNumber(layout::kGrid, layout::kFrozenCols, grid_.FrozenCols());
    if (cols >= 0) grid_.SetFrozenCols(cols);  // less than none is damage rather than a wish
  });
}

}  // namespace tavrix::viewkit
