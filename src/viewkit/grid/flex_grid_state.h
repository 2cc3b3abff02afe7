#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "viewkit/grid/cell_store.h"
#include "viewkit/grid/cell_styles.h"
#include "viewkit/grid/flex_grid.h"
#include "viewkit/grid/grid_totals.h"
#include "viewkit/grid/outline_rows.h"
#include "viewkit/grid/row_array.h"
#include "viewkit/grid/row_selection.h"

namespace tavrix::viewkit {

/// What a grid is made of. Members named "data" count rows without the header.
struct FlexGrid::State {
  explicit State(FlexGrid& owner) : grid(owner) {}

  struct HeaderRow {
    std::vector<std::string> texts;
    bool hidden = false;
  };
  struct Column {
    int width = kDefaultColWidth;
    int fitted = 0;  // the width that `AutoSize` has found for it; 0: none
    bool hidden = false;
    bool merge = false;
    Alignment alignment = Alignment::kGeneral;
    Alignment fixed_alignment = Alignment::kGeneral;
    ColumnType type = ColumnType::kEmpty;
    std::string format;
  };
  /// How a row comes to be the current one, in the ways of the system's extended list box.
  enum class Pick { kOnly, kToggle, kExtend, kExtendMore, kFocus };

  // --- places
  [[nodiscard]] int Fixed() const { return static_cast<int>(header.size()); }
  [[nodiscard]] int DataRows() const { return outline.Rows(); }
  [[nodiscard]] int Rows() const { return Fixed() + DataRows(); }
  [[nodiscard]] int Cols() const { return static_cast<int>(columns.size()); }
  [[nodiscard]] bool IsData(int any_row) const { return any_row >= Fixed() && any_row < Rows(); }
  [[nodiscard]] std::string_view DataText(int data_row, int any_col) const {
    return cells.Text(static_cast<std::size_t>(data_row), static_cast<std::size_t>(any_col));
  }
  /// These throw `std::out_of_range`.
  void CheckRow(int row) const;
  void CheckCol(int col) const;
  void CheckDataRow(int row) const;
  [[nodiscard]] Column& At(int col);

  // --- rows as a whole
  void InsertRows(int data_row, int count);
  void EraseRows(int data_row, int count);
  void MoveRows(std::vector<std::uint32_t> order, int data_first);
  [[nodiscard]] std::vector<std::uint32_t> OrderBetweenTotals(int col, SortOrder order,
                                                              int data_first, int count) const;
  void CopyRow(int data_from, int data_to);
  /// `before` and `gone`, data rows, ascend; see `RowArray`.
  void InsertRowsAt(const std::vector<std::uint32_t>& before);
  void EraseRowsAt(const std::vector<std::uint32_t>& gone);
  void GoOnFrom(int place_of_lost_row);
  void RowsGone(int first, int count);
  void RowsCame(int first, int count);
  void ForgetRows();

  // --- totals (flex_grid_totals.cpp)
  [[nodiscard]] bool HasTotals() const;
  void ClearTotals();
  void AddTotals(SubtotalFunction function, const SubtotalOptions& options);
  [[nodiscard]] bool EnsureTotalRows(GridTotals::Level& level);
  [[nodiscard]] int RowOfGroup(const GridTotals::Level& level, std::uint32_t data_row) const;
  void WriteTotalTexts(const GridTotals::Level& level, const SubtotalOptions& options);
  void WriteTotals(const GridTotals::Level& level, SubtotalFunction function,
                   const SubtotalOptions& options);

  // --- heights, widths, scrolling (flex_grid_scroll.cpp)
  [[nodiscard]] int DefaultHeight() const;
  [[nodiscard]] int Height(int row) const;
  [[nodiscard]] int ShownWidth(int col) const;
  [[nodiscard]] int BodyHeight() const;
  [[nodiscard]] int BodyWidth() const;
  /// Shown rows from `position` on, stepwise by 1 or -1, that fit into the body.
  [[nodiscard]] int RowsThatFit(int position, int step) const;
  /// The nearest shown row at or below `row` that can be the top row; `Fixed` for the first one and
  /// when there is none.
  [[nodiscard]] int TopFor(int row) const;
  /// As `TopFor`, for a row above: the nearest shown row at or above it.
  [[nodiscard]] int TopAbove(int row) const;
  [[nodiscard]] int TopAt(int position) const;
  [[nodiscard]] int FirstScrolledCol() const { return std::min(fixed_cols + frozen_cols, Cols()); }
  [[nodiscard]] int LeftFor(int col) const;
  void ScrollToShow(int row);

  // --- selection (flex_grid_selection.cpp)
  void SelectionChanged(bool changed) { selection_version += changed ? 1U : 0U; }
  void MakeCurrent(int next, Pick pick);
  [[nodiscard]] std::vector<int> ShownBetween(int row, int other) const;
  [[nodiscard]] bool SeveralRows() const {
    return mode == viewkit::SelectionMode::kListBox || allow_selection;
  }

  // --- the user's keys (flex_grid_input.cpp)
  void Move(int next, Modifiers modifiers);
  void MoveBy(int rows, Modifiers modifiers);
  void MoveByPage(int direction, Modifiers modifiers);
  void MoveInTree(bool left_key, Modifiers modifiers);
  void ScrollSideways(int step);
  bool HandleSelectAll(Key key, Modifiers modifiers);
  void UserCollapses(int node, bool collapsed);
  void ExpandAllBelow(int node);
  [[nodiscard]] bool HandleArrow(Key key, Modifiers modifiers);
  [[nodiscard]] bool HandleSpace(Modifiers modifiers);
  [[nodiscard]] bool HandleNodeKey(Key key);

  // --- looks (flex_grid_look.cpp)
  [[nodiscard]] const CellStyle& StyleAt(int row, int col) const;
  void SetStyle(int row, int col, const CellStyle& style);

  // --- notices (flex_grid_update.cpp)
  void ContentChanged() { pending.content = true; }
  /// As `ContentChanged`, and what the user sees must be settled before the events.
  void StructureChanged() { pending.content = pending.settle = true; }
  /// As `StructureChanged` for one of many changes: a window settles what is seen when it paints.
  void RowsCameOrWent() {
    ContentChanged();
    if (grid.GetPeer() == nullptr) pending.settle = true;
  }
  void RowChanged(int changed);
  /// Brings the viewport up to date before it is used to scroll. False when a listener has ended
  /// the grid: nothing of it may be touched then.
  [[nodiscard]] bool SettlePeer();
  void Settle();
  void Begin();
  void End();
  void Flush();

  static constexpr int kDefaultColWidth = 960;
  static constexpr std::uint16_t kDefaultHeightMark = 0;

  FlexGrid& grid;
  std::vector<HeaderRow> header{1};
  std::vector<Column> columns;
  CellStore cells;                                      // data rows
  OutlineRows outline;                                  // data rows
  CellStyles styles;                                    // all rows
  RowArray<std::uint16_t> heights{kDefaultHeightMark};  // all rows
  GridTotals totals{cells, outline};
  viewkit::SubtotalPosition subtotal_position = viewkit::SubtotalPosition::kBelow;
  /// Columns and orders of the sorts asked for while there are rows of totals.
  std::vector<std::pair<int, SortOrder>> postponed_sorts;
  int fixed_cols = 0;
  int frozen_cols = 0;
  int outline_col = 0;
  int row_height_min = 0;

  int row = 0;
  int col = -1;
  int anchor = -1;  // where a range of selected rows begins; -1: at the current row
  RowSelection selection;
  unsigned selection_version = 0;
  viewkit::SelectionMode mode = viewkit::SelectionMode::kFree;
  bool allow_selection = true;
  SortOrder sort = SortOrder::kNone;

  // As set last; what is seen follows from these and from what is shown now. The first data row as
  // the top row means: not scrolled.
  int top = 1;
  int left = 0;
  int viewport_width = -1;  // -1: no peer has set it
  int viewport_height = -1;

  Look look;
  const TextMeasure* measure = &PlainTextMeasure();

  std::string typed;
  std::int64_t typed_at = 0;

  struct Pending {
    bool content = false;
    bool columns = false;
    bool settle = false;
    int first_row = -1;
    int last_row = -1;
    std::vector<int> collapsed;  // nodes, -1 for the whole outline
    // as they were when the update began
    int row = 0;
    int col = 0;
    int top = 0;
    int left = 0;
    unsigned selection_version = 0;
  };
  Pending pending;
  int updates = 0;
};

template <class Body>
void FlexGrid::Update(Body&& body) {
  State& state = *state_;
  state.Begin();
  try {
    body(state);
  } catch (...) {
    state.End();
    throw;
  }
  state.End();
}

}  // namespace tavrix::viewkit
