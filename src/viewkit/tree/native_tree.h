#pragma once

#include <cstdint>

/// The messages by which one reaches below a tree control to its native window.
namespace tavrix::viewkit {

class TreeNode;

/// Handle of an item of a tree window; 0 for none.
using TreeItem = std::intptr_t;

/// The messages used, with the numbers that the system gives them.
namespace tree_message {
inline constexpr unsigned kSetRedraw = 11;            // WM_SETREDRAW
inline constexpr unsigned kDeleteItem = 0x1101;       // TVM_DELETEITEM
inline constexpr unsigned kGetNextItem = 0x110A;      // TVM_GETNEXTITEM
inline constexpr unsigned kSetItem = 0x110D;          // TVM_SETITEMA
inline constexpr std::uintptr_t kNextRoot = 0;        // TVGN_ROOT
inline constexpr std::uintptr_t kNextSibling = 1;     // TVGN_NEXT
inline constexpr std::uintptr_t kNextChild = 4;       // TVGN_CHILD
inline constexpr std::uint32_t kHandleAndState = 24;  // TVIF_HANDLE | TVIF_STATE
inline constexpr std::uint32_t kCut = 4;              // TVIS_CUT
}  // namespace tree_message

/// What a set-item message carries.
struct TreeItemRecord {
  std::uint32_t mask = 0;
  TreeItem item = 0;
  std::uint32_t state = 0;
  std::uint32_t state_mask = 0;
};

/// The window of a tree, as messages see it. A model without a window answers them itself.
class NativeTree {
 public:
  virtual ~NativeTree() = default;
  /// `kSetRedraw` (wparam: the switch), `kGetNextItem` (wparam: which, lparam: item; gives an item)
  /// or `kDeleteItem` (lparam: item; gives non-zero when it is gone with all below it).
  virtual std::intptr_t Send(unsigned message, std::uintptr_t wparam, std::intptr_t lparam) = 0;
  /// `kSetItem`; gives non-zero when the item's state was set.
  virtual std::intptr_t SendRecord(unsigned message, const TreeItemRecord& record) = 0;
};

/// A real window of a tree: besides answering messages it follows the model. Notices come after the
/// change, but `NodeRemoving` before it. What it is told about itself it ignores.
///
/// When the native control deletes an item on its own (because a message told it to), the window
/// hands the node's `Id` to `TreeView::HandleNativeDelete`, once for each item and in any order.
class TreeWindow : public NativeTree {
 public:
  virtual void NodeAdded(const TreeNode& node) = 0;
  /// The node, with all below it, has another parent or place.
  virtual void NodeMoved(const TreeNode& node) = 0;
  /// The node is about to go, with all below it.
  virtual void NodeRemoving(const TreeNode& node) = 0;
  /// Text, look, or whether it is expanded. A node may be expanded before it has children.
  virtual void NodeChanged(const TreeNode& node) = 0;
  /// Another node, or none, is selected.
  virtual void SelectionChanged() = 0;
  /// Scrolls as little as is needed.
  virtual void EnsureVisible(const TreeNode& node) = 0;
  /// Scrolls so that `node` is the first one seen, as far as that can be.
  virtual void ScrollTo(const TreeNode& node) = 0;
  /// First node seen, and how many whole ones there is room for. Null in an empty tree.
  [[nodiscard]] virtual TreeNode* FirstSeen() = 0;
  [[nodiscard]] virtual int Room() = 0;
};

}  // namespace tavrix::viewkit
