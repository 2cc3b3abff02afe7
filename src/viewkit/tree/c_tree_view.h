#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "host/non_copyable.h"
#include "viewkit/event.h"
#include "viewkit/ports.h"
#include "viewkit/tree/image_list.h"
#include "viewkit/tree/tree_view.h"

namespace tavrix::viewkit {

/// A small vocabulary of tree operations over one tree. While no tree is hooked every operation
/// does nothing and gives false, nothing or null. Node arguments belong to the hooked tree.
///
/// `Selected` is raised once for each selection, whether the user, the host or an operation made
/// it.
class cTreeView : private host::NonCopyable {
 public:
  /// `user` answers the find prompt and must outlive the helper.
  explicit cTreeView(UserPort& user) : user_(user) {}
  ~cTreeView() { UnHookCtrl(); }

  /// The tree must outlive the helper or be unhooked before. An image list with a picture named
  /// "DRAGICON" gives the drag picture; nothing else of it is used.
  void HookCtrl(TreeView& ctrl, const ImageList* oImgList = nullptr);
  void UnHookCtrl();
  /// Null when none is hooked.
  [[nodiscard]] TreeView* ctrl() const { return ctrl_; }

  // --- adding and removing
  struct NewNode {
    TreeNode* vRelative = nullptr;
    Relationship eRelationship = Relationship::kNext;
    std::string sKey = {};
    std::string sText = {};
    std::string vImage = {};
    std::string vSelectedImage = {};
    bool bBold = false;
    bool bChecked = false;
    bool bEnsureVisible = false;
    bool bExpanded = false;
    bool bSelected = false;  ///< without `Selected`: it is the caller who selects
    bool bVisible = false;   ///< scrolls into view again, after all else was set
    Color lForeColor = color::kDefault;
    Color lBackColor = color::kDefault;
    std::string vExpandedImage = {};
  };
  /// Throws `std::invalid_argument` when the key stands already.
  TreeNode* NodeAdd(const NewNode& wanted);
  /// Removes every node through the native window, which does not paint afterwards.
  void ClearTreeView();
  /// With `bSelect` the next sibling, else the previous one, else the parent is selected.
  bool NodeDelete(TreeNode* Node, bool bSelect = false);
  bool NodeRename(TreeNode* Node, const std::string& NewNodeText, bool bSelect = false);
  /// Makes the child the last one below the parent, which is expanded. False when the parent is the
  /// child itself or stands below it.
  bool NodeMove(TreeNode* ParentNode, TreeNode* ChildNode, bool bSelect = false);
  /// Copies a node, and as asked all below it, to the end of another one's children; keys stay with
  /// the originals. False when it was cancelled; what was copied until then stays.
  bool NodeCopy(TreeNode* DestNode, TreeNode* SrcNode, bool IncludeChildren = true);
  /// Stops a running `NodeCopy` before its next node.
  void CancelCopy(bool IsCancelled) { cancel_copy_ = IsCancelled; }

  // --- finding. `oResultNode` may be null; it is set to null when nothing is found.
  /// Asks for the text when it is empty, even when a key is given: only the key decides then.
  /// Otherwise the first node in outline order whose text contains `NodeText`, without case.
  bool NodeFind(TreeNode** oResultNode, std::string NodeText = {}, const std::string& NodeKey = {},
                bool bSelect = true);
  /// The first match after the node with index `FromNodeIndex`. Text and index may be left out:
  /// those of the last find are taken.
  bool NodeFindNext(TreeNode** oResultNode, std::string NodeText = {},
                    std::optional<int> FromNodeIndex = {}, bool bSelect = true);
  /// With a key only the node that has it, and those below it, are looked at.
  bool NodeFindTag(TreeNode** oResultNode, const std::string& NodeTag = {},
                   const std::string& NodeKey = {});

  // --- asking
  [[nodiscard]] std::string ParentNodeText(const TreeNode* Node) const;
  /// `NodeDepth` receives 1 for a child, 2 for its children and so on; 0 when it is none.
  [[nodiscard]] bool IsChildNode(const TreeNode* TestNode, const TreeNode* ParentNode,
                                 int* NodeDepth = nullptr) const;
  [[nodiscard]] bool IsParentNode(const TreeNode* ChildNode, const TreeNode* ParentNode) const;
  [[nodiscard]] bool IsRootNode(const TreeNode* Node) const;
  [[nodiscard]] bool IsSelected() const;
  [[nodiscard]] TreeNode* NodeFirstViewable() const;
  [[nodiscard]] TreeNode* NodeLastViewable() const;

  // --- showing
  /// See `mTreeView::Redraw`: setting stops the painting, clearing resumes it.
  void Redraw(bool Enabled);
  /// The cut look of the selected node. False when none is selected.
  bool CutIconState(bool SetState);
  void CollapseAll();
  void ExpandAll();
  void CollapseChildNodes(TreeNode* Node);
  void ExpandChildNodes(TreeNode* Node);
  /// Numbered as the system's scroll commands.
  enum class Scroll {
    kLineUp = 0,
    kLineDown = 1,
    kPageUp = 2,
    kPageDown = 3,
    kTop = 6,
    kBottom = 7
  };
  /// Any other number does nothing.
  void ScrollView(Scroll Dir);

  // --- moving the selection. True when it moved.
  /// To the first child, else the next sibling, else that of the nearest node above that has one;
  /// without a selection to the first root.
  bool MoveNodeNext();
  /// The way back: to the last node below the previous sibling, else the parent.
  bool MoveNodePrevious();
  /// Selects a node (the selected one, else the first root) once more and raises `Selected`.
  bool ReSelectItem(TreeNode* poNode = nullptr);

  // --- dragging and the context menu
  bool DragEnabled = false;
  enum ContextMenuModes { kNoMenu = 0, kNodeMenu = 1, kTreeMenu = 2 };
  /// `kNodeMenu`: on nodes, `kTreeMenu`: on the empty area too.
  long ContextMenuMode = kNoMenu;

  /// A node is about to be dragged; clearing the flag stops it.
  Event<TreeNode&, bool& /*Allow*/> StartDrag;
  /// The pointer is over a node; the flag says whether it may be dropped there and can be changed.
  Event<TreeNode&, TreeNode&, bool& /*Allow*/> Dragging;
  /// Dropped on a node that allowed it. What that does is the listener's business (`NodeMove`,
  /// ...).
  Event<TreeNode&, TreeNode&> Dropped;
  Event<TreeNode*> ContextMenu;
  Event<TreeNode&> Selected;
  /// After each copied node, with the original and the copy.
  Event<TreeNode&, TreeNode&> CopyNode;

 private:
  class Quiet;

  [[nodiscard]] bool Owns(const TreeNode* node) const;
  void SelectAndShow(TreeNode& node, bool select);
  TreeNode& Found(TreeNode** result, TreeNode& node);
  /// Every node once: by index, each followed by those below it.
  [[nodiscard]] std::vector<TreeNode*> SearchOrder() const;
  [[nodiscard]] bool FindIn(std::span<TreeNode* const> nodes, TreeNode** result,
                            const std::string& text, bool select);
  TreeNode* CopyOne(TreeNode& destination, const TreeNode& source);
  [[nodiscard]] TreeNode* ScrollTarget(Scroll direction) const;

  void OnBeginDrag(TreeNode& node);
  void OnDragOver(TreeNode* target);
  void OnDrop(TreeNode* target);
  void OnDragCancel();
  void OnContext(TreeNode* node);
  [[nodiscard]] bool MayDrop(TreeNode& source, TreeNode* target);

  UserPort& user_;
  TreeView* ctrl_ = nullptr;
  std::vector<std::function<void()>> unhook_;
  std::string drag_picture_;
  std::weak_ptr<TreeNode> dragged_;
  std::string last_text_;
  int last_index_ = 0;
  bool cancel_copy_ = false;
  int quiet_ = 0;  // selections that are no event of their own
};

}  // namespace tavrix::viewkit
