#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/objects.h"
#include "viewkit/grid/flex_grid.h"
#include "viewkit/layout/layout_file.h"

namespace tavrix::viewkit {

/// Takes a grid's layout out of its file, statement by statement; what fails is left out.
class LayoutReader {
 public:
  /// All of them must outlive the reader.
  LayoutReader(const LayoutFile& file, FlexGrid& grid, host::SystemObject& system)
      : file_(file), grid_(grid), system_(system) {}

  /// Widths alone, or everything that a column has, its share in groups and totals included.
  void ApplyColumns(bool width_only);
  /// Sorts, and notes groups and totals; leaves the columns as they are.
  void ReadColumns();
  /// Totals, by what the columns said, and heights.
  void ApplyRows();
  void ApplyFrozenCols();

 private:
  [[nodiscard]] int ReadColumn(std::string_view section, int col, int fallback) const;
  void ApplyWidth(int col);
  void ApplySort(int col);
  void ApplyMerge(int col);
  void ApplyDataType(int col);
  void ApplyFormat(int col);
  void ApplyAlignment(int col);
  void NoteTotals(int col);
  [[nodiscard]] std::string StoredFormat(int col) const;
  [[nodiscard]] std::string NumberFormat(int col) const;

  void ApplyTotals();
  void ClearTotals();
  void AddGroupTotals();
  void AddGrandTotals();
  [[nodiscard]] bool IsGroupTotal(int row, int first_col) const;
  void TidySingleGroup();
  void TidyGroups();
  void ClearRepeatedTexts(int row);
  [[nodiscard]] int LabelColumn() const;
  void ApplyHeights();

  const LayoutFile& file_;
  FlexGrid& grid_;
  host::SystemObject& system_;
  std::vector<int> groups_;  // columns, in column order
  std::vector<int> totals_;
};

}  // namespace tavrix::viewkit
