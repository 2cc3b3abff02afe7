#pragma once

#include <string>

#include "viewkit/control.h"
#include "viewkit/tree/native_tree.h"
#include "viewkit/tree/tree_nodes.h"

namespace tavrix::viewkit {

/// The common-controls tree (`TreeView`). 10,000 nodes below one are ordinary work for it.
///
/// The user's input comes in through the nodes' setters and, for what is no state of a node, by
/// raising the input events below; so does the window's.
class TreeView : public Control {
 public:
  explicit TreeView(std::string name, std::optional<int> index = {});
  ~TreeView() override;

  [[nodiscard]] std::string TypeName() const override { return "TreeView"; }

  [[nodiscard]] TreeNodes& Nodes() { return nodes_; }
  [[nodiscard]] const TreeNodes& Nodes() const { return nodes_; }
  /// Null when no node is selected.
  [[nodiscard]] TreeNode* SelectedItem() const { return selected_; }
  /// `node` belongs to the tree or is null. Raises `NodeSelected` when another one is selected now.
  void Select(TreeNode* node);

  /// First and last node that is seen; null in an empty tree. Without a window the control's height
  /// counts.
  [[nodiscard]] TreeNode* FirstSeen() const;
  [[nodiscard]] TreeNode* LastSeen() const;
  /// How many whole nodes there is room for, at least 1.
  [[nodiscard]] int Room() const;
  /// Scrolls so that the shown node `node` is the first one seen.
  void ScrollTo(TreeNode& node);

  /// Check boxes before the nodes.
  [[nodiscard]] bool CheckBoxes() const { return check_boxes_; }
  void SetCheckBoxes(bool check_boxes);
  /// What answers messages: the window, else the model itself. A test may put a double in its
  /// place.
  [[nodiscard]] NativeTree& Native() const { return *native_; }
  void SetNative(NativeTree* native);
  /// The window that follows the model; it answers messages too. Null when it goes away.
  void SetWindow(TreeWindow* window);
  /// The native control has deleted the item of the node with this id. False when the node is gone.
  bool HandleNativeDelete(std::intptr_t id);
  /// A message has changed the state of that item. As above.
  bool HandleNativeState(std::intptr_t id, const TreeItemRecord& record);
  /// Whether the window paints, as far as the model was told by a message.
  [[nodiscard]] bool Painting() const { return painting_; }

  /// A key of the user without a window: moves the selection as the native control does. True when
  /// the key moves in a tree. `KeyDown` is raised by the caller, before.
  bool HandleKey(Key key, Modifiers modifiers = {});
  [[nodiscard]] static bool IsMoveKey(Key key);

  /// While set, the window follows the pointer and raises `DragOver`, then `Drop` or `DragCancel`.
  [[nodiscard]] bool Dragging() const { return dragging_; }
  /// Name of the picture that was asked for, which no window draws; empty for none.
  [[nodiscard]] const std::string& DragPicture() const { return drag_picture_; }
  void StartDragging(std::string picture);
  void StopDragging();
  /// The node that is marked as the place of a drop; null for none.
  [[nodiscard]] TreeNode* DropTarget() const { return drop_target_; }
  void SetDropTarget(TreeNode* node);

  Event<TreeNode&> NodeSelected;  ///< whoever selected it
  Event<TreeNode&> Expanded;
  Event<TreeNode&> Collapsed;

  // Input that the window, or a test, raises.
  Event<TreeNode&> BeginDrag;         ///< the pointer left a node with the button held
  Event<TreeNode*> DragOver;          ///< node under the pointer, null for none
  Event<TreeNode*> Drop;              ///< the button was released over it
  Event<> DragCancel;                 ///< Escape, or the capture was lost
  Event<TreeNode*> ContextRequested;  ///< right button or menu key; null on the empty area

 private:
  friend class TreeNode;
  friend class TreeNodes;
  class OwnAnswers;

  void NodeGone(TreeNode& node);
  void ExpandedChanged(TreeNode& node);
  void ShowNode(TreeNode& node);
  [[nodiscard]] TreeNode* KeyTarget(Key key) const;

  std::unique_ptr<OwnAnswers> own_answers_;
  NativeTree* native_;
  TreeWindow* window_ = nullptr;
  TreeNode* selected_ = nullptr;
  TreeNode* top_ = nullptr;  // first node seen when there is no window; null for the first root
  TreeNode* drop_target_ = nullptr;
  std::string drag_picture_;
  bool check_boxes_ = false;
  bool painting_ = true;
  bool dragging_ = false;
  TreeNodes nodes_;  // last: its end lets go of the members above
};

}  // namespace tavrix::viewkit
