#include "viewkit/win32/tree_peer.h"

#include <algorithm>

#include "host/flag_scope.h"
#include "host/utf.h"

namespace tavrix::viewkit::win32 {
namespace {

constexpr int kItemHeight = 20;  // pixels at 96 dpi
constexpr UINT kChecked = 2;     // state images of the system's check boxes
constexpr UINT kUnchecked = 1;

UINT StateOf(const TreeNode::Look& look, bool check_boxes) {
  UINT state = (look.bold ? TVIS_BOLD : 0U) | (look.cut ? TVIS_CUT : 0U);
  if (check_boxes) state |= INDEXTOSTATEIMAGEMASK(look.checked ? kChecked : kUnchecked);
  return state;
}

}  // namespace

void TreePeer::Open() {
  OpenNative({.class_name = WC_TREEVIEWW,
              .style = TVS_HASLINES | TVS_HASBUTTONS | TVS_LINESATROOT | TVS_SHOWSELALWAYS |
                       (Model().CheckBoxes() ? TVS_CHECKBOXES : 0U)});
  Model().SetWindow(this);
  for (TreeNode* root = Model().Nodes().FirstRoot(); root != nullptr; root = root->Next()) {
    InsertWithAllBelow(*root);
  }
  SelectionChanged();
}

void TreePeer::OnDestroyed() {
  Model().SetWindow(nullptr);
  NativePeer::OnDestroyed();
}

void TreePeer::OnFontChanged() {
  NativePeer::OnFontChanged();
  if (!Alive()) return;
  const int height = std::max(Context().scale.Design(kItemHeight), Context().fonts->LinePixels());
  Tell(TVM_SETITEMHEIGHT, static_cast<WPARAM>(height));
}

void TreePeer::ApplyState() {
  NativePeer::ApplyState();
  if (!Alive()) return;
  const auto style = static_cast<DWORD>(GetWindowLongW(Hwnd(), GWL_STYLE));
  const bool shown = (style & TVS_CHECKBOXES) != 0;
  if (shown != Model().CheckBoxes()) {
    SetWindowLongW(Hwnd(), GWL_STYLE, static_cast<LONG>(style ^ TVS_CHECKBOXES));
    for (int index = 1; index <= Model().Nodes().Count(); ++index) {
      ShowNode(Model().Nodes().Item(index));
    }
  }
  Tell(TVM_SELECTITEM, TVGN_DROPHILITE, reinterpret_cast<LPARAM>(ItemOf(Model().DropTarget())));
  if (Model().Dragging() && GetCapture() != Hwnd()) SetCapture(Hwnd());
  if (!Model().Dragging() && GetCapture() == Hwnd()) ReleaseCapture();
}

HTREEITEM TreePeer::ItemOf(const TreeNode* node) const {
  const auto found = node == nullptr ? items_.end() : items_.find(node->Id());
  return found == items_.end() ? nullptr : found->second;
}

TreeNode* TreePeer::NodeOf(HTREEITEM item) const {
  if (item == nullptr) return nullptr;
  TVITEMW record{};
  record.mask = TVIF_PARAM;
  record.hItem = item;
  if (!Tell(TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&record))) return nullptr;
  return Model().Nodes().FindId(record.lParam);
}

std::intptr_t TreePeer::Send(unsigned message, std::uintptr_t wparam, std::intptr_t lparam) {
  if (message == tree_message::kDeleteItem) {
    // Its items report their end one by one; the selection is the model's business alone.
    const bool gone = Tell(message, wparam, lparam) != 0;
    SelectionChanged();
    return gone ? 1 : 0;
  }
  return Tell(message, wparam, lparam);
}

std::intptr_t TreePeer::SendRecord(unsigned message, const TreeItemRecord& record) {
  TVITEMA native{};
  native.mask = record.mask;
  native.hItem = reinterpret_cast<HTREEITEM>(record.item);
  native.state = record.state;
  native.stateMask = record.state_mask;
  const std::intptr_t result = Tell(message, 0, reinterpret_cast<LPARAM>(&native));
  const TreeNode* node = result == 0 ? nullptr : NodeOf(native.hItem);
  if (node != nullptr) (void)Model().HandleNativeState(node->Id(), record);
  return result;
}

void TreePeer::Insert(const TreeNode& node) {
  std::wstring text = host::Wide(node.Text());
  TVINSERTSTRUCTW insert{};
  insert.hParent = ItemOf(node.Parent());
  // After its sibling: the control would look for the last one from the first on.
  insert.hInsertAfter = node.Previous() == nullptr ? TVI_FIRST : ItemOf(node.Previous());
  insert.item.mask = TVIF_TEXT | TVIF_PARAM | TVIF_STATE;
  insert.item.pszText = text.data();
  insert.item.lParam = node.Id();
  insert.item.state = StateOf(node.GetLook(), Model().CheckBoxes());
  insert.item.stateMask = TVIS_BOLD | TVIS_CUT | TVIS_STATEIMAGEMASK;
  items_[node.Id()] =
      reinterpret_cast<HTREEITEM>(Tell(TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insert)));
}

void TreePeer::InsertWithAllBelow(const TreeNode& node) {
  for (const TreeNode* at = &node; at != nullptr; at = NextInOutline(*at, &node)) NodeAdded(*at);
}

void TreePeer::NodeAdded(const TreeNode& node) {
  const host::FlagScope following(following_);
  Insert(node);
  // Only now can the control expand a parent that had no child before.
  const TreeNode* parent = node.Parent();
  if (parent != nullptr && parent->Expanded() && parent->FirstChild() == &node) {
    ShowExpanded(*parent);
  }
  // The box of a parent that had no child, and the line to what was its last one, are new too.
  InvalidateRect(Hwnd(), nullptr, TRUE);
}

void TreePeer::NodeMoved(const TreeNode& node) {
  const host::FlagScope following(following_);
  DeleteItem(ItemOf(&node));
  InsertWithAllBelow(node);
  SelectionChanged();
}

void TreePeer::NodeRemoving(const TreeNode& node) {
  const host::FlagScope following(following_);
  const TreeNode* selected = Model().SelectedItem();
  const bool with_it = selected != nullptr && (selected == &node || selected->IsBelow(node));
  // Else the control would select a neighbour.
  if (with_it) Tell(TVM_SELECTITEM, TVGN_CARET, 0);
  DeleteItem(ItemOf(&node));
}

void TreePeer::DeleteItem(HTREEITEM item) {
  if (item != nullptr) Tell(TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(item));
}

void TreePeer::NodeChanged(const TreeNode& node) {
  if (&node != toggling_) ShowNode(node);
}

void TreePeer::ShowNode(const TreeNode& node) {
  const host::FlagScope following(following_);
  std::wstring text = host::Wide(node.Text());
  TVITEMW item{};
  item.mask = TVIF_HANDLE | TVIF_TEXT | TVIF_STATE;
  item.hItem = ItemOf(&node);
  item.pszText = text.data();
  item.state = StateOf(node.GetLook(), Model().CheckBoxes());
  item.stateMask = TVIS_BOLD | TVIS_CUT | TVIS_STATEIMAGEMASK;
  Tell(TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
  ShowExpanded(node);
}

void TreePeer::ShowExpanded(const TreeNode& node) {
  const auto item = reinterpret_cast<LPARAM>(ItemOf(&node));
  const bool shown =
      (Tell(TVM_GETITEMSTATE, static_cast<WPARAM>(item), TVIS_EXPANDED) & TVIS_EXPANDED) != 0;
  if (shown != node.Expanded()) {
    Tell(TVM_EXPAND, node.Expanded() ? TVE_EXPAND : TVE_COLLAPSE, item);
    // Where the first line changes by it the control may paint some of the lines alone.
    InvalidateRect(Hwnd(), nullptr, TRUE);
  }
}

void TreePeer::SelectionChanged() {
  const host::FlagScope following(following_);
  Tell(TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(ItemOf(Model().SelectedItem())));
}

void TreePeer::EnsureVisible(const TreeNode& node) {
  const host::FlagScope following(following_);
  Tell(TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(ItemOf(&node)));
}

void TreePeer::ScrollTo(const TreeNode& node) {
  const host::FlagScope following(following_);
  Tell(TVM_SELECTITEM, TVGN_FIRSTVISIBLE, reinterpret_cast<LPARAM>(ItemOf(&node)));
}

TreeNode* TreePeer::FirstSeen() {
  return NodeOf(reinterpret_cast<HTREEITEM>(Tell(TVM_GETNEXTITEM, TVGN_FIRSTVISIBLE)));
}

int TreePeer::Room() {
  return static_cast<int>(Tell(TVM_GETVISIBLECOUNT));
}

}  // namespace tavrix::viewkit::win32
