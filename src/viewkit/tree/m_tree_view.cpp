#include "viewkit/tree/m_tree_view.h"

#include <vector>

namespace tavrix::viewkit::mTreeView {

namespace {

int SiblingsBefore(const TreeNode& node) {
  int count = 0;
  for (const TreeNode* at = node.Previous(); at != nullptr; at = at->Previous()) ++count;
  return count;
}

TreeItem Next(NativeTree& native, std::uintptr_t which, TreeItem item) {
  return native.Send(tree_message::kGetNextItem, which, item);
}

}  // namespace

TreeItem NodeHandle(const TreeView& tree, const TreeNode& node) {
  std::vector<int> places;
  for (const TreeNode* at = &node; at != nullptr; at = at->Parent()) {
    places.push_back(SiblingsBefore(*at));
  }
  NativeTree& native = tree.Native();
  TreeItem item = 0;
  for (auto place = places.rbegin(); place != places.rend(); ++place) {
    const bool top = place == places.rbegin();
    item = Next(native, top ? tree_message::kNextRoot : tree_message::kNextChild, item);
    for (int steps = *place; steps > 0 && item != 0; --steps) {
      item = Next(native, tree_message::kNextSibling, item);
    }
    if (item == 0) return 0;
  }
  return item;
}

bool SetNodeState(const TreeView& tree, const TreeNode& node, std::uint32_t mask,
                  std::uint32_t state) {
  const TreeItem item = NodeHandle(tree, node);
  if (item == 0) return false;
  const TreeItemRecord record{tree_message::kHandleAndState, item, state & mask, mask};
  return tree.Native().SendRecord(tree_message::kSetItem, record) != 0;
}

void Redraw(const TreeView& tree, bool Enabled) {
  const std::intptr_t redraw = Enabled ? 0 : -1;  // reversed on purpose
  tree.Native().Send(tree_message::kSetRedraw, static_cast<std::uintptr_t>(redraw), 0);
}

void DeleteAllItems(const TreeView& tree) {
  Redraw(tree, false);
  NativeTree& native = tree.Native();
  const auto first_root = [&native] { return Next(native, tree_message::kNextRoot, 0); };
  TreeItem root = first_root();
  while (root > 0) {
    native.Send(tree_message::kDeleteItem, 0, root);
    const TreeItem deleted = root;
    root = first_root();
    if (root == deleted) break;  // the window refuses; asking for ever would hang the program
  }
  Redraw(tree, true);
}

}  // namespace tavrix::viewkit::mTreeView
