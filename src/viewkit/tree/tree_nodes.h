#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/non_copyable.h"
#include "viewkit/indexing.h"
#include "viewkit/tree/tree_node.h"

namespace tavrix::viewkit {

class TreeView;

/// Where a new node goes in relation to another one, numbered as customary.
enum class Relationship { kFirst = 0, kLast = 1, kNext = 2, kPrevious = 3, kChild = 4 };

/// The nodes of one tree in their order of creation. Adding is done in constant time.
class TreeNodes : private host::NonCopyable {
 public:
  explicit TreeNodes(TreeView& tree) : tree_(tree) {}
  ~TreeNodes();

  /// Adds a node. Without `relative` it becomes a root: the first one for `kFirst`, else the last.
  /// Throws `std::invalid_argument` when the key stands already; an empty key is none.
  TreeNode& Add(TreeNode* relative, Relationship relationship, std::string key, std::string text);
  /// Removes a node with all below it. When the selected one is among them nothing is selected
  /// afterwards, without an event.
  void Remove(TreeNode& node);
  void Clear();
  /// Makes `node`, with all below it, the last child of `parent` (the last root when null). Must
  /// not be `node` itself or below it.
  void Move(TreeNode& node, TreeNode* parent);

  [[nodiscard]] int Count() const { return CountOf(by_id_); }
  /// `index` from 1 to `Count`. Throws `std::out_of_range`.
  [[nodiscard]] TreeNode& Item(int index) const;
  /// Throws `std::out_of_range`.
  [[nodiscard]] TreeNode& Item(std::string_view key) const;
  /// Null when there is none. Keys are compared with case.
  [[nodiscard]] TreeNode* Find(std::string_view key) const;
  [[nodiscard]] TreeNode* FindId(std::intptr_t id) const;
  [[nodiscard]] TreeNode* FirstRoot() const { return first_root_; }
  [[nodiscard]] TreeNode* LastRoot() const { return last_root_; }

 private:
  friend class TreeNode;
  friend class TreeView;

  [[nodiscard]] TreeNode*& First(TreeNode* parent);
  [[nodiscard]] TreeNode*& Last(TreeNode* parent);
  void Link(TreeNode& node, TreeNode* parent, TreeNode* before);
  void Unlink(TreeNode& node);
  /// Takes the node and all below it out of the collection, without a word to the window.
  void Drop(TreeNode& node);
  void Forget(TreeNode& node);
  /// Closes the gaps that removals left.
  void Compact() const;

  TreeView& tree_;
  mutable std::vector<std::shared_ptr<TreeNode>> nodes_;    // null where one was removed
  std::unordered_map<std::string_view, TreeNode*> by_key_;  // views of the nodes' own keys
  std::unordered_map<std::intptr_t, TreeNode*> by_id_;
  TreeNode* first_root_ = nullptr;
  TreeNode* last_root_ = nullptr;
  std::intptr_t last_id_ = 0;
};

}  // namespace tavrix::viewkit
