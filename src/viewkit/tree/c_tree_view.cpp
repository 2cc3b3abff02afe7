#include "viewkit/tree/c_tree_view.h"

#include <utility>

#include "host/non_copyable.h"
#include "viewkit/tree/m_tree_view.h"

namespace tavrix::viewkit {

/// While it lives, selecting a node raises no `Selected`.
class cTreeView::Quiet : private host::NonCopyable {
 public:
  explicit Quiet(cTreeView& helper) : helper_(helper) { ++helper_.quiet_; }
  ~Quiet() { --helper_.quiet_; }

 private:
  cTreeView& helper_;
};

void cTreeView::HookCtrl(TreeView& ctrl, const ImageList* oImgList) {
  static constexpr const char* kDragPicture = "DRAGICON";
  UnHookCtrl();
  ctrl_ = &ctrl;
  drag_picture_ = oImgList != nullptr && oImgList->Has(kDragPicture) ? kDragPicture : "";

  const auto hook = [this](auto& event, auto listener) {
    const int id = event.Add(std::move(listener));
    unhook_.push_back([&event, id] { event.Remove(id); });
  };
  hook(ctrl.NodeSelected, [this](TreeNode& node) {
    if (quiet_ == 0) Selected.Raise(node);
  });
  hook(ctrl.BeginDrag, [this](TreeNode& node) { OnBeginDrag(node); });
  hook(ctrl.DragOver, [this](TreeNode* target) { OnDragOver(target); });
  hook(ctrl.Drop, [this](TreeNode* target) { OnDrop(target); });
  hook(ctrl.DragCancel, [this] { OnDragCancel(); });
  hook(ctrl.ContextRequested, [this](TreeNode* node) { OnContext(node); });
}

void cTreeView::UnHookCtrl() {
  if (ctrl_ == nullptr) return;
  for (const auto& unhook : unhook_) unhook();
  unhook_.clear();
  OnDragCancel();
  ctrl_ = nullptr;
  last_text_.clear();
  last_index_ = 0;
}

bool cTreeView::Owns(const TreeNode* node) const {
  return ctrl_ != nullptr && node != nullptr && ctrl_->Nodes().FindId(node->Id()) == node;
}

void cTreeView::SelectAndShow(TreeNode& node, bool select) {
  const auto keep = node.shared_from_this();
  if (select) {
    const Quiet quiet(*this);
    ctrl_->Select(&node);
  }
  node.EnsureVisible();
  if (select) Selected.Raise(*keep);
}

TreeNode* cTreeView::NodeAdd(const NewNode& wanted) {
  if (ctrl_ == nullptr) return nullptr;
  TreeNode& node =
      ctrl_->Nodes().Add(wanted.vRelative, wanted.eRelationship, wanted.sKey, wanted.sText);
  TreeNode::Look look;
  look.image = wanted.vImage;
  look.selected_image = wanted.vSelectedImage;
  look.bold = wanted.bBold;
  look.checked = wanted.bChecked;
  node.SetLook(look);
  if (wanted.bEnsureVisible) node.EnsureVisible();
  node.SetExpanded(wanted.bExpanded);
  if (wanted.bSelected) {
    const Quiet quiet(*this);
    node.SetSelected(true);
  }
  look.fore = wanted.lForeColor;
  look.back = wanted.lBackColor;
  look.expanded_image = wanted.vExpandedImage;
  node.SetLook(look);
  if (wanted.bVisible) node.EnsureVisible();
  return &node;
}

void cTreeView::ClearTreeView() {
  if (ctrl_ == nullptr) return;
  mTreeView::DeleteAllItems(*ctrl_);
  ctrl_->Nodes().Clear();  // what the window did not tell the model of
  last_index_ = 0;
}

bool cTreeView::NodeDelete(TreeNode* Node, bool bSelect) {
  if (!Owns(Node)) return false;
  TreeNode* neighbour = Node->Next();
  if (neighbour == nullptr) neighbour = Node->Previous();
  if (neighbour == nullptr) neighbour = Node->Parent();
  ctrl_->Nodes().Remove(*Node);
  if (bSelect && neighbour != nullptr) SelectAndShow(*neighbour, true);
  return true;
}

bool cTreeView::NodeRename(TreeNode* Node, const std::string& NewNodeText, bool bSelect) {
  if (!Owns(Node)) return false;
  Node->SetText(NewNodeText);
  if (bSelect) SelectAndShow(*Node, true);
  return true;
}

bool cTreeView::NodeMove(TreeNode* ParentNode, TreeNode* ChildNode, bool bSelect) {
  if (!Owns(ParentNode) || !Owns(ChildNode)) return false;
  if (ParentNode == ChildNode || ParentNode->IsBelow(*ChildNode)) return false;
  ctrl_->Nodes().Move(*ChildNode, ParentNode);
  ParentNode->SetExpanded(true);
  SelectAndShow(*ChildNode, bSelect);
  return true;
}

TreeNode* cTreeView::CopyOne(TreeNode& destination, const TreeNode& source) {
  TreeNode& copy = ctrl_->Nodes().Add(&destination, Relationship::kChild, {}, source.Text());
  copy.SetTag(source.Tag());
  TreeNode::Look look = source.GetLook();
  look.cut = false;  // marks the original as about to be moved
  copy.SetLook(look);
  return &copy;
}

bool cTreeView::NodeCopy(TreeNode* DestNode, TreeNode* SrcNode, bool IncludeChildren) {
  if (!Owns(DestNode) || !Owns(SrcNode)) return false;
  // Listed before the first copy is made: the destination may stand below the source, and a
  // listener may change the tree.
  struct Step {
    std::weak_ptr<TreeNode> source;
    std::size_t parent;  // position of the parent's step, from 1; 0 for the destination
    bool expanded;
  };
  std::vector<Step> steps;
  std::vector<std::weak_ptr<TreeNode>> copies = {DestNode->weak_from_this()};
  const auto list = [&](const auto& self, TreeNode& node, std::size_t parent) -> void {
    steps.push_back({node.weak_from_this(), parent, node.Expanded()});
    const std::size_t position = steps.size();
    if (!IncludeChildren) return;
    for (TreeNode* child = node.FirstChild(); child != nullptr; child = child->Next()) {
      self(self, *child, position);
    }
  };
  list(list, *SrcNode, 0);

  cancel_copy_ = false;
  for (const Step& step : steps) {
    const auto source = step.source.lock();
    const auto parent = copies[step.parent].lock();
    if (cancel_copy_ || !source || !parent || !Owns(source.get()) || !Owns(parent.get())) {
      return false;
    }
    const auto copy = CopyOne(*parent, *source)->shared_from_this();
    copies.push_back(copy);
    CopyNode.Raise(*source, *copy);
    if (Owns(copy.get())) copy->SetExpanded(step.expanded);
  }
  return !cancel_copy_;
}

std::string cTreeView::ParentNodeText(const TreeNode* Node) const {
  return Owns(Node) && Node->Parent() != nullptr ? Node->Parent()->Text() : std::string();
}

bool cTreeView::IsChildNode(const TreeNode* TestNode, const TreeNode* ParentNode,
                            int* NodeDepth) const {
  if (NodeDepth != nullptr) *NodeDepth = 0;
  if (!Owns(TestNode) || !Owns(ParentNode) || !TestNode->IsBelow(*ParentNode)) return false;
  int depth = 0;
  for (const TreeNode* at = TestNode; at != ParentNode; at = at->Parent()) ++depth;
  if (NodeDepth != nullptr) *NodeDepth = depth;
  return true;
}

bool cTreeView::IsParentNode(const TreeNode* ChildNode, const TreeNode* ParentNode) const {
  return IsChildNode(ChildNode, ParentNode);
}

bool cTreeView::IsRootNode(const TreeNode* Node) const {
  return Owns(Node) && Node->Parent() == nullptr;
}

bool cTreeView::IsSelected() const {
  return ctrl_ != nullptr && ctrl_->SelectedItem() != nullptr;
}

}  // namespace tavrix::viewkit
