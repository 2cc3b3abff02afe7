#include "viewkit/win32/control_peer.h"

#include <utility>

namespace tavrix::viewkit::win32 {
ControlPeer::ControlPeer(ViewContext& context, Control& control)
    : context_(context.shared_from_this()), control_(control) {
  control_.SetPeer(this);
}

ControlPeer::~ControlPeer() {
  Detach();
}

std::intptr_t ControlPeer::Handle() const {
  return reinterpret_cast<std::intptr_t>(Hwnd());
}

void ControlPeer::Update(const Change& change) {
  if (!Alive()) return;
  const auto keep = shared_from_this();  // who hears of it may end the view
  switch (change.kind) {
    case Change::Kind::kBounds:
      return ApplyBounds();
    case Change::Kind::kState:
      return ApplyState();
    default:
      return OnContent(change);
  }
}

bool ControlPeer::TakeFocus() {
  const auto keep = shared_from_this();
  if (!CanTakeFocus(Hwnd())) return false;
  ::SetFocus(Hwnd());
  return GetFocus() == Hwnd();
}

std::optional<LRESULT> ControlPeer::OnNotify(UINT, WPARAM, LPARAM) {
  return {};
}

RECT ControlPeer::PlaceOfModel() const {
  const host::Bounds bounds = control_.GetBounds();
  const Scale& scale = context_->scale;
  // The far edges are converted, not the sizes: neighbours then meet without a gap.
  return {scale.ToPixels(bounds.left), scale.ToPixels(bounds.top),
          scale.ToPixels(bounds.left + bounds.width), scale.ToPixels(bounds.top + bounds.height)};
}

DWORD ControlPeer::StateStyle() const {
  return WS_CHILD | WS_CLIPSIBLINGS | (control_.Visible() ? WS_VISIBLE : 0U) |
         (control_.Enabled() ? 0U : WS_DISABLED) | (TabStop() ? WS_TABSTOP : 0U);
}

void ControlPeer::ApplyState() {
  const bool shown = (GetWindowLongW(Hwnd(), GWL_STYLE) & WS_VISIBLE) != 0;
  if (shown != control_.Visible()) ShowWindow(Hwnd(), control_.Visible() ? SW_SHOWNA : SW_HIDE);
  if (!Alive()) return;
  if ((IsWindowEnabled(Hwnd()) != 0) != control_.Enabled()) {
    EnableWindow(Hwnd(), control_.Enabled() ? TRUE : FALSE);
  }
  if (Alive()) InvalidateRect(Hwnd(), nullptr, FALSE);
}

void ControlPeer::ApplyBounds() {
  const RECT place = PlaceOfModel();
  SetWindowPos(Hwnd(), nullptr, place.left, place.top, place.right - place.left,
               place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

LRESULT ControlPeer::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_KEYDOWN) {
    control_.KeyDown.Raise(static_cast<Key>(wparam), ModifiersOf(lparam));
  }
  if (message == WM_KEYUP) control_.KeyUp.Raise(static_cast<Key>(wparam), ModifiersNow());
  if (!Alive()) return 0;
  const LRESULT result = Window::OnMessage(message, wparam, lparam);
  if (message == WM_SETFOCUS || message == WM_KILLFOCUS) {
    // The other window's handle comes as an integer.
    FocusChanged(message == WM_SETFOCUS, reinterpret_cast<HWND>(wparam));
  }
  return result;
}

std::optional<LRESULT> ControlPeer::OnPaintMessage(UINT message, WPARAM wparam,
                                                   const std::function<void(HDC)>& paint) {
  switch (message) {
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT: {
      const PaintScope scope(Hwnd());
      context_->buffer.Paint(scope.Dc(), scope.Area(), paint);
      return 0;
    }
    case WM_PRINTCLIENT:
      paint(reinterpret_cast<HDC>(wparam));
      return 0;
    default:
      return {};
  }
}

void ControlPeer::FocusChanged(bool focused, HWND other) {
  if (context_->focus_moved) context_->focus_moved(focused, other);
  if (Alive()) control_.NotifyFocus(focused);
}

void ControlPeer::OnDestroyed() {
  Detach();
}

void ControlPeer::Detach() {
  if (std::exchange(attached_, false)) control_.SetPeer(nullptr);
}

bool CanTakeFocus(HWND window) {
  return window != nullptr && IsWindowVisible(window) && IsWindowEnabled(window);
}

}  // namespace tavrix::viewkit::win32
