// Rows of totals.

#include "viewkit/grid/flex_grid_state.h"

namespace tavrix::viewkit {

void FlexGrid::Subtotal(SubtotalFunction function, const SubtotalOptions& options) {
  if (function == SubtotalFunction::kNone) return;
  if (function == SubtotalFunction::kClear) {
    return Update([](State& s) { s.totals.Clear(); });
  }
  state_->columns.Check(options.total_on);
  if (options.group_on >= 0) state_->columns.Check(options.group_on);
  if (options.match_from) state_->columns.Check(*options.match_from);
  Update([&](State& s) { s.totals.Add(function, options); });
}

bool FlexGrid::IsTotalRow(int row) const {
  state_->rows.CheckRow(row);
  return state_->rows.IsTotal(row);
}

SubtotalPosition FlexGrid::SubtotalPosition() const {
  return state_->totals.Position();
}

void FlexGrid::SetSubtotalPosition(viewkit::SubtotalPosition position) {
  state_->totals.SetPosition(position);
}

}  // namespace tavrix::viewkit
