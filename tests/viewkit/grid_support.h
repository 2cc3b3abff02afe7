#pragma once

#include <string>
#include <utility>
#include <vector>

#include "host/non_copyable.h"
#include "viewkit/grid/flex_grid.h"

namespace tavrix::viewkit {

using Texts = std::vector<std::vector<std::string>>;

[[nodiscard]] host::RowSet RowSetOf(const Texts& rows);

/// A grid with one header row, as many columns as the first row has, and these data rows.
void Fill(FlexGrid& grid, const Texts& rows);

/// Fills a one-column grid with nodes: one row a level, its text "r0", "r1", ... A level of -1
/// makes a plain row.
void FillOutline(FlexGrid& grid, const std::vector<int>& levels);

/// Texts of a column of the data rows, in order; of the shown ones only.
[[nodiscard]] std::vector<std::string> ColumnOf(const FlexGrid& grid, int col = 0);
[[nodiscard]] std::vector<std::string> ShownColumn(const FlexGrid& grid, int col = 0);
[[nodiscard]] std::vector<int> SelectionOf(const FlexGrid& grid);

/// Works the outline, the shown rows, scrolling and selection out again in the plainest way and
/// compares. Call it after whatever may have broken them.
void CheckInvariants(const FlexGrid& grid);

/// Writes down what the grid's window and its listeners get to know.
class GridListener : public Peer, private host::NonCopyable {
 public:
  explicit GridListener(FlexGrid& grid);
  ~GridListener() override;

  [[nodiscard]] std::intptr_t Handle() const override { return 1; }
  void Update(const Change& change) override;
  bool TakeFocus() override { return true; }

  /// What came since the last call.
  [[nodiscard]] std::vector<std::string> Take() { return std::exchange(heard_, {}); }

 private:
  FlexGrid& grid_;
  std::vector<std::string> heard_;
};

}  // namespace tavrix::viewkit
