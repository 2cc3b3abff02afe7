#include "viewkit/tree/tree_node.h"

#include <utility>

#include "viewkit/tree/tree_view.h"

namespace tavrix::viewkit {

int TreeNode::Index() const {
  if (tree_ == nullptr) return 0;
  tree_->nodes_.Compact();
  return static_cast<int>(slot_) + 1;
}

bool TreeNode::IsBelow(const TreeNode& ancestor) const {
  for (const TreeNode* node = parent_; node != nullptr; node = node->parent_) {
    if (node == &ancestor) return true;
  }
  return false;
}

bool TreeNode::IsShown() const {
  for (const TreeNode* node = parent_; node != nullptr; node = node->parent_) {
    if (!node->expanded_) return false;
  }
  return true;
}

void TreeNode::Changed() const {
  if (tree_ != nullptr && tree_->window_ != nullptr) tree_->window_->NodeChanged(*this);
}

void TreeNode::SetText(std::string text) {
  if (text_ == text) return;
  text_ = std::move(text);
  Changed();
}

void TreeNode::SetLook(const Look& look) {
  if (look_ == look) return;
  look_ = look;
  Changed();
}

void TreeNode::SetExpanded(bool expanded) {
  if (tree_ == nullptr || expanded_ == expanded) return;
  expanded_ = expanded;
  Changed();
  tree_->ExpandedChanged(*this);
}

bool TreeNode::Selected() const {
  return tree_ != nullptr && tree_->SelectedItem() == this;
}

void TreeNode::SetSelected(bool selected) {
  if (tree_ == nullptr || Selected() == selected) return;
  tree_->Select(selected ? this : nullptr);
}

void TreeNode::EnsureVisible() {
  if (tree_ == nullptr) return;
  for (TreeNode* node = parent_; node != nullptr; node = node->parent_) node->SetExpanded(true);
  if (tree_ != nullptr) tree_->ShowNode(*this);  // an event may have removed the node
}

TreeNode* NextInOutline(const TreeNode& node, const TreeNode* top) {
  if (node.FirstChild() != nullptr) return node.FirstChild();
  for (const TreeNode* at = &node; at != nullptr && at != top; at = at->Parent()) {
    if (at->Next() != nullptr) return at->Next();
  }
  return nullptr;
}

TreeNode* PreviousInOutline(const TreeNode& node) {
  TreeNode* at = node.Previous();
  if (at == nullptr) return node.Parent();
  while (at->LastChild() != nullptr) at = at->LastChild();
  return at;
}

TreeNode* NextShown(const TreeNode& node) {
  if (node.Expanded() && node.FirstChild() != nullptr) return node.FirstChild();
  for (const TreeNode* at = &node; at != nullptr; at = at->Parent()) {
    if (at->Next() != nullptr) return at->Next();
  }
  return nullptr;
}

TreeNode* PreviousShown(const TreeNode& node) {
  TreeNode* at = node.Previous();
  if (at == nullptr) return node.Parent();
  while (at->Expanded() && at->LastChild() != nullptr) at = at->LastChild();
  return at;
}

TreeNode* Walk(TreeNode* from, TreeNode* (*next)(const TreeNode&), int steps) {
  TreeNode* at = from;
  for (TreeNode* to = at; to != nullptr && steps >= 0; to = next(*to), --steps) at = to;
  return at;
}

}  // namespace tavrix::viewkit
