#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "host/non_copyable.h"
#include "viewkit/color.h"

namespace tavrix::viewkit {

class TreeView;

/// One node of a tree (`Node`). Nodes are made, placed and removed by the tree's `TreeNodes` only.
/// A removed node is out of its tree: it keeps its key, text and tag, and nothing else may be asked
/// of it; whoever keeps a node over a call of others holds it by `weak_from_this` and asks
/// `InTree`.
class TreeNode : public std::enable_shared_from_this<TreeNode>, private host::NonCopyable {
  struct Token {};  // only `TreeNodes` can make one

 public:
  explicit TreeNode(Token) {}

  [[nodiscard]] bool InTree() const { return tree_ != nullptr; }
  /// Never used twice in one tree; the handle by which the model without a window knows the node.
  [[nodiscard]] std::intptr_t Id() const { return id_; }
  /// Empty when the node has none.
  [[nodiscard]] const std::string& Key() const { return key_; }
  /// Position in the collection, from 1, in the order of creation.
  [[nodiscard]] int Index() const;

  [[nodiscard]] TreeNode* Parent() const { return parent_; }
  [[nodiscard]] TreeNode* FirstChild() const { return first_child_; }
  [[nodiscard]] TreeNode* LastChild() const { return last_child_; }
  [[nodiscard]] TreeNode* Next() const { return next_; }
  [[nodiscard]] TreeNode* Previous() const { return previous_; }
  /// How many nodes stand directly below.
  [[nodiscard]] int Children() const { return children_; }
  /// This node stands below `ancestor`, on any level.
  [[nodiscard]] bool IsBelow(const TreeNode& ancestor) const;
  /// All nodes above it are expanded.
  [[nodiscard]] bool IsShown() const;

  [[nodiscard]] const std::string& Text() const { return text_; }
  void SetText(std::string text);
  /// The view's own mark; not shown.
  [[nodiscard]] const std::string& Tag() const { return tag_; }
  void SetTag(std::string tag) { tag_ = std::move(tag); }

  [[nodiscard]] bool Expanded() const { return expanded_; }
  /// Raises `Expanded` or `Collapsed`. Collapsing moves a selection below the node onto it.
  void SetExpanded(bool expanded);
  [[nodiscard]] bool Selected() const;
  /// Selecting raises `NodeSelected`; clearing leaves nothing selected.
  void SetSelected(bool selected);
  /// Expands all above it and scrolls it into view.
  void EnsureVisible();

  /// How a node is drawn. Images are names of pictures, empty for none; they are kept for
  /// whoever gave them, and no window draws them.
  struct Look {
    bool bold = false;
    bool checked = false;
    bool cut = false;
    Color fore = color::kDefault;
    Color back = color::kDefault;
    std::string image;
    std::string selected_image;
    std::string expanded_image;
    friend bool operator==(const Look&, const Look&) = default;
  };
  [[nodiscard]] const Look& GetLook() const { return look_; }
  void SetLook(const Look& look);

 private:
  friend class TreeNodes;
  void Changed() const;

  TreeView* tree_ = nullptr;
  std::intptr_t id_ = 0;
  std::size_t slot_ = 0;  // in the collection, gaps counted
  std::string key_;
  std::string text_;
  std::string tag_;
  Look look_;
  TreeNode* parent_ = nullptr;
  TreeNode* first_child_ = nullptr;
  TreeNode* last_child_ = nullptr;
  TreeNode* next_ = nullptr;
  TreeNode* previous_ = nullptr;
  int children_ = 0;
  bool expanded_ = false;
};

/// The node that follows `node` in outline order (parents before their children) within the subtree
/// of `top`, or in the whole tree when `top` is null; null for none.
[[nodiscard]] TreeNode* NextInOutline(const TreeNode& node, const TreeNode* top = nullptr);
/// The node before it in outline order.
[[nodiscard]] TreeNode* PreviousInOutline(const TreeNode& node);
/// As the two above over shown nodes, of which `node` is one.
[[nodiscard]] TreeNode* NextShown(const TreeNode& node);
[[nodiscard]] TreeNode* PreviousShown(const TreeNode& node);
inline constexpr int kAllTheWay = 0x7FFFFFFF;
/// Up to `steps` steps of one of the four above; ends early where there is no next node. Null only
/// for null.
[[nodiscard]] TreeNode* Walk(TreeNode* from, TreeNode* (*next)(const TreeNode&), int steps);

}  // namespace tavrix::viewkit
