#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "viewkit/grid/grid_types.h"
#include "viewkit/indexing.h"

namespace tavrix::viewkit {

/// What a grid holds for each of its columns, and which of them are fixed, frozen, the outline's.
class GridColumns {
 public:
  static constexpr int kDefaultWidth = 960;

  struct Column {
    int width = kDefaultWidth;  ///< twips
    int fitted = 0;             ///< the width that `AutoSize` has found for it; 0: none
    bool hidden = false;
    bool merge = false;
    Alignment alignment = Alignment::kGeneral;
    Alignment fixed_alignment = Alignment::kGeneral;
    ColumnType type = ColumnType::kEmpty;
    std::string format;
  };

  [[nodiscard]] int Count() const { return CountOf(columns_); }
  /// New columns are plain; fixed and frozen columns are no more than there are.
  void SetCount(int count);
  /// These throw `std::out_of_range` where there is no such column.
  void Check(int col) const;
  [[nodiscard]] const Column& At(int col) const;
  [[nodiscard]] Column& At(int col);

  /// 0 for a hidden column. `col` must exist.
  [[nodiscard]] int ShownWidth(int col) const {
    const Column& column = ItemAt(columns_, col);
    return column.hidden ? 0 : column.width;
  }

  [[nodiscard]] int Fixed() const { return fixed_; }
  [[nodiscard]] int Frozen() const { return frozen_; }
  /// Held to the columns there are.
  void SetFixed(int cols);
  /// Held to the columns that are not fixed.
  void SetFrozen(int cols);
  /// The first column behind fixed and frozen ones.
  [[nodiscard]] int FirstScrolled() const { return std::min(fixed_ + frozen_, Count()); }

  /// The column that shows the outline; it may no longer exist.
  [[nodiscard]] int Outline() const { return outline_; }
  void SetOutline(int col) { outline_ = col; }

 private:
  std::vector<Column> columns_;
  int fixed_ = 0;
  int frozen_ = 0;
  int outline_ = 0;
};

}  // namespace tavrix::viewkit
