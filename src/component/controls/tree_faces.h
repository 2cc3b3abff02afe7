#pragma once

#include <memory>

#include "component/controls/child_face.h"
#include "viewkit/tree/tree_view.h"

namespace tavrix::component {

/// TreeView for callers, with its collection of nodes.
class TreeFace : public ChildFace<ITreeControl, viewkit::TreeView> {
 public:
  using ChildFace::ChildFace;
  STDMETHODIMP get_Nodes(ITreeNodes** result) noexcept override;
  STDMETHODIMP get_SelectedItem(ITreeNode** result) noexcept override;
};

}  // namespace tavrix::component
