#include "viewkit/tree/tree_view.h"

#include <algorithm>
#include <utility>

#include "viewkit/ports.h"

namespace tavrix::viewkit {

namespace {

constexpr int kRowHeight = 16 * kTwipsPerPixel;  // without a window

}  // namespace

/// The model answers as a native control would; node ids serve as item handles.
class TreeView::OwnAnswers : public NativeTree {
 public:
  explicit OwnAnswers(TreeView& tree) : tree_(tree) {}

  std::intptr_t Send(unsigned message, std::uintptr_t wparam, std::intptr_t lparam) override {
    switch (message) {
      case tree_message::kSetRedraw:
        tree_.painting_ = wparam != 0;
        return 0;
      case tree_message::kGetNextItem:
        return NextItem(wparam, tree_.nodes_.FindId(lparam));
      case tree_message::kDeleteItem:
        return tree_.HandleNativeDelete(lparam) ? 1 : 0;
      default:
        return 0;
    }
  }

  std::intptr_t SendRecord(unsigned message, const TreeItemRecord& record) override {
    const bool understood =
        message == tree_message::kSetItem && record.mask == tree_message::kHandleAndState;
    return understood && tree_.HandleNativeState(record.item, record) ? 1 : 0;
  }

 private:
  [[nodiscard]] TreeItem NextItem(std::uintptr_t which, const TreeNode* from) const {
    const auto handle = [](const TreeNode* node) { return node == nullptr ? 0 : node->Id(); };
    if (which == tree_message::kNextRoot) return handle(tree_.nodes_.FirstRoot());
    if (from == nullptr) return 0;
    if (which == tree_message::kNextSibling) return handle(from->Next());
    if (which == tree_message::kNextChild) return handle(from->FirstChild());
    return 0;
  }

  TreeView& tree_;
};

TreeView::TreeView(std::string name, std::optional<int> index)
    : Control(std::move(name), index),
      own_answers_(std::make_unique<OwnAnswers>(*this)),
      native_(own_answers_.get()),
      nodes_(*this) {}

TreeView::~TreeView() = default;

void TreeView::SetNative(NativeTree* native) {
  native_ = native == nullptr ? own_answers_.get() : native;
}

void TreeView::SetWindow(TreeWindow* window) {
  window_ = window;
  SetNative(window);
}

bool TreeView::HandleNativeDelete(std::intptr_t id) {
  TreeNode* node = nodes_.FindId(id);
  if (node == nullptr) return false;
  nodes_.Drop(*node);
  return true;
}

bool TreeView::HandleNativeState(std::intptr_t id, const TreeItemRecord& record) {
  TreeNode* node = nodes_.FindId(id);
  if (node == nullptr) return false;
  if ((record.state_mask & tree_message::kCut) != 0) {
    TreeNode::Look look = node->GetLook();
    look.cut = (record.state & tree_message::kCut) != 0;
    node->SetLook(look);
  }
  return true;
}

void TreeView::Select(TreeNode* node) {
  if (selected_ == node) return;
  selected_ = node;
  if (window_ != nullptr) window_->SelectionChanged();
  if (node == nullptr || selected_ != node) return;
  const auto keep = node->shared_from_this();
  NodeSelected.Raise(*keep);
}

void TreeView::NodeGone(TreeNode& node) {
  if (selected_ == &node) selected_ = nullptr;
  if (drop_target_ == &node) drop_target_ = nullptr;
  if (top_ == &node) top_ = nullptr;
}

void TreeView::ExpandedChanged(TreeNode& node) {
  const auto keep = node.shared_from_this();
  if (!node.Expanded()) {
    if (selected_ != nullptr && selected_->IsBelow(node)) Select(&node);
    if (top_ != nullptr && top_->IsBelow(node)) top_ = &node;
  }
  (keep->Expanded() ? Expanded : Collapsed).Raise(*keep);
}

TreeNode* TreeView::FirstSeen() const {
  if (window_ != nullptr) return window_->FirstSeen();
  return top_ != nullptr ? top_ : nodes_.FirstRoot();
}

int TreeView::Room() const {
  return std::max(1, window_ != nullptr ? window_->Room() : GetBounds().height / kRowHeight);
}

TreeNode* TreeView::LastSeen() const {
  TreeNode* last = FirstSeen();
  for (int left = Room() - 1; last != nullptr && left > 0; --left) {
    TreeNode* next = NextShown(*last);
    if (next == nullptr) break;
    last = next;
  }
  return last;
}

void TreeView::ScrollTo(TreeNode& node) {
  if (window_ != nullptr) return window_->ScrollTo(node);
  // The last page stays full.
  TreeNode* first = &node;
  TreeNode* end = &node;
  for (int left = Room() - 1; left > 0; --left) {
    TreeNode* next = end == nullptr ? nullptr : NextShown(*end);
    end = next;
    if (next != nullptr) continue;
    TreeNode* previous = PreviousShown(*first);
    if (previous == nullptr) break;
    first = previous;
  }
  top_ = first;
}

void TreeView::ShowNode(TreeNode& node) {
  if (window_ != nullptr) return window_->EnsureVisible(node);
  TreeNode* seen = FirstSeen();
  for (int left = Room(); seen != nullptr && left > 0; --left, seen = NextShown(*seen)) {
    if (seen == &node) return;
  }
  ScrollTo(node);
}

void TreeView::SetCheckBoxes(bool check_boxes) {
  if (check_boxes_ == check_boxes) return;
  check_boxes_ = check_boxes;
  Notify({Change::Kind::kState});
}

void TreeView::StartDragging(std::string picture) {
  drag_picture_ = std::move(picture);
  dragging_ = true;
  Notify({Change::Kind::kState});
}

void TreeView::StopDragging() {
  if (!dragging_) return;
  dragging_ = false;
  drop_target_ = nullptr;
  Notify({Change::Kind::kState});
}

void TreeView::SetDropTarget(TreeNode* node) {
  if (drop_target_ == node) return;
  drop_target_ = node;
  Notify({Change::Kind::kState});
}

bool TreeView::IsMoveKey(Key key) {
  return key >= Key::kPageUp && key <= Key::kDown;
}

TreeNode* TreeView::KeyTarget(Key key) const {
  TreeNode* from = selected_ != nullptr ? selected_ : nodes_.FirstRoot();
  if (from == nullptr) return nullptr;
  switch (key) {
    case Key::kUp:
      return Walk(from, PreviousShown, 1);
    case Key::kDown:
      return Walk(from, NextShown, 1);
    case Key::kPageUp:
      return Walk(from, PreviousShown, Room() - 1);
    case Key::kPageDown:
      return Walk(from, NextShown, Room() - 1);
    case Key::kHome:
      return nodes_.FirstRoot();
    case Key::kEnd:
      return Walk(from, NextShown, kAllTheWay);
    case Key::kLeft:
      return from->Parent() != nullptr ? from->Parent() : from;
    case Key::kRight:
      return from->FirstChild() != nullptr ? from->FirstChild() : from;
    default:
      return from;
  }
}

bool TreeView::HandleKey(Key key, Modifiers modifiers) {
  if (!IsMoveKey(key) || modifiers.control || modifiers.alt) return false;
  if (selected_ != nullptr && key == Key::kLeft && selected_->Expanded() &&
      selected_->Children() > 0) {
    selected_->SetExpanded(false);
    return true;
  }
  if (selected_ != nullptr && key == Key::kRight && !selected_->Expanded()) {
    if (selected_->Children() > 0) selected_->SetExpanded(true);
    return true;
  }
  if (TreeNode* target = KeyTarget(key); target != nullptr) {
    Select(target);
    if (selected_ == target) target->EnsureVisible();
  }
  return true;
}

}  // namespace tavrix::viewkit
