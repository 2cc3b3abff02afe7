#include "component/controls/tree_objects.h"

#include <vector>

#include "com/enumerator.h"
#include "com/object_registry.h"

namespace tavrix::component {

namespace {

using viewkit::TreeNode;
using viewkit::TreeView;

[[noreturn]] void ThrowGone() {
  throw com::ComFailure(CO_E_OBJNOTCONNECTED, "树节点已不存在");
}

com::ComPtr<ITreeNode> NodeObject(const ModelReference<TreeView>& tree, TreeNode* node);

/// A node for callers; fails once the node is out of its tree.
class TreeNodeObject : public com::DispatchObject<ITreeNode> {
 public:
  TreeNodeObject(ModelReference<TreeView> tree, TreeNode& node)
      : tree_(std::move(tree)), node_(node.weak_from_this()), entry_(&node, *this) {}

  STDMETHODIMP get_Key(BSTR* result) noexcept override {
    return With([&](TreeNode& node) { GiveText(result, node.Key()); });
  }
  STDMETHODIMP get_Text(BSTR* result) noexcept override {
    return With([&](TreeNode& node) { GiveText(result, node.Text()); });
  }
  STDMETHODIMP get_Tag(BSTR* result) noexcept override {
    return With([&](TreeNode& node) { GiveText(result, node.Tag()); });
  }
  STDMETHODIMP get_Parent(ITreeNode** result) noexcept override {
    return With([&](TreeNode& node) {
      com::Out(result) = nullptr;
      *result = NodeObject(tree_, node.Parent()).Detach();
    });
  }
  STDMETHODIMP get_Children(long* result) noexcept override {
    return With([&](TreeNode& node) { com::Out(result) = node.Children(); });
  }
  STDMETHODIMP get_Expanded(VARIANT_BOOL* result) noexcept override {
    return With([&](TreeNode& node) { com::Out(result) = com::Flag(node.Expanded()); });
  }
  STDMETHODIMP put_Expanded(VARIANT_BOOL value) noexcept override {
    return With([&](TreeNode& node) { node.SetExpanded(value != VARIANT_FALSE); });
  }
  STDMETHODIMP get_Selected(VARIANT_BOOL* result) noexcept override {
    return With([&](TreeNode& node) { com::Out(result) = com::Flag(node.Selected()); });
  }
  STDMETHODIMP put_Selected(VARIANT_BOOL value) noexcept override {
    return With([&](TreeNode& node) { node.SetSelected(value != VARIANT_FALSE); });
  }

 private:
  template <class Body>
  [[nodiscard]] HRESULT With(const Body& body, const char* member = __builtin_FUNCTION()) noexcept {
    const auto run = [&] {
      const auto tree = tree_.Lock();
      const auto node = node_.lock();
      if (!tree || !node || !node->InTree()) ThrowGone();
      body(*node);
    };
    return com::Guarded(IID_ITreeNode, run, member);
  }

  ModelReference<TreeView> tree_;
  std::weak_ptr<TreeNode> node_;
  com::ObjectRegistry<TreeNodeObject> entry_;
};

com::ComPtr<ITreeNode> NodeObject(const ModelReference<TreeView>& tree, TreeNode* node) {
  if (node == nullptr) return nullptr;
  // Never another node's: while an object lives, its reference keeps the address taken.
  if (auto* object = com::ObjectRegistry<TreeNodeObject>::Find(node))
    return com::ComPtr<ITreeNode>(object);
  return com::MakeObject<TreeNodeObject>(tree, *node).As<ITreeNode>();
}

class TreeNodesObject : public com::DispatchObject<ITreeNodes> {
 public:
  TreeNodesObject(ModelReference<TreeView> reference, TreeView& tree)
      : tree_(std::move(reference)), entry_(&tree, *this) {}
  /// False once its tree is gone; another may stand in its place then.
  [[nodiscard]] bool InUse() const { return static_cast<bool>(tree_.Lock()); }

  STDMETHODIMP get_Item(VARIANT index, ITreeNode** result) noexcept override {
    return With([&](TreeView& tree) {
      com::Out(result) = nullptr;
      const com::Variant key(index);
      TreeNode& node = key.Type() == VT_BSTR
                           ? tree.Nodes().Item(com::TextOf(key.Get().bstrVal))
                           : tree.Nodes().Item(static_cast<int>(key.As(VT_I4).Get().lVal));
      *result = NodeObject(tree_, &node).Detach();
    });
  }
  STDMETHODIMP get_Count(long* result) noexcept override {
    return With([&](TreeView& tree) { com::Out(result) = tree.Nodes().Count(); });
  }
  STDMETHODIMP get_NewEnum(IUnknown** result) noexcept override {
    return With([&](TreeView& tree) {
      com::Out(result) = nullptr;
      std::vector<com::Variant> nodes;
      for (int i = 1; i <= tree.Nodes().Count(); ++i) {
        nodes.emplace_back(NodeObject(tree_, &tree.Nodes().Item(i)));
      }
      *result = com::VariantEnumerator::Make(std::move(nodes)).Detach();
    });
  }

 private:
  template <class Body>
  [[nodiscard]] HRESULT With(const Body& body, const char* member = __builtin_FUNCTION()) noexcept {
    const auto run = [&] {
      const auto tree = tree_.Lock();
      if (!tree) ThrowGone();
      body(*tree);
    };
    return com::Guarded(IID_ITreeNodes, run, member);
  }

  ModelReference<TreeView> tree_;
  com::ObjectRegistry<TreeNodesObject> entry_;
};

com::ComPtr<ITreeNodes> NodesObject(const ModelReference<TreeView>& reference, TreeView& tree) {
  auto* object = com::ObjectRegistry<TreeNodesObject>::Find(&tree);
  if (object != nullptr && object->InUse()) return com::ComPtr<ITreeNodes>(object);
  return com::MakeObject<TreeNodesObject>(reference, tree).As<ITreeNodes>();
}

}  // namespace

HRESULT TreeViewObject::get_Nodes(ITreeNodes** result) noexcept {
  return With([&](TreeView& tree) {
    com::Out(result) = nullptr;
    *result = NodesObject(Reference(), tree).Detach();
  });
}

HRESULT TreeViewObject::get_SelectedItem(ITreeNode** result) noexcept {
  return With([&](TreeView& tree) {
    com::Out(result) = nullptr;
    *result = NodeObject(Reference(), tree.SelectedItem()).Detach();
  });
}

}  // namespace tavrix::component
