// What the user does in the system's tree control, told to the model.

#include <windowsx.h>

#include "host/flag_scope.h"
#include "viewkit/win32/colors.h"
#include "viewkit/win32/tree_peer.h"

namespace tavrix::viewkit::win32 {
namespace {

POINT PointOf(LPARAM lparam) {
  return {GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)};
}

bool IsControlCharacter(WPARAM character) {
  return character == VK_RETURN || character == VK_ESCAPE;
}

}  // namespace

bool TreePeer::WantsKey(Key key, Modifiers modifiers) const {
  if (modifiers.alt || modifiers.control) return false;
  return TreeView::IsMoveKey(key) || key == Key::kEnter || key == Key::kAdd ||
         key == Key::kSubtract || key == Key::kMultiply || key == Key::kSpace;
}

std::optional<LRESULT> TreePeer::OnNotify(UINT message, WPARAM, LPARAM lparam) {
  if (message != WM_NOTIFY) return {};
  const auto& header = *reinterpret_cast<const NMHDR*>(lparam);
  if (header.code == NM_CUSTOMDRAW) return OnCustomDraw(*reinterpret_cast<NMTVCUSTOMDRAW*>(lparam));
  return OnTreeNotice(header);
}

std::optional<LRESULT> TreePeer::OnTreeNotice(const NMHDR& header) {
  const auto& notice = reinterpret_cast<const NMTREEVIEWW&>(header);
  switch (header.code) {
    case TVN_SELCHANGEDW:
      OnSelected(notice);
      return 0;
    case TVN_ITEMEXPANDEDW:
      OnExpanded(notice);
      return 0;
    case TVN_DELETEITEMW:
      OnDeleted(notice);
      return 0;
    case TVN_BEGINDRAGW:
      Postpone(Action::Kind::kDrag, notice.itemNew.hItem);
      return 0;
    case NM_CLICK:
      OnClick();
      return 0;
    default:
      return {};
  }
}

void TreePeer::OnSelected(const NMTREEVIEWW& notice) {
  // When the selected item is deleted the control selects a neighbour, which nobody has chosen.
  if (following_ || notice.action == TVC_UNKNOWN) return;
  Postpone(Action::Kind::kSelect, notice.itemNew.hItem);
}

void TreePeer::OnExpanded(const NMTREEVIEWW& notice) {
  if (following_) return;
  InvalidateRect(Hwnd(), nullptr, TRUE);  // as in `ShowExpanded`
  const bool expanded = (notice.itemNew.state & TVIS_EXPANDED) != 0;
  Postpone(expanded ? Action::Kind::kExpand : Action::Kind::kCollapse, notice.itemNew.hItem);
}

void TreePeer::Postpone(Action::Kind kind, HTREEITEM item) {
  const TreeNode* node = NodeOf(item);
  pending_.push_back({kind, node == nullptr ? 0 : node->Id()});
}

void TreePeer::RunPending() {
  while (Alive() && !pending_.empty()) {
    const Action action = pending_.front();
    pending_.erase(pending_.begin());
    Run(action);
  }
}

void TreePeer::Run(const Action& action) {
  if (action.kind == Action::Kind::kMenu) return AskForMenu(action.value);
  TreeNode* node = action.value == 0 ? nullptr : Model().Nodes().FindId(action.value);
  if (action.kind == Action::Kind::kSelect && (node != nullptr || action.value == 0)) {
    return Model().Select(node);
  }
  if (node == nullptr) return;  // gone meanwhile
  if (action.kind == Action::Kind::kDrag) return Model().BeginDrag.Raise(*node);
  node->SetExpanded(action.kind == Action::Kind::kExpand);
}

void TreePeer::OnDeleted(const NMTREEVIEWW& notice) {
  const std::intptr_t id = notice.itemOld.lParam;
  if (closing_) return;
  items_.erase(id);
  if (!following_) Model().HandleNativeDelete(id);
}

void TreePeer::OnClick() {
  if (!Model().CheckBoxes()) return;
  POINT point{};
  GetCursorPos(&point);
  ScreenToClient(Hwnd(), &point);
  UINT where = 0;
  TreeNode* node = NodeAt(point, &where);
  if (node != nullptr && (where & TVHT_ONITEMSTATEICON) != 0) ToggleCheck(*node);
}

void TreePeer::ToggleCheck(TreeNode& node) {
  // The control changes its box itself, after this.
  toggling_ = &node;
  TreeNode::Look look = node.GetLook();
  look.checked = !look.checked;
  node.SetLook(look);
  toggling_ = nullptr;
}

LRESULT TreePeer::OnCustomDraw(NMTVCUSTOMDRAW& draw) const {
  if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
  const bool selected = (draw.nmcd.uItemState & CDIS_SELECTED) != 0;
  const TreeNode* node = Model().Nodes().FindId(draw.nmcd.lItemlParam);
  if (draw.nmcd.dwDrawStage != CDDS_ITEMPREPAINT || selected || node == nullptr) return 0;
  const TreeNode::Look& look = node->GetLook();
  if (look.back != color::kDefault) draw.clrTextBk = ToColorRef(look.back);
  draw.clrText = TextOn(ToColorRef(look.back), ToColorRef(look.fore, color::kWindowText));
  return 0;
}

TreeNode* TreePeer::NodeAt(POINT point, UINT* where) const {
  TVHITTESTINFO hit{};
  hit.pt = point;
  const LRESULT item = Tell(TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
  if (where != nullptr) *where = hit.flags;
  return NodeOf(reinterpret_cast<HTREEITEM>(item));
}

void TreePeer::AskForMenu(LPARAM where) {
  if (where == -1) return Model().ContextRequested.Raise(Model().SelectedItem());  // the menu key
  POINT point = PointOf(where);
  ScreenToClient(Hwnd(), &point);
  Model().ContextRequested.Raise(NodeAt(point));
}

void TreePeer::EndDrag(bool drop, POINT point) {
  TreeNode* target = drop ? NodeAt(point) : nullptr;
  if (drop) {
    Model().Drop.Raise(target);
  } else {
    Model().DragCancel.Raise();
  }
  Model().StopDragging();
}

bool TreePeer::OnDrag(UINT message, WPARAM wparam, LPARAM lparam) {
  if (!Model().Dragging()) return false;
  switch (message) {
    case WM_MOUSEMOVE:
      Model().DragOver.Raise(NodeAt(PointOf(lparam)));
      return true;
    case WM_LBUTTONUP:
      EndDrag(true, PointOf(lparam));
      return true;
    case WM_CAPTURECHANGED:
      EndDrag(false, {});
      return true;
    case WM_KEYDOWN:
      if (wparam == VK_ESCAPE) EndDrag(false, {});
      return true;
    default:
      return false;
  }
}

LRESULT TreePeer::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  if (OnDrag(message, wparam, lparam)) return 0;
  switch (message) {
    case WM_DESTROY:
      closing_ = true;
      break;
    case WM_CHAR:
      if (IsControlCharacter(wparam)) return 0;  // the control would only beep
      break;
    case WM_KEYDOWN:
      if (wparam == VK_SPACE && Model().CheckBoxes() && Model().SelectedItem() != nullptr) {
        ToggleCheck(*Model().SelectedItem());
      }
      break;
    case WM_CONTEXTMENU:
      pending_.push_back({Action::Kind::kMenu, lparam});
      if (!handling_) RunPending();
      return 0;
    default:
      break;
  }
  if (handling_) return NativePeer::OnMessage(message, wparam, lparam);
  LRESULT result = 0;
  {
    const host::FlagScope handling(handling_);
    result = NativePeer::OnMessage(message, wparam, lparam);
  }
  RunPending();
  return result;
}

}  // namespace tavrix::viewkit::win32
