#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// What of a view's child controls the host sees and may use. `viewkit` implements these.
/// Positions and sizes are twips (1/1440 inch). What is set here has the effect, and raises the
/// events, of the user's own action; setting the value that stands does nothing.
namespace tavrix::host {

/// A rectangle in twips, relative to the view that holds the control.
struct Bounds {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  friend bool operator==(const Bounds&, const Bounds&) = default;
};

class Control {
 public:
  virtual ~Control() = default;
  [[nodiscard]] virtual std::string TypeName() const = 0;
  [[nodiscard]] virtual const std::string& Name() const = 0;
  /// The position in a control array; nothing outside an array.
  [[nodiscard]] virtual std::optional<int> Index() const = 0;
  /// The native window; 0 before the control has one.
  [[nodiscard]] virtual std::intptr_t WindowHandle() const = 0;
  [[nodiscard]] virtual bool Visible() const = 0;
  virtual void SetVisible(bool visible) = 0;
  [[nodiscard]] virtual bool Enabled() const = 0;
  virtual void SetEnabled(bool enabled) = 0;
  [[nodiscard]] virtual Bounds GetBounds() const = 0;
  virtual void SetBounds(const Bounds& bounds) = 0;
  [[nodiscard]] virtual const std::string& ToolTipText() const = 0;
  virtual void SetToolTipText(std::string text) = 0;
};

/// The members of a grid that a navigator needs. Rows and columns count from 0; the first
/// `FixedRows` rows are the header.
class Grid : public virtual Control {
 public:
  [[nodiscard]] virtual int Rows() const = 0;
  [[nodiscard]] virtual int Cols() const = 0;
  [[nodiscard]] virtual int FixedRows() const = 0;
  [[nodiscard]] virtual int Row() const = 0;
  virtual void SetRow(int row) = 0;
  [[nodiscard]] virtual int TopRow() const = 0;
  virtual void SetTopRow(int row) = 0;
  /// Valid until the grid changes.
  [[nodiscard]] virtual std::string_view TextMatrix(int row, int col) const = 0;
  [[nodiscard]] virtual bool RowHidden(int row) const = 0;
  virtual void SetRowHidden(int row, bool hidden) = 0;
  [[nodiscard]] virtual int RowOutlineLevel(int row) const = 0;
  [[nodiscard]] virtual bool IsSubtotal(int row) const = 0;
  /// Another number after each change of texts or rows, and for another grid; 0 where the grid
  /// does not count.
  [[nodiscard]] virtual std::uint64_t TextVersion() const { return 0; }
  /// A row of totals, which no search finds.
  [[nodiscard]] virtual bool IsTotalRow(int /*row*/) const { return false; }
  [[nodiscard]] virtual bool IsCollapsed(int row) const = 0;
  virtual void SetCollapsed(int row, bool collapsed) = 0;
  [[nodiscard]] virtual bool ColHidden(int col) const = 0;
  /// The row is neither hidden nor inside a collapsed node (it may be scrolled out of the window).
  [[nodiscard]] virtual bool IsShown(int row) const = 0;
  /// The row is shown and lies wholly inside the window as it is scrolled now.
  [[nodiscard]] virtual bool IsInView(int row) const = 0;
  /// Between these two calls (they nest) the grid raises no change notices and paints nothing.
  virtual void BeginUpdate() = 0;
  virtual void EndUpdate() = 0;
};

/// The child controls of one view, in their order of creation.
class ControlCollection {
 public:
  virtual ~ControlCollection() = default;
  [[nodiscard]] virtual std::size_t Count() const = 0;
  /// `position` counts from 0 here; Automation's `Item` counts from 1.
  [[nodiscard]] virtual Control& At(std::size_t position) const = 0;
};

}  // namespace tavrix::host
