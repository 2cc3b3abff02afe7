#pragma once

#include <cstdint>

#include "viewkit/tree/tree_view.h"

/// What goes below a tree control, to its native window.
namespace tavrix::viewkit::mTreeView {

/// Handle of a node's item, found by counting siblings from the first root on: the control's nodes
/// carry none. 0 when there is none.
[[nodiscard]] TreeItem NodeHandle(const TreeView& tree, const TreeNode& node);

/// Sets the bits of `state` that `mask` names on a node's item. False when the window refuses.
bool SetNodeState(const TreeView& tree, const TreeNode& node, std::uint32_t mask,
                  std::uint32_t state);

/// Sends the redraw switch, deliberately the reverse of its argument's name: `Enabled` stops the
/// window from painting, and clearing it lets it paint again.
void Redraw(const TreeView& tree, bool Enabled);

/// Removes every item. Ends, as it must, with `Redraw(true)`: the window does not paint until
/// `Redraw(false)` is sent.
void DeleteAllItems(const TreeView& tree);

}  // namespace tavrix::viewkit::mTreeView
