#include "viewkit/win32/button_peers.h"

namespace tavrix::viewkit::win32 {

void LabelPeer::Open() {
  OpenNative({.class_name = L"STATIC", .style = SS_LEFT | SS_CENTERIMAGE | SS_ENDELLIPSIS});
}

/// The system leaves a text where it was, and cut as it was.
void LabelPeer::ApplyBounds() {
  CaptionPeer::ApplyBounds();
  InvalidateRect(Hwnd(), nullptr, TRUE);
}

void FramePeer::Open() {
  OpenNative({.class_name = L"BUTTON", .style = BS_GROUPBOX});
}

void FramePeer::OnAllOpen() {
  // Below its siblings: above them it would keep them from painting themselves.
  SetWindowPos(Hwnd(), HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

LRESULT FramePeer::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  if (message != WM_ERASEBKGND) return CaptionPeer::OnMessage(message, wparam, lparam);
  // The system leaves the inside to the parent, which does not paint below its children.
  RECT client{};
  GetClientRect(Hwnd(), &client);
  FillRect(reinterpret_cast<HDC>(wparam), &client, Context().back_brush.get());
  return 1;
}

bool ClickPeer::WantsKey(Key key, Modifiers modifiers) const {
  return key == Key::kSpace && !modifiers.control && !modifiers.alt;
}

std::optional<LRESULT> ClickPeer::OnNotify(UINT message, WPARAM wparam, LPARAM) {
  if (message != WM_COMMAND || HIWORD(wparam) != BN_CLICKED) return {};
  // An option button also reports a click when it merely gets the focus; that chooses nothing.
  if (!taking_focus_) OnClick();
  return 0;
}

LRESULT ClickPeer::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  taking_focus_ = message == WM_SETFOCUS;
  const LRESULT result = CaptionPeer::OnMessage(message, wparam, lparam);
  taking_focus_ = false;
  return result;
}

void CommandButtonPeer::Open() {
  OpenNative({.class_name = L"BUTTON", .style = BS_PUSHBUTTON});
}

void CheckBoxPeer::Open() {
  OpenNative({.class_name = L"BUTTON", .style = BS_3STATE});
}

void CheckBoxPeer::OnContent(const Change& change) {
  ClickPeer::OnContent(change);
  SetCheck(box_.Value());
}

void OptionButtonPeer::Open() {
  OpenNative({.class_name = L"BUTTON", .style = BS_RADIOBUTTON});
}

void OptionButtonPeer::OnContent(const Change& change) {
  ClickPeer::OnContent(change);
  SetCheck(option_.Value() ? BST_CHECKED : BST_UNCHECKED);
}

}  // namespace tavrix::viewkit::win32
