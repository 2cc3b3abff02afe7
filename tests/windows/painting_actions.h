#pragma once

#include <cstddef>
#include <random>
#include <span>

#include "viewkit/grid/flex_grid.h"
#include "viewkit/tree/tree_view.h"

/// What a user and a host do to grids and trees, by chance.
namespace tavrix::test {

/// Throws the same for the same seed on every system.
class Dice {
 public:
  explicit Dice(unsigned seed) : engine_(seed) {}
  /// 0 to `count` - 1; 0 when there is nothing to choose from.
  int Below(int count) {
    return count <= 0 ? 0 : static_cast<int>(engine_() % static_cast<unsigned>(count));
  }
  bool OneIn(int count) { return Below(count) == 0; }
  template <class Item, std::size_t size>
  const Item& OneOf(const Item (&items)[size]) {
    return items[Below(static_cast<int>(size))];
  }

 private:
  std::mt19937 engine_;
};

template <class Control>
struct Action {
  const char* name;
  void (*run)(Control& control, Dice& dice);
};

/// Keys, the mouse and the bars of a grid's window.
[[nodiscard]] std::span<const Action<viewkit::FlexGrid>> GridInputs();
/// Changes that come through the model.
[[nodiscard]] std::span<const Action<viewkit::FlexGrid>> GridChanges();
[[nodiscard]] std::span<const Action<viewkit::TreeView>> TreeActions();

template <class Control>
const char* RunOne(std::span<const Action<Control>> actions, Control& control, Dice& dice) {
  const auto& action =
      actions[static_cast<std::size_t>(dice.Below(static_cast<int>(actions.size())))];
  action.run(control, dice);
  return action.name;
}

}  // namespace tavrix::test
