#pragma once

#include "viewkit/grid/flex_grid.h"
#include "viewkit/grid/grid_input.h"
#include "viewkit/grid/grid_model.h"
#include "viewkit/grid/grid_sorting.h"
#include "viewkit/grid/total_rows.h"

namespace tavrix::viewkit {

/// What a grid is made of, and its change notices.
struct FlexGrid::State : GridModel {
  explicit State(FlexGrid& flex_grid)
      : GridModel(flex_grid),
        owner(flex_grid),
        sorting(*this),
        totals(*this, sorting),
        input(*this) {}

  /// Brings the viewport up to date before it is used to scroll. False when a listener has ended
  /// the grid: nothing of it may be touched then.
  [[nodiscard]] bool SettlePeer();
  void Begin();
  void End();
  void Flush();

  FlexGrid& owner;
  GridSorting sorting;
  TotalRows totals;
  GridInput input;

  struct Before {
    int row = 0;
    int col = 0;
    int top = 0;
    int left = 0;
    unsigned selection_version = 0;
  };
  [[nodiscard]] Before Now() const {
    return {selection.Row(), selection.Col(), viewport.Top(), viewport.Left(), selection.Version()};
  }
  Before before;  // as it was when the update began
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
