#pragma once

#include <windows.h>

#include <commctrl.h>

#include <optional>
#include <unordered_map>
#include <vector>

#include "viewkit/tree/tree_view.h"
#include "viewkit/win32/native_peer.h"

namespace tavrix::viewkit::win32 {

/// The system's tree control, kept in step with the model in both directions. An item carries the
/// id of its node.
class TreePeer : public PeerOf<TreeView, NativePeer>, public TreeWindow {
 public:
  using PeerOf::PeerOf;
  void Open() override;
  void OnFontChanged() override;
  [[nodiscard]] bool WantsKey(Key key, Modifiers modifiers) const override;
  std::optional<LRESULT> OnNotify(UINT message, WPARAM wparam, LPARAM lparam) override;

  // As messages see it.
  std::intptr_t Send(unsigned message, std::uintptr_t wparam, std::intptr_t lparam) override;
  std::intptr_t SendRecord(unsigned message, const TreeItemRecord& record) override;
  // Following the model.
  void NodeAdded(const TreeNode& node) override;
  void NodeMoved(const TreeNode& node) override;
  void NodeRemoving(const TreeNode& node) override;
  void NodeChanged(const TreeNode& node) override;
  void SelectionChanged() override;
  void EnsureVisible(const TreeNode& node) override;
  void ScrollTo(const TreeNode& node) override;
  [[nodiscard]] TreeNode* FirstSeen() override;
  [[nodiscard]] int Room() override;

 protected:
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnDestroyed() override;
  void OnContent(const Change&) override {}
  void ApplyState() override;

 private:
  // --- following the model (tree_peer.cpp)
  [[nodiscard]] HTREEITEM ItemOf(const TreeNode* node) const;
  [[nodiscard]] TreeNode* NodeOf(HTREEITEM item) const;
  void Insert(const TreeNode& node);
  void InsertWithAllBelow(const TreeNode& node);
  void DeleteItem(HTREEITEM item);
  void ShowNode(const TreeNode& node);
  void ShowExpanded(const TreeNode& node);

  // --- the user's input (tree_peer_input.cpp)
  /// What the user has done in the native control. Who hears of it may end the window, which the
  /// control does not survive: it is told when the control has handled its message.
  struct Action {
    enum class Kind { kSelect, kExpand, kCollapse, kDrag, kMenu };
    Kind kind;
    std::intptr_t value;  ///< the node's id, 0 for none; for a menu, where
  };
  void Postpone(Action::Kind kind, HTREEITEM item);
  void RunPending();
  void Run(const Action& action);
  std::optional<LRESULT> OnTreeNotice(const NMHDR& header);
  void OnSelected(const NMTREEVIEWW& notice);
  void OnExpanded(const NMTREEVIEWW& notice);
  void OnDeleted(const NMTREEVIEWW& notice);
  void OnClick();
  LRESULT OnCustomDraw(NMTVCUSTOMDRAW& draw) const;
  void AskForMenu(LPARAM where);
  bool OnDrag(UINT message, WPARAM wparam, LPARAM lparam);
  void EndDrag(bool drop, POINT point);
  void ToggleCheck(TreeNode& node);
  [[nodiscard]] TreeNode* NodeAt(POINT point, UINT* where = nullptr) const;

  std::unordered_map<std::intptr_t, HTREEITEM> items_;
  bool following_ = false;  // what the native control reports now is the model's own doing
  const TreeNode* toggling_ = nullptr;  // the control shows its new check mark by itself
  bool handling_ = false;               // the native control is at work on a message
  std::vector<Action> pending_;
  bool closing_ = false;  // the native control drops its items because it goes, not the nodes
};

}  // namespace tavrix::viewkit::win32
