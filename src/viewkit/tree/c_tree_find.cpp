#include <algorithm>
#include <iterator>
#include <utility>

#include "host/text.h"
#include "viewkit/tree/c_tree_view.h"

// Finding nodes by text, key and tag.
namespace tavrix::viewkit {

TreeNode& cTreeView::Found(TreeNode** result, TreeNode& node) {
  if (result != nullptr) *result = &node;
  last_index_ = node.Index();
  return node;
}

std::vector<TreeNode*> cTreeView::SearchOrder() const {
  const TreeNodes& nodes = ctrl_->Nodes();
  std::vector<TreeNode*> order;
  std::vector<bool> taken(static_cast<std::size_t>(nodes.Count()) + 1);
  for (int index = 1; index <= nodes.Count(); ++index) {
    TreeNode* top = &nodes.Item(index);
    for (TreeNode* node = top; node != nullptr; node = NextInOutline(*node, top)) {
      const auto position = static_cast<std::size_t>(node->Index());
      if (taken[position]) continue;
      taken[position] = true;
      order.push_back(node);
    }
  }
  return order;
}

bool cTreeView::FindIn(std::span<TreeNode* const> nodes, TreeNode** result, const std::string& text,
                       bool select) {
  const std::string wanted = host::UpperCase(text);
  for (TreeNode* node : nodes) {
    if (host::UpperCase(node->Text()).find(wanted) == std::string::npos) continue;
    Found(result, *node);
    if (select) SelectAndShow(*node, true);
    return true;
  }
  return false;
}

bool cTreeView::NodeFind(TreeNode** oResultNode, std::string NodeText, const std::string& NodeKey,
                         bool bSelect) {
  if (oResultNode != nullptr) *oResultNode = nullptr;
  if (ctrl_ == nullptr) return false;
  if (NodeText.empty()) NodeText = user_.Input("输入要查找的节点名称:", "查找记录");
  if (NodeText.empty() || ctrl_ == nullptr) return false;
  last_text_ = NodeText;
  last_index_ = 0;
  if (!NodeKey.empty()) {
    TreeNode* node = ctrl_->Nodes().Find(NodeKey);
    if (node == nullptr) return false;
    SelectAndShow(Found(oResultNode, *node), true);
    return true;
  }
  return FindIn(SearchOrder(), oResultNode, NodeText, bSelect);
}

bool cTreeView::NodeFindNext(TreeNode** oResultNode, std::string NodeText,
                             std::optional<int> FromNodeIndex, bool bSelect) {
  if (oResultNode != nullptr) *oResultNode = nullptr;
  if (ctrl_ == nullptr) return false;
  if (NodeText.empty()) NodeText = last_text_;
  const int from = FromNodeIndex.value_or(last_index_);
  if (NodeText.empty() || from < 1 || from > ctrl_->Nodes().Count()) return false;
  last_text_ = NodeText;
  const std::vector<TreeNode*> order = SearchOrder();
  const auto passed = std::find(order.begin(), order.end(), &ctrl_->Nodes().Item(from));
  return FindIn({std::next(passed), order.end()}, oResultNode, NodeText, bSelect);
}

bool cTreeView::NodeFindTag(TreeNode** oResultNode, const std::string& NodeTag,
                            const std::string& NodeKey) {
  if (oResultNode != nullptr) *oResultNode = nullptr;
  if (ctrl_ == nullptr) return false;
  const bool limited = !NodeKey.empty();
  TreeNode* top = limited ? ctrl_->Nodes().Find(NodeKey) : nullptr;
  if (limited && top == nullptr) return false;
  for (TreeNode* node = limited ? top : ctrl_->Nodes().FirstRoot(); node != nullptr;
       node = NextInOutline(*node, top)) {
    if (node->Tag() != NodeTag) continue;
    if (oResultNode != nullptr) *oResultNode = node;
    return true;
  }
  return false;
}

}  // namespace tavrix::viewkit
