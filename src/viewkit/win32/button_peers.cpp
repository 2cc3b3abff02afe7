#include "viewkit/win32/button_peers.h"

#include <cstddef>

#include "host/utf.h"
#include "viewkit/win32/line_text.h"

namespace tavrix::viewkit::win32 {
namespace {

/// A caption as it is read: an ampersand marks the letter after it, two of them are one.
std::wstring WithoutMark(const std::wstring& caption) {
  std::wstring text;
  for (std::size_t at = 0; at < caption.size(); ++at) {
    if (caption[at] == L'&' && at + 1 < caption.size()) ++at;
    text += caption[at];
  }
  return text;
}

}  // namespace

void LabelPeer::Open() {
  OpenNative({.class_name = L"STATIC", .style = SS_LEFT | SS_CENTERIMAGE});
}

void LabelPeer::ApplyBounds() {
  CaptionPeer::ApplyBounds();
  InvalidateRect(Hwnd(), nullptr, FALSE);
}

COLORREF LabelPeer::TextColor() const {
  if (!Model().Enabled()) return GetSysColor(COLOR_GRAYTEXT);
  return Model().ForeColor() == color::kDefault ? Context().Ink() : ToColorRef(Model().ForeColor());
}

void LabelPeer::Paint(HDC dc) const {
  RECT client{};
  GetClientRect(Hwnd(), &client);
  FillRect(dc, &client, Context().back_brush.get());
  if (Model().BackColor() != color::kDefault) Fill(dc, client, ToColorRef(Model().BackColor()));
  const SavedDc saved(dc);
  const Selected font(dc, Context().fonts->Get(false));
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, TextColor());
  const std::wstring caption = host::Wide(Model().Caption());
  std::wstring text = WithoutMark(caption);
  if (CutToFit(dc, text, static_cast<int>(client.right)) != text) {
    return DrawLine(dc, text, client, DT_VCENTER);
  }
  const bool hidden = (Tell(WM_QUERYUISTATE) & UISF_HIDEACCEL) != 0;
  DrawTextW(dc, caption.data(), static_cast<int>(caption.size()), &client,
            DT_VCENTER | DT_SINGLELINE | (hidden ? DT_HIDEPREFIX : 0U));
}

LRESULT LabelPeer::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  const auto painted = OnPaintMessage(message, wparam, [this](HDC dc) { Paint(dc); });
  if (painted) return *painted;
  switch (message) {
    case WM_SETTEXT: {
      // The system's label would paint at once.
      const LRESULT set = DefWindowProcW(Hwnd(), message, wparam, lparam);
      InvalidateRect(Hwnd(), nullptr, FALSE);
      return set;
    }
    case WM_UPDATEUISTATE:
    case WM_ENABLE:
      InvalidateRect(Hwnd(), nullptr, FALSE);
      break;
    default:
      break;
  }
  return CaptionPeer::OnMessage(message, wparam, lparam);
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

bool CommandButtonPeer::WantsKey(Key key, Modifiers modifiers) const {
  const bool enter = key == Key::kEnter && !modifiers.control && !modifiers.alt;
  return enter || ClickPeer::WantsKey(key, modifiers);
}

LRESULT CommandButtonPeer::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  const LRESULT result = ClickPeer::OnMessage(message, wparam, lparam);
  // To the system Enter is a matter of dialogs.
  if (message == WM_KEYDOWN && Alive()) {
    Model().HandleKey(static_cast<Key>(wparam), ModifiersOf(lparam));
  }
  return result;
}

void CheckBoxPeer::Open() {
  OpenNative({.class_name = L"BUTTON", .style = BS_3STATE});
}

void CheckBoxPeer::OnContent(const Change& change) {
  ClickPeer::OnContent(change);
  SetCheck(Model().Value());
}

void OptionButtonPeer::Open() {
  OpenNative({.class_name = L"BUTTON", .style = BS_RADIOBUTTON});
}

void OptionButtonPeer::OnContent(const Change& change) {
  ClickPeer::OnContent(change);
  SetCheck(Model().Value() ? BST_CHECKED : BST_UNCHECKED);
}

}  // namespace tavrix::viewkit::win32
