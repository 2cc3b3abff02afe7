#pragma once

#include "viewkit/accessible.h"
#include "viewkit/grid/flex_grid.h"

namespace tavrix::viewkit {

/// A grid: its shown rows, the header first, with the cells of the columns that have a width. The
/// item of a row is its number plus 1, and so is the part of a column.
///
/// A row is called what its cells show; in an outline its value is the level, from 0. A cell is
/// called as its column's header and has its text as value.
class AccessibleGrid : public Accessible {
 public:
  explicit AccessibleGrid(FlexGrid& grid) : grid_(grid) {}

  [[nodiscard]] static AccessibleId OfRow(int row) { return {row + 1, 0}; }
  [[nodiscard]] static AccessibleId OfCell(int row, int col) { return {row + 1, col + 1}; }
  [[nodiscard]] static int RowOf(AccessibleId id) { return id.item - 1; }
  [[nodiscard]] static int ColOf(AccessibleId id) { return id.part - 1; }

  [[nodiscard]] AccessibleRole Role(AccessibleId id) const override;
  [[nodiscard]] bool Exists(AccessibleId id) const override;
  [[nodiscard]] std::string Name(AccessibleId id) const override;
  [[nodiscard]] std::string Value(AccessibleId id) const override;
  [[nodiscard]] AccessibleStates States(AccessibleId id) const override;
  [[nodiscard]] int Children(AccessibleId id) const override;
  [[nodiscard]] AccessibleId Child(AccessibleId id, int position) const override;
  [[nodiscard]] int Position(AccessibleId id) const override;
  [[nodiscard]] AccessibleId Current() const override;
  [[nodiscard]] std::vector<AccessibleId> Selected() const override;
  [[nodiscard]] AccessibleAction Action(AccessibleId id) const override;
  void Act(AccessibleId id) override;
  bool Select(AccessibleId id, AccessibleSelect how) override;

 private:
  [[nodiscard]] bool IsOutline() const { return grid_.GetLook().outline_bar != 0; }
  [[nodiscard]] bool IsHeader(int row) const { return row < grid_.FixedRows(); }
  [[nodiscard]] bool Opens(int row) const;
  [[nodiscard]] bool Seen(int col) const;
  [[nodiscard]] std::vector<int> Columns() const;
  [[nodiscard]] std::vector<int> Headers() const;
  [[nodiscard]] int Level(int row) const;
  [[nodiscard]] std::string Caption(int col) const;
  [[nodiscard]] AccessibleRole RoleOfCell(int row, int col) const;

  FlexGrid& grid_;
};

}  // namespace tavrix::viewkit
