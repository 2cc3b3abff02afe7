#include "viewkit/win32/native_peer.h"

#include "host/utf.h"

namespace tavrix::viewkit::win32 {

void NativePeer::OpenNative(const Plan& plan) {
  CreateSystem(plan.class_name, {.style = StateStyle() | plan.style,
                                 .extended_style = plan.extended_style,
                                 .place = PlaceOfModel(),
                                 .parent = Context().window});
  tip_.emplace(Hwnd());
  OnFontChanged();
  OnContent({});
}

void NativePeer::OnFontChanged() {
  Tell(WM_SETFONT, reinterpret_cast<WPARAM>(Context().fonts->Get(false)), TRUE);
  if (Alive()) ApplyBounds();
}

RECT NativePeer::PlaceOfLine() const {
  constexpr int kEdges = 8;  // pixels above and below the text, at every scale
  RECT place = PlaceOfModel();
  const LONG spare = place.bottom - place.top - Context().fonts->LinePixels() - kEdges;
  if (spare > 0) InflateRect(&place, 0, static_cast<int>(-spare / 2));
  return place;
}

void NativePeer::OnDestroyed() {
  tip_.reset();
  ControlPeer::OnDestroyed();
}

LRESULT NativePeer::Tell(UINT message, WPARAM wparam, LPARAM lparam) const {
  return SendMessageW(Hwnd(), message, wparam, lparam);
}

std::string NativePeer::ShownText() const {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(Hwnd())) + 1, L'\0');
  const int length = GetWindowTextW(Hwnd(), text.data(), static_cast<int>(text.size()));
  text.resize(static_cast<std::size_t>(length));
  return host::Narrow(text);
}

void NativePeer::ShowText(const std::string& text) {
  if (ShownText() != text) SetWindowTextW(Hwnd(), host::Wide(text).c_str());
}

std::string NativePeer::TipOrCutText() const {
  if (!Model().ToolTipText().empty()) return Model().ToolTipText();
  RECT client{};
  GetClientRect(Hwnd(), &client);
  std::string text = ShownText();
  const int width = Context().fonts->Pixels(host::Wide(text), false);
  return width > client.right - client.left ? text : std::string();
}

bool NativePeer::HasFocus() const {
  const HWND focus = GetFocus();
  return focus == Hwnd() || IsChild(Hwnd(), focus);
}

LRESULT NativePeer::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_MOUSEMOVE && tip_) {
    RECT client{};
    GetClientRect(Hwnd(), &client);
    tip_->Set(TipText(), client);
  }
  if (tip_) tip_->Relay(message, wparam, lparam);
  // The system's control would take the focus itself, and not survive if who hears of that ends it.
  if (message == WM_LBUTTONDOWN && TabStop() && !HasFocus()) {
    static_cast<void>(TakeFocus());
    if (!Alive()) return 0;
  }
  return ControlPeer::OnMessage(message, wparam, lparam);
}

}  // namespace tavrix::viewkit::win32
