#include "viewkit/tree/c_tree_view.h"
#include "viewkit/tree/m_tree_view.h"

// Showing and scrolling, moving the selection, dragging and the context menu.
namespace tavrix::viewkit {

namespace {

template <class Visit>
void ForSubtree(TreeNode* top, Visit visit) {
  for (TreeNode* node = top; node != nullptr; node = NextInOutline(*node, top)) visit(*node);
}

}  // namespace

void cTreeView::Redraw(bool Enabled) {
  if (ctrl_ != nullptr) mTreeView::Redraw(*ctrl_, Enabled);
}

bool cTreeView::CutIconState(bool SetState) {
  if (!IsSelected()) return false;
  return mTreeView::SetNodeState(*ctrl_, *ctrl_->SelectedItem(), tree_message::kCut,
                                 SetState ? tree_message::kCut : 0);
}

void cTreeView::CollapseAll() {
  if (ctrl_ == nullptr) return;
  for (int index = 1; index <= ctrl_->Nodes().Count(); ++index) {
    ctrl_->Nodes().Item(index).SetExpanded(false);
  }
}

void cTreeView::ExpandAll() {
  if (ctrl_ == nullptr) return;
  for (int index = 1; index <= ctrl_->Nodes().Count(); ++index) {
    ctrl_->Nodes().Item(index).SetExpanded(true);
  }
}

void cTreeView::CollapseChildNodes(TreeNode* Node) {
  if (Owns(Node)) ForSubtree(Node, [](TreeNode& node) { node.SetExpanded(false); });
}

void cTreeView::ExpandChildNodes(TreeNode* Node) {
  if (Owns(Node)) ForSubtree(Node, [](TreeNode& node) { node.SetExpanded(true); });
}

TreeNode* cTreeView::NodeFirstViewable() const {
  return ctrl_ == nullptr ? nullptr : ctrl_->FirstSeen();
}

TreeNode* cTreeView::NodeLastViewable() const {
  return ctrl_ == nullptr ? nullptr : ctrl_->LastSeen();
}

TreeNode* cTreeView::ScrollTarget(Scroll direction) const {
  TreeNode* first = ctrl_->FirstSeen();
  switch (direction) {
    case Scroll::kLineUp:
      return Walk(first, PreviousShown, 1);
    case Scroll::kLineDown:
      return Walk(first, NextShown, 1);
    case Scroll::kPageUp:
      return Walk(first, PreviousShown, ctrl_->Room());
    case Scroll::kPageDown:
      return Walk(first, NextShown, ctrl_->Room());
    case Scroll::kTop:
      return ctrl_->Nodes().FirstRoot();
    case Scroll::kBottom:
      return Walk(first, NextShown, kAllTheWay);
  }
  return nullptr;
}

void cTreeView::ScrollView(Scroll Dir) {
  if (ctrl_ == nullptr) return;
  if (TreeNode* target = ScrollTarget(Dir); target != nullptr) ctrl_->ScrollTo(*target);
}

bool cTreeView::MoveNodeNext() {
  if (ctrl_ == nullptr) return false;
  TreeNode* next =
      IsSelected() ? NextInOutline(*ctrl_->SelectedItem()) : ctrl_->Nodes().FirstRoot();
  if (next == nullptr) return false;
  SelectAndShow(*next, true);
  return true;
}

bool cTreeView::MoveNodePrevious() {
  if (!IsSelected()) return false;
  TreeNode* previous = PreviousInOutline(*ctrl_->SelectedItem());
  if (previous == nullptr) return false;
  SelectAndShow(*previous, true);
  return true;
}

bool cTreeView::ReSelectItem(TreeNode* poNode) {
  if (ctrl_ == nullptr) return false;
  TreeNode* node = Owns(poNode) ? poNode : ctrl_->SelectedItem();
  if (node == nullptr) node = ctrl_->Nodes().FirstRoot();
  if (node == nullptr) return false;
  SelectAndShow(*node, true);
  return true;
}

void cTreeView::OnBeginDrag(TreeNode& node) {
  if (!DragEnabled || !dragged_.expired()) return;
  const auto source = node.shared_from_this();
  bool allow = true;
  StartDrag.Raise(*source, allow);
  if (!allow || !Owns(source.get())) return;
  dragged_ = source;
  ctrl_->StartDragging(drag_picture_);
}

bool cTreeView::MayDrop(TreeNode& source, TreeNode* target) {
  if (!Owns(target)) return false;
  const auto keep = target->shared_from_this();
  bool allow = target != &source && target != source.Parent() && !target->IsBelow(source);
  Dragging.Raise(source, *keep, allow);
  return allow && Owns(&source) && Owns(keep.get());
}

void cTreeView::OnDragOver(TreeNode* target) {
  const auto source = dragged_.lock();
  if (!source || !Owns(source.get())) return OnDragCancel();
  const bool may_drop = MayDrop(*source, target);
  if (ctrl_ != nullptr) ctrl_->SetDropTarget(may_drop ? target : nullptr);
}

void cTreeView::OnDrop(TreeNode* target) {
  const auto source = dragged_.lock();
  if (!source || !Owns(source.get())) return OnDragCancel();
  const bool may_drop = MayDrop(*source, target);
  OnDragCancel();  // over before the listener acts: it may show a dialog
  if (may_drop && Owns(source.get()) && Owns(target)) Dropped.Raise(*source, *target);
}

void cTreeView::OnDragCancel() {
  dragged_.reset();
  if (ctrl_ != nullptr) ctrl_->StopDragging();
}

void cTreeView::OnContext(TreeNode* node) {
  if (node == nullptr) {
    if (ContextMenuMode == kTreeMenu) ContextMenu.Raise(nullptr);
    return;
  }
  if (ContextMenuMode != kNodeMenu && ContextMenuMode != kTreeMenu) return;
  const auto keep = node->shared_from_this();
  keep->SetSelected(true);  // the menu is about the node under the pointer
  if (Owns(keep.get())) ContextMenu.Raise(keep.get());
}

}  // namespace tavrix::viewkit
