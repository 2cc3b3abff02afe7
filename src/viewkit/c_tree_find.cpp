#include <utility>

#include "host/text.h"
#include "viewkit/c_tree_view.h"

// Finding nodes by text, key and tag.
namespace tavrix::viewkit {

TreeNode& cTreeView::Found(TreeNode** result, TreeNode& node) {
  if (result != nullptr) *result = &node;
  last_index_ = node.Index();
  return node;
}

bool cTreeView::FindFrom(TreeNode* first, TreeNode** result, const std::string& text, bool select) {
  const std::string wanted = host::UpperCase(text);
  for (TreeNode* node = first; node != nullptr; node = NextInOutline(*node)) {
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
  // Taking the nodes by index and looking below each in turn meets every node first in the order in
  // which the outline has it.
  return FindFrom(ctrl_->Nodes().FirstRoot(), oResultNode, NodeText, bSelect);
}

bool cTreeView::NodeFindNext(TreeNode** oResultNode, std::string NodeText,
                             std::optional<int> FromNodeIndex, bool bSelect) {
  if (oResultNode != nullptr) *oResultNode = nullptr;
  if (ctrl_ == nullptr) return false;
  if (NodeText.empty()) NodeText = last_text_;
  const int from = FromNodeIndex.value_or(last_index_);
  if (NodeText.empty() || from < 1 || from > ctrl_->Nodes().Count()) return false;
  last_text_ = NodeText;
  return FindFrom(NextInOutline(ctrl_->Nodes().Item(from)), oResultNode, NodeText, bSelect);
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
