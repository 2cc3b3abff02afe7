#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "host/row_set.h"
#include "viewkit/grid/flex_grid.h"

/// What the grids of the ledgers have in common.
namespace desk::views {

namespace host = tavrix::host;
namespace viewkit = tavrix::viewkit;

struct LedgerColumn {
  enum class Kind { kText, kCentred, kAmount, kQuantity };
  const char* heading;
  int width;  ///< twips
  Kind kind = Kind::kText;
};

/// One row of headings and these columns; whole rows are selected.
void MakeLedgerGrid(viewkit::FlexGrid& grid, std::span<const LedgerColumn> columns,
                    const char* accessible_name);

/// An amount's text; empty for zero.
[[nodiscard]] std::string AmountCell(std::int64_t amount);
/// "借", "贷", or "平" for zero.
[[nodiscard]] std::string SideOf(std::int64_t balance);

/// Amounts below zero are red in these columns, `first` to `last`.
void RedNegatives(viewkit::FlexGrid& grid, int first, int last);
/// A row of totals, in the user's own colours.
void DressTotal(viewkit::FlexGrid& grid, int row);

/// Gives column `col` what the others leave of the grid's width, but at least `least`; twips.
void FitColumn(viewkit::FlexGrid& grid, int col, int least);

/// Puts controls beside each other in a strip at the top of a view.
class Strip {
 public:
  static constexpr int kEdge = 120;
  static constexpr int kLine = 345;
  static constexpr int kHeight = 2 * kEdge + kLine;

  explicit Strip(int top = 0) : top_(top) {}
  void Put(viewkit::Control& control, int width, int gap = 90);
  /// A label, whose text stands on the line of the texts in boxes.
  void PutLabel(viewkit::Control& label, int width, int gap = 60);
  [[nodiscard]] int Left() const { return left_; }

 private:
  int top_;
  int left_ = kEdge;
};

/// Where a line of text stands at the foot of a view of this size; twips.
[[nodiscard]] host::Bounds FootLine(int width, int height);

}  // namespace desk::views
