#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "host/row_set.h"
#include "viewkit/control.h"
#include "viewkit/grid/grid_columns.h"
#include "viewkit/grid/grid_rows.h"
#include "viewkit/grid/grid_selection.h"
#include "viewkit/grid/grid_viewport.h"

namespace tavrix::viewkit {

/// What has changed since an update began.
struct GridChanges {
  bool content = false;
  bool columns = false;
  bool settle = false;  ///< what is seen must be worked out before the events
  int first_row = -1;   ///< of the rows that have changed
  int last_row = -1;
  std::vector<int> collapsed;  ///< nodes, -1 for the whole outline

  void Content() { content = true; }
  void Structure() { content = settle = true; }
  void Columns() { columns = settle = true; }
  void ColumnLook() { columns = true; }
  void Row(int row) {
    first_row = first_row < 0 ? row : std::min(first_row, row);
    last_row = std::max(last_row, row);
  }
};

/// The parts of a grid, and how a change of one is followed by the others.
struct GridModel {
  explicit GridModel(const Control& owner)
      : grid(owner), selection(rows), viewport(owner, rows, columns) {}

  /// A header cell shows its text, another one what its column makes of it.
  [[nodiscard]] std::string DisplayText(int row, int col) const;

  // Data rows that come, go or change places; see `GridRows`.
  void InsertRows(int data, int count);
  void EraseRows(int data, int count);
  void InsertRowsAt(RowSpan before);
  void EraseRowsAt(RowSpan gone);
  void ReorderRows(const RowOrder& order);
  void SetFixedRows(int count);
  void SetCols(int count);
  void LoadRows(host::RowSet&& loaded);
  /// No row is current or selected, nothing is scrolled.
  void ForgetRows();

  /// A current row that is hidden by it gives way to the node.
  void SetCollapsed(int row, bool collapsed);

  const Control& grid;
  GridRows rows;
  GridColumns columns;
  GridSelection selection;
  GridViewport viewport;
  GridLook look;
  GridChanges changes;

 private:
  template <class Where>
  void RowsMoved(const Where& where);
};

}  // namespace tavrix::viewkit
