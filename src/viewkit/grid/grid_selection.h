#pragma once

#include <vector>

#include "viewkit/grid/grid_rows.h"
#include "viewkit/grid/grid_types.h"
#include "viewkit/grid/row_place.h"
#include "viewkit/grid/row_selection.h"

namespace tavrix::viewkit {

/// How a row comes to be the current one, in the ways of the system's extended list box.
enum class Pick {
  kOnly,        ///< it alone is selected
  kToggle,      ///< selected if it was not, the others stay
  kExtend,      ///< all rows from the anchor to it are selected, and no other
  kExtendMore,  ///< as `kExtend`, but the others stay
  kFocus        ///< the selection stays as it is
};

/// The current cell and the selected rows of a grid, counted as its rows are.
class GridSelection {
 public:
  explicit GridSelection(const GridRows& rows) : rows_(rows) {}

  [[nodiscard]] int Row() const { return row_; }
  [[nodiscard]] int Col() const { return col_; }
  void SetCol(int col) { col_ = col; }
  [[nodiscard]] const RowSelection& Selected() const { return selected_; }
  /// Another number after every change of the selected rows.
  [[nodiscard]] unsigned Version() const { return version_; }

  [[nodiscard]] SelectionMode Mode() const { return mode_; }
  void SetMode(SelectionMode mode);
  [[nodiscard]] bool AllowsSelection() const { return allow_selection_; }
  void SetAllowSelection(bool allow);
  [[nodiscard]] bool IsListBox() const { return mode_ == SelectionMode::kListBox; }
  /// Whether the user can select several rows.
  [[nodiscard]] bool AllowsSeveral() const { return IsListBox() || allow_selection_; }

  /// A row that is no data row selects none.
  void MakeCurrent(int row, Pick pick);
  void SetSelected(int row, bool selected);
  /// All shown rows; the current one stays.
  void SelectShown();
  /// No data row is current, none selected.
  void ForgetRows();

  /// `where` gives the `RowPlace` of a row. A current row that is gone gives way to the next one.
  template <class Where>
  void Follow(const Where& where) {
    const RowPlace current = where(row_);
    const RowPlace anchor = where(anchor_);
    row_ = current.row;
    anchor_ = anchor.gone ? -1 : anchor.row;
    Changed(selected_.Follow(where));
    if (current.gone) GoOnFrom(row_);
  }

 private:
  void Changed(bool changed) { version_ += changed ? 1U : 0U; }
  void GoOnFrom(int place_of_lost_row);
  [[nodiscard]] std::vector<int> ShownBetween(int row, int other) const;

  const GridRows& rows_;
  int row_ = 0;
  int col_ = -1;
  int anchor_ = -1;  // where a range of selected rows begins; -1: at the current row
  RowSelection selected_;
  unsigned version_ = 0;
  SelectionMode mode_ = SelectionMode::kFree;
  bool allow_selection_ = true;
};

}  // namespace tavrix::viewkit
