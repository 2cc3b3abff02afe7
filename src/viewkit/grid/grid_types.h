#pragma once

#include <optional>
#include <string>

#include "viewkit/color.h"

namespace tavrix::viewkit {

/// Numbers of these enumerations are the grid's customary ones; layout files hold them.
enum class SelectionMode { kFree = 0, kByRow = 1, kByColumn = 2, kListBox = 3 };
enum class SortOrder {
  kNone = 0,
  kGenericAscending = 1,  ///< numbers before texts, texts without case
  kGenericDescending = 2,
  kNumericAscending = 3,
  kNumericDescending = 4,
  kStringNoCaseAscending = 5,
  kStringNoCaseDescending = 6,
  kStringAscending = 7,  ///< case-sensitive, by UTF-16 code units
  kStringDescending = 8,
};
enum class SubtotalFunction {
  kNone = 0,
  kClear = 1,
  kSum = 2,
  kPercent = 3,
  kCount = 4,
  kAverage = 5,
  kMax = 6,
  kMin = 7
};
/// Where rows of totals go: below their rows, so that the grand total is the grid's last row, or
/// above them.
enum class SubtotalPosition { kBelow = 0, kAbove = 1 };
enum class Alignment {
  kLeftTop = 0,
  kLeftCenter = 1,
  kLeftBottom = 2,
  kCenterTop = 3,
  kCenterCenter = 4,
  kCenterBottom = 5,
  kRightTop = 6,
  kRightCenter = 7,
  kRightBottom = 8,
  kGeneral = 9
};
/// Data types of a column, numbered as Automation's VARTYPE.
enum class ColumnType {
  kEmpty = 0,
  kLong = 3,
  kDouble = 5,
  kCurrency = 6,
  kDate = 7,
  kString = 8,
  kBoolean = 11
};

/// Whether a column of this type holds numbers: one of the above, or another of Automation's.
[[nodiscard]] constexpr bool IsNumeric(ColumnType type) {
  constexpr int kDecimal = 14;
  const int number = static_cast<int>(type);
  return (number >= 2 && number <= static_cast<int>(ColumnType::kCurrency)) || number == kDecimal ||
         (number >= 16 && number <= 21);
}

/// What a total is made over and how its row looks.
struct SubtotalOptions {
  /// Rows that follow one another with the same text in this column are a group and get a total of
  /// their own; -1 makes one over the whole grid.
  int group_on = -1;
  /// The column that is totalled.
  int total_on = 0;
  /// The number's format as in `ColFormat`; empty for the plain number, which the column's own
  /// format then displays.
  std::string format;
  Color back = color::kDefault;
  Color fore = color::kDefault;
  bool bold = false;
  /// Stands in column `group_on`, that of the grand total in the first column that is not fixed.
  /// "%s" gives the group's own text.
  std::string caption = "%s";
  /// The first of the columns, up to `group_on`, in which the rows of a group must agree. Without
  /// it these are `group_on` itself and the columns that have been grouped on before.
  std::optional<int> match_from;
  /// The row does not repeat the texts of the other columns in which its group agrees.
  bool total_only = false;
};

/// Colours of the grid as a whole, and what it draws and lets the user do.
struct GridLook {
  Color back = color::kWindow;
  Color back_empty = color::kWindow;
  Color sheet_border = color::kWindow;
  Color fore = color::kWindowText;
  Color select_back = color::kHighlight;
  Color select_fore = color::kHighlightText;
  bool grid_lines = true;
  bool resize_columns = true;
  bool resize_rows = false;
  int outline_bar = 0;  ///< 0 none, 5 symbols with tree lines and a leaf mark
  friend bool operator==(const GridLook&, const GridLook&) = default;
};

}  // namespace tavrix::viewkit
