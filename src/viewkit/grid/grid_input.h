#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "viewkit/grid/grid_model.h"
#include "viewkit/input.h"

namespace tavrix::viewkit {

/// What the user does in a grid, as plain keys, characters and rows.
class GridInput {
 public:
  explicit GridInput(GridModel& model) : model_(model) {}

  /// True when the key was used.
  bool HandleKey(Key key, Modifiers modifiers);
  /// A press on a data row; `col` may lie outside.
  void HandlePress(int row, int col, bool on_symbol, Modifiers modifiers);
  /// To a data row, as the arrow keys do; other rows are ignored.
  void Move(int next, Modifiers modifiers);

  /// The row that the characters typed in quick succession lead to: the next shown one whose
  /// outline column begins with them, or else the first one that is shown once the nodes above it
  /// are open.
  [[nodiscard]] std::optional<int> Seek(std::string_view character, std::int64_t now);
  /// Expands all nodes above a row.
  void OpenAbove(int row);
  /// The rows are others.
  void ForgetTyped() { typed_.clear(); }

 private:
  [[nodiscard]] bool OnDataRow() const { return model_.rows.IsData(model_.selection.Row()); }
  void MoveBy(int rows, Modifiers modifiers);
  void MoveByPage(int direction, Modifiers modifiers);
  void MoveInTree(bool left_key, Modifiers modifiers);
  void Collapse(int node, bool collapsed);
  void ExpandAllBelow(int node);
  [[nodiscard]] bool HandleArrow(Key key, Modifiers modifiers);
  [[nodiscard]] bool HandleSpace(Modifiers modifiers);
  [[nodiscard]] bool HandleSelectAll(Key key, Modifiers modifiers);
  [[nodiscard]] bool HandleNodeKey(Key key);
  [[nodiscard]] bool CanBeOpened(int row) const;

  GridModel& model_;
  std::string typed_;
  std::int64_t typed_at_ = 0;
};

}  // namespace tavrix::viewkit
