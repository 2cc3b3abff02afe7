#include "component/controls/tree_faces.h"

#include <vector>

#include "component/base/enumerator.h"
#include "component/base/face_registry.h"

namespace tavrix::component {

namespace {

using viewkit::TreeNode;
using viewkit::TreeView;

[[noreturn]] void ThrowGone() {
  throw ComFailure(CO_E_OBJNOTCONNECTED, "树节点已不存在");
}

ComPtr<ITreeNode> NodeObject(const ModelReference<TreeView>& tree, TreeNode* node);

/// A node for callers; fails once the node is out of its tree.
class NodeFace : public Identity, public DualFace<ITreeNode> {
 public:
  NodeFace(ModelReference<TreeView> tree, TreeNode& node)
      : DualFace<ITreeNode>(static_cast<Identity&>(*this)),
        tree_(std::move(tree)),
        node_(node.weak_from_this()),
        entry_(&node, *this),
        errors_(*this) {
    PublishDual(IID_ITreeNode, this);
    Publish(IID_ISupportErrorInfo, &errors_);
  }

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
      Out(result) = nullptr;
      *result = NodeObject(tree_, node.Parent()).Detach();
    });
  }
  STDMETHODIMP get_Children(long* result) noexcept override {
    return With([&](TreeNode& node) { Out(result) = node.Children(); });
  }
  STDMETHODIMP get_Expanded(VARIANT_BOOL* result) noexcept override {
    return With([&](TreeNode& node) { Out(result) = Flag(node.Expanded()); });
  }
  STDMETHODIMP put_Expanded(VARIANT_BOOL value) noexcept override {
    return With([&](TreeNode& node) { node.SetExpanded(value != VARIANT_FALSE); });
  }
  STDMETHODIMP get_Selected(VARIANT_BOOL* result) noexcept override {
    return With([&](TreeNode& node) { Out(result) = Flag(node.Selected()); });
  }
  STDMETHODIMP put_Selected(VARIANT_BOOL value) noexcept override {
    return With([&](TreeNode& node) { node.SetSelected(value != VARIANT_FALSE); });
  }

 private:
  template <class Body>
  [[nodiscard]] HRESULT With(Body&& body) noexcept {
    return Guarded(IID_ITreeNode, [&] {
      const auto tree = tree_.Lock();
      const auto node = node_.lock();
      if (!tree || !node || !node->InTree()) ThrowGone();
      body(*node);
    });
  }

  ModelReference<TreeView> tree_;
  std::weak_ptr<TreeNode> node_;
  FaceRegistry<NodeFace> entry_;
  ErrorSupport errors_;
};

ComPtr<ITreeNode> NodeObject(const ModelReference<TreeView>& tree, TreeNode* node) {
  if (node == nullptr) return nullptr;
  // Never another node's: while a face lives, its reference keeps the address taken.
  if (auto* face = FaceRegistry<NodeFace>::Find(node)) return ComPtr<ITreeNode>(face);
  return MakeObject<NodeFace>(tree, *node).As<ITreeNode>();
}

class NodesFace : public Identity, public DualFace<ITreeNodes> {
 public:
  NodesFace(ModelReference<TreeView> reference, TreeView& tree)
      : DualFace<ITreeNodes>(static_cast<Identity&>(*this)),
        tree_(std::move(reference)),
        entry_(&tree, *this),
        errors_(*this) {
    PublishDual(IID_ITreeNodes, this);
    Publish(IID_ISupportErrorInfo, &errors_);
  }
  /// False once its tree is gone; another may stand in its place then.
  [[nodiscard]] bool InUse() const { return static_cast<bool>(tree_.Lock()); }

  STDMETHODIMP get_Item(VARIANT index, ITreeNode** result) noexcept override {
    return With([&](TreeView& tree) {
      Out(result) = nullptr;
      const Variant key(index);
      TreeNode& node = key.Type() == VT_BSTR
                           ? tree.Nodes().Item(TextOf(key.Get().bstrVal))
                           : tree.Nodes().Item(static_cast<int>(key.As(VT_I4).Get().lVal));
      *result = NodeObject(tree_, &node).Detach();
    });
  }
  STDMETHODIMP get_Count(long* result) noexcept override {
    return With([&](TreeView& tree) { Out(result) = tree.Nodes().Count(); });
  }
  STDMETHODIMP get_NewEnum(IUnknown** result) noexcept override {
    return With([&](TreeView& tree) {
      Out(result) = nullptr;
      std::vector<Variant> nodes;
      for (int i = 1; i <= tree.Nodes().Count(); ++i) {
        nodes.emplace_back(NodeObject(tree_, &tree.Nodes().Item(i)));
      }
      *result = VariantEnumerator::Make(std::move(nodes)).Detach();
    });
  }

 private:
  template <class Body>
  [[nodiscard]] HRESULT With(Body&& body) noexcept {
    return Guarded(IID_ITreeNodes, [&] {
      const auto tree = tree_.Lock();
      if (!tree) ThrowGone();
      body(*tree);
    });
  }

  ModelReference<TreeView> tree_;
  FaceRegistry<NodesFace> entry_;
  ErrorSupport errors_;
};

ComPtr<ITreeNodes> NodesObject(const ModelReference<TreeView>& reference, TreeView& tree) {
  auto* face = FaceRegistry<NodesFace>::Find(&tree);
  if (face != nullptr && face->InUse()) return ComPtr<ITreeNodes>(face);
  return MakeObject<NodesFace>(reference, tree).As<ITreeNodes>();
}

}  // namespace

HRESULT TreeFace::get_Nodes(ITreeNodes** result) noexcept {
  return With([&](TreeView& tree) {
    Out(result) = nullptr;
    *result = NodesObject(Reference(), tree).Detach();
  });
}

HRESULT TreeFace::get_SelectedItem(ITreeNode** result) noexcept {
  return With([&](TreeView& tree) {
    Out(result) = nullptr;
    *result = NodeObject(Reference(), tree.SelectedItem()).Detach();
  });
}

}  // namespace tavrix::component
