#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "com/com_ptr.h"
#include "com/variant.h"
#include "host/controls.h"
#include "host/non_copyable.h"
#include "tavrix.h"

namespace desk::app {

/// A grid of a view, reached through its declared interface, as the portable navigator sees it.
///
/// What the interface does not offer is worked out here: which rows are shown (once, until
/// something is changed through this object) and which are in view. The number of rows, texts,
/// levels and states are read for many rows at once and kept as long as this object: it lives for
/// one walk over the rows. Rows that are hidden, opened and closed are handed on together: before
/// anything that depends on them is asked for or set, and at the end of an update and of the
/// object. A text lasts until one of another row is asked for. Failing calls throw
/// `com::ComFailure`.
class ViewGrid : public tavrix::host::Grid, private tavrix::host::NonCopyable {
 public:
  explicit ViewGrid(tavrix::com::ComPtr<IFlexGrid> grid);
  ~ViewGrid() override;

  // host::Control
  [[nodiscard]] std::string TypeName() const override;
  [[nodiscard]] const std::string& Name() const override;
  [[nodiscard]] std::optional<int> Index() const override;
  [[nodiscard]] std::intptr_t WindowHandle() const override;
  [[nodiscard]] bool Visible() const override;
  void SetVisible(bool visible) override;
  [[nodiscard]] bool Enabled() const override;
  void SetEnabled(bool enabled) override;
  [[nodiscard]] tavrix::host::Bounds GetBounds() const override;
  void SetBounds(const tavrix::host::Bounds& bounds) override;
  [[nodiscard]] const std::string& ToolTipText() const override;
  void SetToolTipText(std::string text) override;

  // host::Grid
  [[nodiscard]] int Rows() const override;
  [[nodiscard]] int Cols() const override;
  [[nodiscard]] int FixedRows() const override;
  [[nodiscard]] int Row() const override;
  void SetRow(int row) override;
  [[nodiscard]] int TopRow() const override;
  void SetTopRow(int row) override;
  [[nodiscard]] std::string_view TextMatrix(int row, int col) const override;
  [[nodiscard]] std::uint64_t TextVersion() const override;
  [[nodiscard]] bool IsTotalRow(int row) const override;
  [[nodiscard]] bool RowHidden(int row) const override;
  void SetRowHidden(int row, bool hidden) override;
  [[nodiscard]] int RowOutlineLevel(int row) const override;
  [[nodiscard]] bool IsSubtotal(int row) const override;
  [[nodiscard]] bool IsCollapsed(int row) const override;
  void SetCollapsed(int row, bool collapsed) override;
  [[nodiscard]] bool ColHidden(int col) const override;
  [[nodiscard]] bool IsShown(int row) const override;
  [[nodiscard]] bool IsInView(int row) const override;
  /// Where a data row ends, in pixels from the window's upper edge; nothing for one out of view.
  [[nodiscard]] std::optional<int> BottomOf(int row) const;
  /// Painting stands still; the grid's own notices cannot be held back from outside.
  void BeginUpdate() override;
  void EndUpdate() override;

 private:
  template <class Result>
  [[nodiscard]] Result Get(HRESULT (STDMETHODCALLTYPE IFlexGrid::*member)(Result*)) const;
  template <class Result>
  [[nodiscard]] Result GetAt(HRESULT (STDMETHODCALLTYPE IFlexGrid::*member)(long, Result*),
                             int index) const;
  void FindShownRows() const;
  /// Before whatever depends on which rows are shown.
  void HandOn() const;
  void SetState(int row, unsigned char bit, bool on);
  /// Reads the rows around `row`; false where the grid does not offer that.
  [[nodiscard]] bool Read(int row) const;
  /// What `IGridRows` tells of a row; null where the grid doesn't offer it.
  [[nodiscard]] unsigned char* StateOf(int row) const;
  [[nodiscard]] int HeightOf(int row) const;

  /// Rows as `IGridRows` gives them.
  struct Block {
    int first = 0;
    tavrix::com::Variant levels = {};
    tavrix::com::Variant ends = {};
    tavrix::com::Variant text = {};
    std::span<const LONG> level = {};
    std::span<const LONG> end = {};
    const char* bytes = nullptr;
  };

  tavrix::com::ComPtr<IFlexGrid> grid_;
  tavrix::com::ComPtr<IGridRows> rows_;
  std::vector<int> places_;  // of the columns among those that `rows_` gives; -1 for hidden ones
  int read_columns_ = 0;
  mutable std::optional<int> row_count_;
  mutable std::optional<int> fixed_rows_;
  mutable Block block_;
  mutable std::vector<unsigned char> states_;  // of all rows; empty: not read yet
  mutable int first_changed_ = 0;  // of the rows whose states the grid does not know yet
  mutable int end_changed_ = 0;    // the one behind the last; not above the first: none
  mutable std::string text_;
  mutable std::string name_;
  mutable std::string tip_;
  mutable std::vector<bool> shown_;  // without `rows_`; empty: not worked out since the last change
  mutable bool shown_changed_ = false;  // what `states_` tells of shown rows holds no longer
  int updates_ = 0;
  bool still_ = false;  // painting has been stopped
};

}  // namespace desk::app
