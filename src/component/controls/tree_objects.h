#pragma once

#include <memory>

#include "component/controls/child_control_object.h"
#include "viewkit/tree/tree_view.h"

namespace tavrix::component {

/// TreeView for callers, with its collection of nodes.
class TreeViewObject : public ChildControlObject<ITreeControl, viewkit::TreeView> {
 public:
  using ChildControlObject::ChildControlObject;
  STDMETHODIMP get_Nodes(ITreeNodes** result) noexcept override;
  STDMETHODIMP get_SelectedItem(ITreeNode** result) noexcept override;
};

}  // namespace tavrix::component
