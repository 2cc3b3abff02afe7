#include "viewkit/tree/tree_nodes.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "viewkit/tree/tree_view.h"

namespace tavrix::viewkit {

TreeNodes::~TreeNodes() {
  // Nodes may outlive the tree in the hands of others.
  for (const auto& node : nodes_) {
    if (node) node->tree_ = nullptr;
  }
}

TreeNode*& TreeNodes::First(TreeNode* parent) {
  return parent == nullptr ? first_root_ : parent->first_child_;
}

TreeNode*& TreeNodes::Last(TreeNode* parent) {
  return parent == nullptr ? last_root_ : parent->last_child_;
}

void TreeNodes::Link(TreeNode& node, TreeNode* parent, TreeNode* before) {
  node.parent_ = parent;
  node.next_ = before;
  node.previous_ = before == nullptr ? Last(parent) : before->previous_;
  (node.previous_ == nullptr ? First(parent) : node.previous_->next_) = &node;
  (before == nullptr ? Last(parent) : before->previous_) = &node;
  if (parent != nullptr) ++parent->children_;
}

void TreeNodes::Unlink(TreeNode& node) {
  TreeNode* parent = node.parent_;
  (node.previous_ == nullptr ? First(parent) : node.previous_->next_) = node.next_;
  (node.next_ == nullptr ? Last(parent) : node.next_->previous_) = node.previous_;
  node.parent_ = node.next_ = node.previous_ = nullptr;
  if (parent != nullptr) --parent->children_;
}

TreeNode& TreeNodes::Add(TreeNode* relative, Relationship relationship, std::string key,
                         std::string text) {
  if (!key.empty() && Find(key) != nullptr) throw std::invalid_argument("树中已有该键：" + key);
  const auto node = std::make_shared<TreeNode>(TreeNode::Token{});
  node->tree_ = &tree_;
  node->id_ = ++last_id_;
  node->slot_ = nodes_.size();
  node->key_ = std::move(key);
  node->text_ = std::move(text);
  nodes_.push_back(node);
  by_id_.emplace(node->id_, node.get());
  if (!node->key_.empty()) by_key_.emplace(node->key_, node.get());

  if (relationship == Relationship::kChild && relative != nullptr) {
    Link(*node, relative, nullptr);
  } else {
    TreeNode* parent = relative == nullptr ? nullptr : relative->parent_;
    TreeNode* before = nullptr;
    if (relationship == Relationship::kFirst) before = First(parent);
    if (relationship == Relationship::kNext && relative != nullptr) before = relative->next_;
    if (relationship == Relationship::kPrevious && relative != nullptr) before = relative;
    Link(*node, parent, before);
  }
  if (tree_.window_ != nullptr) tree_.window_->NodeAdded(*node);
  return *node;
}

void TreeNodes::Remove(TreeNode& node) {
  if (tree_.window_ != nullptr) tree_.window_->NodeRemoving(node);
  Drop(node);
}

void TreeNodes::Clear() {
  while (first_root_ != nullptr) Remove(*first_root_);
}

void TreeNodes::Move(TreeNode& node, TreeNode* parent) {
  if (parent == &node || (parent != nullptr && parent->IsBelow(node))) {
    throw std::invalid_argument("不能把节点移到其自身之下");
  }
  Unlink(node);
  Link(node, parent, nullptr);
  if (tree_.window_ != nullptr) tree_.window_->NodeMoved(node);
}

void TreeNodes::Drop(TreeNode& node) {
  Unlink(node);
  std::vector<TreeNode*> doomed = {&node};
  for (TreeNode* at = NextInOutline(node, &node); at != nullptr; at = NextInOutline(*at, &node)) {
    doomed.push_back(at);
  }
  for (TreeNode* each : doomed) Forget(*each);
  if (by_id_.empty()) nodes_.clear();
}

void TreeNodes::Forget(TreeNode& node) {
  tree_.NodeGone(node);
  if (!node.key_.empty()) by_key_.erase(node.key_);
  by_id_.erase(node.id_);
  node.tree_ = nullptr;
  node.parent_ = node.first_child_ = node.last_child_ = node.next_ = node.previous_ = nullptr;
  node.children_ = 0;
  nodes_[node.slot_].reset();  // may be the end of the node
}

void TreeNodes::Compact() const {
  if (nodes_.size() == by_id_.size()) return;
  std::erase(nodes_, nullptr);
  for (std::size_t slot = 0; slot < nodes_.size(); ++slot) nodes_[slot]->slot_ = slot;
}

TreeNode& TreeNodes::Item(int index) const {
  if (index < 1 || index > Count()) throw std::out_of_range("树中没有该节点");
  Compact();
  return *nodes_[static_cast<std::size_t>(index) - 1];
}

TreeNode& TreeNodes::Item(std::string_view key) const {
  TreeNode* node = Find(key);
  if (node == nullptr) throw std::out_of_range("树中没有该节点");
  return *node;
}

TreeNode* TreeNodes::Find(std::string_view key) const {
  const auto found = by_key_.find(key);
  return found == by_key_.end() ? nullptr : found->second;
}

TreeNode* TreeNodes::FindId(std::intptr_t id) const {
  const auto found = by_id_.find(id);
  return found == by_id_.end() ? nullptr : found->second;
}

}  // namespace tavrix::viewkit
