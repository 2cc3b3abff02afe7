#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/row_set.h"
#include "viewkit/control.h"
#include "viewkit/grid/grid_types.h"
#include "viewkit/input.h"
#include "viewkit/ports.h"

namespace tavrix::viewkit {

struct CellStyle;

/// An outline grid (`VSFlexGrid`): fixed header rows above data rows, any of which may be a node of
/// an outline. 100,000 rows are ordinary work for it.
///
/// Sizes are twips. Rows and columns count from 0; row and column arguments outside the grid are an
/// error (`std::out_of_range`) unless said otherwise. The current row is -1 or a fixed row when
/// none is selected; so it is at first and after a load (`FixedRows` - 1). The outline: a row
/// marked as subtotal is a node; its children are the rows below it up to the next node of the same
/// or a lower level. Levels below 0 count as 0, levels above 32,767 as that.
///
/// Rows of totals, which `Subtotal` makes, are data rows like others to whoever asks for rows,
/// texts and looks. They never count in a total, no search finds them, and sorting leaves them
/// where they stand.
///
/// A call changes the model, then tells the peer, then raises events; between `BeginUpdate` and
/// `EndUpdate` all that waits for the last `EndUpdate`. A listener may change, reload or destroy
/// the grid. Reading costs O(1) or O(log n); what is shown is worked out once, when it is first
/// asked for after a change.
class FlexGrid : public Control, public host::Grid {
 public:
  explicit FlexGrid(std::string name, std::optional<int> index = {});
  ~FlexGrid() override;

  [[nodiscard]] std::string TypeName() const override { return "VSFlexGrid"; }
  [[nodiscard]] bool PrefersFocus() const override { return true; }

  // --- size and content
  [[nodiscard]] int Rows() const override;
  /// Adds empty rows at the end or drops the last ones. Never less than `FixedRows`. The grid
  /// begins with one row, the header, and no columns.
  void SetRows(int rows);
  [[nodiscard]] int Cols() const override;
  void SetCols(int cols);
  [[nodiscard]] int FixedRows() const override;
  /// Rows that become fixed keep their texts, and so do fixed rows that become data rows. `rows` is
  /// held between 0 and `Rows`.
  void SetFixedRows(int rows);
  [[nodiscard]] int FixedCols() const;
  /// Bounded to the columns there are.
  void SetFixedCols(int cols);
  [[nodiscard]] int FrozenCols() const;
  /// Bounded to the columns that are not fixed.
  void SetFrozenCols(int cols);
  /// Valid until a text, a row or a column changes.
  [[nodiscard]] std::string_view TextMatrix(int row, int col) const override;
  [[nodiscard]] std::uint64_t TextVersion() const override;
  /// The texts of these columns of the rows from `begin` to before `end`, one behind the other;
  /// each of `ends` is where the text of a cell ends. For callers that go through all rows.
  void AppendTexts(int begin, int end, std::span<const int> cols, std::string& text,
                   std::vector<std::int32_t>& ends) const;
  void SetTextMatrix(int row, int col, std::string_view text);
  /// As displayed: with the column's format applied to a number.
  [[nodiscard]] std::string DisplayText(int row, int col) const;
  /// Leading number of the cell's text, with thousands separators accepted.
  [[nodiscard]] double ValueMatrix(int row, int col) const;
  /// Replaces all data rows by the rows of `rows`, whose storage is taken over: one grid column for
  /// each column of it; further grid columns stay empty, surplus columns of `rows` are dropped. The
  /// rows are plain, shown, of default height and look. The current row and the selection end.
  void LoadRows(host::RowSet&& rows);
  /// A new empty row at the end; gives its index.
  int AddItem();
  /// `row` is a data row. The row that takes a current one's place is so next; other rows that are
  /// selected stay so in list-box mode.
  void RemoveItem(int row);
  /// Header texts separated by "|", whose widths, trailing blanks included, set the initial column
  /// widths. A leading "<", "^" or ">" aligns the column. The header itself shows the texts without
  /// blanks around them. Columns are added where the format has more; an empty format does nothing.
  void SetFormatString(std::string_view format);

  // --- columns
  [[nodiscard]] int ColWidth(int col) const;
  /// 0 hides the column; a negative width gives the default one, and 1,000,000 twips is the most.
  void SetColWidth(int col, int width);
  [[nodiscard]] bool ColHidden(int col) const override;
  void SetColHidden(int col, bool hidden);
  [[nodiscard]] Alignment ColAlignment(int col) const;
  /// A number that is no alignment is refused (`std::out_of_range`), also below.
  void SetColAlignment(int col, Alignment alignment);
  /// Alignment of the header cells of a column.
  [[nodiscard]] Alignment FixedAlignment(int col) const;
  void SetFixedAlignment(int col, Alignment alignment);
  /// Decides how a column's texts are displayed, aligned and sorted; it never changes them.
  [[nodiscard]] ColumnType ColDataType(int col) const;
  /// Any number that Automation has a simple type for (0 to 21); others are refused
  /// (`std::out_of_range`).
  void SetColDataType(int col, ColumnType type);
  [[nodiscard]] const std::string& ColFormat(int col) const;
  /// See `FormatNumber` and `FormatDate`. Numbers are formatted except in text columns, dates in
  /// date columns and, where the format is one for dates, in columns without a type.
  void SetColFormat(int col, std::string format);
  /// Equal texts in neighbouring shown rows are painted as one cell. Rows of totals stand alone.
  [[nodiscard]] bool MergeCol(int col) const;
  void SetMergeCol(int col, bool merge);
  /// Sizes a column to the widest of its shown and unshown cells, header and outline indent
  /// included; never above 30,000 twips. Only candidates for the widest cell are measured.
  void AutoSize(int col);

  // --- rows
  /// Never below `RowHeightMin`.
  [[nodiscard]] int RowHeight(int row) const;
  /// 0 and less give back the default height: that of a line of text.
  void SetRowHeight(int row, int height);
  /// As `SetRowHeight` for each data row, at once; free where they all have it already.
  void SetDataRowHeights(int height);
  [[nodiscard]] int RowHeightMin() const;
  void SetRowHeightMin(int height);
  [[nodiscard]] bool RowHidden(int row) const override;
  void SetRowHidden(int row, bool hidden) override;

  // --- outline
  /// A node of the outline, or a row of totals.
  [[nodiscard]] bool IsSubtotal(int row) const override;
  /// False also makes a row of totals a plain one.
  void SetIsSubtotal(int row, bool node);
  /// Whether the row is a node: a row of totals below plain rows is none.
  [[nodiscard]] bool IsNode(int row) const;
  [[nodiscard]] int RowOutlineLevel(int row) const override;
  void SetRowOutlineLevel(int row, int level);
  /// Expands everything and makes every data row a plain row of level 0.
  void ClearOutline();
  /// Makes every data row a node at once, on the level that the number in `col` less 1 gives. Gives
  /// the deepest level, -1 without data rows. Rows of totals take the level of the row that
  /// follows.
  int SetOutlineFromColumn(int col);
  [[nodiscard]] bool IsCollapsed(int row) const override;
  /// False collapse expands. Ignored on a row that is no node. A current row that is hidden by it
  /// gives way to the node.
  void SetCollapsed(int row, bool collapsed) override;
  /// Shows the outline down to `level`: nodes below it are expanded, nodes on it and deeper
  /// collapsed; a negative level expands everything. The current row stays, shown or not. Raises
  /// `AfterCollapse` once, with -1.
  void Outline(int level);
  [[nodiscard]] int OutlineCol() const;
  void SetOutlineCol(int col);
  /// Node of which `row` is a child; -1 for none.
  [[nodiscard]] int ParentRow(int row) const;
  /// First node whose parent is `row`; -1 for none.
  [[nodiscard]] int FirstChildRow(int row) const;
  /// Last row of the node's whole subtree; `row` itself when it has none.
  [[nodiscard]] int LastRowOfNode(int row) const;
  /// Nodes whose parent is `row`; takes time with their number.
  [[nodiscard]] int ChildCount(int row) const;
  /// Whether any row hangs below the node, at once.
  [[nodiscard]] bool HasRowsBelow(int row) const;
  /// Removes a node with all below it; a plain row alone.
  void RemoveNode(int row);
  [[nodiscard]] bool IsShown(int row) const override;
  /// Shown data rows in order: position of a row (-1 when it is not shown), and row of a position.
  [[nodiscard]] int ShownRows() const;
  [[nodiscard]] int ShownPosition(int row) const;
  [[nodiscard]] int RowAtShownPosition(int position) const;
  /// The nearest shown data row after (or before) `row`, which may lie outside; -1 for none.
  [[nodiscard]] int NextShownRow(int row) const;
  [[nodiscard]] int PreviousShownRow(int row) const;

  // --- totals
  /// Makes the rows of totals that `options` describes, one for each group, or one for the grid; or
  /// fills one more column of them: totals of the same `group_on` share their rows. `kClear`
  /// removes all rows that this has made and no other; `kNone` does nothing.
  ///
  /// Hidden rows count, empty cells do not; sums of decimal numbers are exact as long as 15 digits
  /// hold them. Of several totals at one place those of the groups made first stand outside, that
  /// of the grid outermost. `back` and `fore` colour the cells that are not fixed. Where data rows
  /// are nodes, a row of totals is a node of the level of the row that follows it, so that the
  /// outline stays as it is. Above plain rows it is their parent, on level 0 for the grid, 1 for
  /// the first groups, and so on. Columns outside the grid are an error. Time: one pass over the
  /// rows at most, mostly less.
  void Subtotal(SubtotalFunction function, const SubtotalOptions& options = {});
  /// Whether `Subtotal` has made this row.
  [[nodiscard]] bool IsTotalRow(int row) const override;
  /// Where new rows of totals will go; below at first.
  [[nodiscard]] viewkit::SubtotalPosition SubtotalPosition() const;
  void SetSubtotalPosition(viewkit::SubtotalPosition position);

  // --- sorting, searching, summing
  /// Sorts the data rows `first` to `last` by column `col`, stably; none when `last` is less than
  /// `first`. Everything a row has moves with it, the current row and the selection too. The two
  /// generic orders follow the column's type: numbers, dates, texts without case.
  ///
  /// Rows of totals stay, and no row passes one: each group is sorted for itself.
  void SortRows(int col, SortOrder order, int first, int last);
  /// The `Sort` property: sorts all data rows by the current column, at each assignment anew. What
  /// was asked for while there were rows of totals is done over all rows as soon as these are
  /// cleared. A number that is no order is refused (`std::out_of_range`).
  void SetSort(SortOrder order);
  /// As set last; `kNone` after a load or `SortRows`, which bring an order of their own.
  [[nodiscard]] SortOrder Sort() const;
  /// First row from `start` on whose text in `col` equals `text`, or begins with it when
  /// `full_match` is off; -1 for none. A negative start stands for the first data row, a start past
  /// the end finds nothing.
  [[nodiscard]] int FindRow(std::string_view text, int start, int col, bool case_sensitive = true,
                            bool full_match = true) const;
  /// `function` over the numbers of the cells, empty ones and rows of totals left out; 0 over none.
  /// `kPercent` is their share, in percent, of the sum over the same columns of all data rows.
  [[nodiscard]] double Aggregate(SubtotalFunction function, int row1, int col1, int row2,
                                 int col2) const;

  // --- current cell, selection
  [[nodiscard]] int Row() const override;
  /// Selects the row and no other; -1 or a fixed row selects none. Raises `RowColChange` and, where
  /// it changes, `SelChange`.
  void SetRow(int row) override;
  /// -1 without columns.
  [[nodiscard]] int Col() const;
  void SetCol(int col);
  [[nodiscard]] viewkit::SelectionMode SelectionMode() const;
  void SetSelectionMode(viewkit::SelectionMode mode);
  /// Whether several rows may be selected by dragging or Shift outside list-box mode; so at first.
  void SetAllowSelection(bool allow);
  /// Whether the user can select several rows now.
  [[nodiscard]] bool CanSelectSeveral() const;
  [[nodiscard]] int SelectedRows() const;
  /// The n-th selected row from the top, n from 0.
  [[nodiscard]] int SelectedRow(int n) const;
  [[nodiscard]] bool IsSelected(int row) const;
  /// Outside list-box mode selecting a row makes it current, and deselecting it selects none.
  void SetSelected(int row, bool selected);
  /// Selected rows as text for the clipboard: tabs between the shown columns, CR LF after each row.
  [[nodiscard]] std::string ClipText() const;

  // --- scrolling
  /// The first data row that is seen; `FixedRows` when none is shown.
  [[nodiscard]] int TopRow() const override;
  /// Bounded so that the last page is full; a row that is not shown gives way to the nearest shown
  /// one in the direction of travel. Any number is accepted. Where the grid has no height yet, any
  /// row may be the top.
  void SetTopRow(int row) override;
  /// The first of the columns that scroll that is seen.
  [[nodiscard]] int LeftCol() const;
  /// Bounded so that the last page is full. Any number is accepted.
  void SetLeftCol(int col);
  [[nodiscard]] bool IsInView(int row) const override;
  /// Scrolls as little as is needed to bring the row into view.
  void ShowRow(int row);
  /// Brings the top row and the left column to where they can be now. The peer calls it before it
  /// paints: changes of single rows leave it undone while there is one.
  void SettleScroll();
  /// Width and height in which cells, header included, are seen (without scroll bars); the peer
  /// sets it, without a peer the control's bounds count.
  void SetViewport(int width, int height);

  // --- look
  using Look = GridLook;
  [[nodiscard]] const Look& GetLook() const;
  void SetLook(const Look& look);
  /// `color::kDefault` where the grid's own colour counts.
  [[nodiscard]] Color CellForeColor(int row, int col) const;
  [[nodiscard]] Color CellBackColor(int row, int col) const;
  [[nodiscard]] bool CellFontBold(int row, int col) const;
  /// The colour that all cells between these two corners have; nothing where they differ.
  [[nodiscard]] std::optional<Color> CellForeColor(int row1, int col1, int row2, int col2) const;
  void SetCellForeColor(int row, int col, Color color);
  void SetCellBackColor(int row, int col, Color color);
  void SetCellFontBold(int row, int col, bool bold);
  /// The font's measure; the plain one until a peer sets its own. Not owned, must outlive its use.
  void SetTextMeasure(const TextMeasure* measure);
  [[nodiscard]] const TextMeasure& Measure() const;

  // --- change notices
  void BeginUpdate() override;
  void EndUpdate() override;

  // --- the user's actions, as the peer (or a test) hands them in
  /// What the key does in a grid; in an outline Left and Right collapse, expand and move along the
  /// tree. True when the key was used. `KeyDown` is raised by the caller, before.
  bool HandleKey(Key key, Modifiers modifiers = {});
  /// A character typed on the grid: seeks the next shown row whose outline column starts with the
  /// characters typed in quick succession (`now` in milliseconds). Where no shown row does, the
  /// first one below closed nodes is shown.
  bool HandleTypeAhead(std::string_view character, std::int64_t now);
  /// A press of the mouse on a data row; `on_symbol` when it hit the +/- box. When the user
  /// collapses a node, a current row below it gives way to the node.
  void HandlePress(int row, int col, bool on_symbol, Modifiers modifiers = {});
  /// The pointer was dragged to `row` with the button held. Rows outside are ignored here.
  void HandleDrag(int row);
  void HandleDoubleClick(int row);

  Event<> RowColChange;        ///< `Row` or `Col` is another number now
  Event<> SelChange;           ///< other rows are selected
  Event<> DoubleClick;         ///< on a data row
  Event<> AfterScroll;         ///< the top row or the left column has changed
  Event<int> AfterCollapse;    ///< collapsed or expanded, with the node's row
  Event<int> AfterUserResize;  ///< with the column

 private:
  struct State;
  [[nodiscard]] const CellStyle& StyleAt(int row, int col) const;
  template <class Field>
  void SetStyle(int row, int col, Field CellStyle::*field, Field value);
  template <class Part, class Value, class Changed>
  void SetOfColumn(int col, Part part, Value value, Changed changed);
  void RefitColumns();
  template <class Body>
  void Update(Body&& body);

  std::shared_ptr<State> state_;  // shared, so that a raise in progress can notice its end
};

}  // namespace tavrix::viewkit
