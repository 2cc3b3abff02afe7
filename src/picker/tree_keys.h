#pragma once

#include "viewkit/tree/tree_node.h"

/// Keys of the category tree's nodes: one letter for the kind, then the category or the code.
namespace tavrix::picker::tree_key {

inline constexpr const char* kRoot = "r";
inline constexpr const char* kCategory = "r";
inline constexpr const char* kAccount = "k";

[[nodiscard]] inline bool IsCategory(const viewkit::TreeNode& node) {
  return node.Key().starts_with(kCategory) && node.Key() != kRoot;
}

}  // namespace tavrix::picker::tree_key
