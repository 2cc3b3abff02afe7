#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/row_set.h"
#include "viewkit/grid/cell_store.h"
#include "viewkit/grid/cell_styles.h"
#include "viewkit/grid/outline_rows.h"
#include "viewkit/grid/row_array.h"
#include "viewkit/indexing.h"

namespace tavrix::viewkit {

/// All that a grid holds for each of its rows: texts, place in the outline, looks, heights. Rows
/// come, go and change places here and nowhere else, in all of these alike.
///
/// `row` counts the grid's rows, the fixed ones first; `data` counts the rows without them. Both
/// must exist where nothing else is said.
class GridRows {
 public:
  /// A stored height that stands for the default one.
  static constexpr std::uint16_t kDefaultHeight = 0;

  [[nodiscard]] int Fixed() const { return CountOf(header_); }
  [[nodiscard]] int DataRows() const { return outline_.Rows(); }
  [[nodiscard]] int Rows() const { return Fixed() + DataRows(); }
  [[nodiscard]] int Cols() const { return cells_.Columns(); }
  [[nodiscard]] bool IsData(int row) const { return row >= Fixed() && row < Rows(); }
  /// These throw `std::out_of_range`.
  void CheckRow(int row) const;
  void CheckDataRow(int row) const;

  // --- rows that come, go, change places
  /// All of them are data rows.
  void Insert(int data, int count);
  void Erase(int data, int count);
  /// As `RowArray` does.
  void InsertAt(RowSpan before);
  void EraseAt(RowSpan gone);
  void Reorder(const RowOrder& order);
  /// Rows that become fixed keep their texts, and so do fixed rows that become data rows.
  void SetFixed(int rows);
  void SetCols(int cols);
  /// Takes the place of all data rows: plain, shown, of default height and look.
  void Load(host::RowSet&& rows);

  // --- texts
  [[nodiscard]] std::string_view Text(int row, int col) const {
    if (row < Fixed()) return ItemAt(ItemAt(header_, row).cells, col).text;
    return cells_.Text(row - Fixed(), col);
  }
  [[nodiscard]] std::string_view DataText(int data, int col) const {
    return cells_.Text(data, col);
  }
  void SetText(int row, int col, std::string_view text);
  [[nodiscard]] const CellStore& Cells() const { return cells_; }

  // --- the outline, and what is shown
  [[nodiscard]] const OutlineRows& Outline() const { return outline_; }
  [[nodiscard]] OutlineRows& Outline() { return outline_; }
  [[nodiscard]] bool Hidden(int row) const;
  void SetHidden(int row, bool hidden);
  [[nodiscard]] bool IsShown(int row) const;
  /// A row of totals.
  [[nodiscard]] bool IsTotal(int row) const {
    return row >= Fixed() && outline_.Total(row - Fixed()) != 0;
  }
  // As `OutlineRows` answers for data rows; a fixed row is no node.
  [[nodiscard]] bool IsNode(int row) const {
    return row >= Fixed() && outline_.IsNode(row - Fixed());
  }
  [[nodiscard]] bool IsCollapsed(int row) const;
  [[nodiscard]] bool HasRowsBelow(int row) const;
  [[nodiscard]] int Parent(int row) const;
  [[nodiscard]] int LastOfNode(int row) const;
  /// The row at a position among the shown data rows, and how many of these stand above `row`,
  /// which may lie outside.
  [[nodiscard]] int ShownAt(int position) const { return outline_.ShownAt(position) + Fixed(); }
  [[nodiscard]] int ShownBefore(int row) const;
  /// The nearest shown data row after (or before) `row`, which may lie outside; -1 for none.
  [[nodiscard]] int NextShown(int row) const;
  [[nodiscard]] int PreviousShown(int row) const;

  // --- looks and heights
  [[nodiscard]] const CellStyle& Style(int row, int col) const;
  /// True when this changed anything.
  bool SetStyle(int row, int col, const CellStyle& style);
  /// All cells of a data row from `first_col` on.
  void SetRowStyle(int data, int first_col, const CellStyle& style) {
    styles_.SetRow(data, first_col, style);
  }
  /// No data row has a look of its own.
  [[nodiscard]] bool HasPlainStyles() const { return styles_.AllDefault(); }
  /// In twips, or `kDefaultHeight`.
  [[nodiscard]] std::uint16_t StoredHeight(int row) const {
    return row < Fixed() ? ItemAt(header_, row).height : heights_.Get(row - Fixed());
  }
  void SetStoredHeight(int row, std::uint16_t height);
  void SetDataHeights(std::uint16_t height);
  /// No data row has a height of its own.
  [[nodiscard]] bool HasDefaultHeights() const { return heights_.IsBlank(); }

 private:
  struct HeaderCell {
    std::string text;
    CellStyle style;
  };
  struct HeaderRow {
    std::vector<HeaderCell> cells;
    bool hidden = false;
    std::uint16_t height = kDefaultHeight;
  };

  /// Everything that has an element for each data row.
  template <class Change>
  void ForEachStore(const Change& change) {
    change(cells_);
    change(outline_);
    change(styles_);
    change(heights_);
  }

  std::vector<HeaderRow> header_{1};
  CellStore cells_;
  OutlineRows outline_;
  CellStyles styles_;
  RowArray<std::uint16_t> heights_{kDefaultHeight};
};

}  // namespace tavrix::viewkit
