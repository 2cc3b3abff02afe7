#pragma once

#include <cstdint>

#include "viewkit/grid/grid_model.h"
#include "viewkit/grid/grid_sorting.h"
#include "viewkit/grid/grid_totals.h"

namespace tavrix::viewkit {

/// A grid's rows of totals: makes them, fills them, takes them away.
class TotalRows {
 public:
  TotalRows(GridModel& model, GridSorting& sorting)
      : model_(model), sorting_(sorting), groups_(model.rows.Cells(), model.rows.Outline()) {}

  [[nodiscard]] SubtotalPosition Position() const { return position_; }
  void SetPosition(SubtotalPosition position) { position_ = position; }

  void Add(SubtotalFunction function, const SubtotalOptions& options);
  void Clear();
  /// The row, one of totals, becomes a plain data row.
  void MakePlain(int data);
  /// The texts of a row of totals have changed since the cells had this version: no number that
  /// counts has.
  void OwnTextChanged(std::uint64_t version) { groups_.Follow(version); }
  /// The rows are others.
  void Forget() { groups_.Forget(); }

 private:
  [[nodiscard]] bool EnsureRows(GridTotals::Level& level);
  [[nodiscard]] int RowOfGroup(const GridTotals::Level& level, int data) const;
  void WriteTexts(const GridTotals::Level& level, const SubtotalOptions& options);
  void WriteNumbers(const GridTotals::Level& level, SubtotalFunction function,
                    const SubtotalOptions& options);
  void SetText(int data, int col, std::string_view text);

  GridModel& model_;
  GridSorting& sorting_;
  GridTotals groups_;
  SubtotalPosition position_ = SubtotalPosition::kBelow;
};

}  // namespace tavrix::viewkit
