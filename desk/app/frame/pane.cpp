#include "app/frame/pane.h"

#include <windowsx.h>

#include "app/frame/icons.h"
#include "viewkit/win32/handles.h"

namespace desk::app {

RECT Pane::Client() const {
  RECT area{};
  GetClientRect(Hwnd(), &area);
  return area;
}

bool Pane::OnEdge(POINT at) const {
  constexpr int kDesignGrip = 5;
  const int grip = MulDiv(kDesignGrip, static_cast<int>(GetDpiForWindow(Hwnd())), 96);
  return (Edge() == PaneEdge::kLeft && at.x < grip) || (Edge() == PaneEdge::kTop && at.y < grip);
}

bool Pane::StartDrag(POINT at) {
  dragging_ = OnEdge(at);
  if (dragging_) SetCapture(Hwnd());
  return dragging_;
}

void Pane::OnMouseMove(POINT at) {
  const PaneEdge edge = Edge();
  if (edge == PaneEdge::kNone) return;
  const bool left = edge == PaneEdge::kLeft;
  if (dragging_) {
    const RECT area = Client();
    const LONG size = left ? area.right - at.x : area.bottom - at.y;
    OnEdgeDragged(MulDiv(static_cast<int>(size), 96, static_cast<int>(GetDpiForWindow(Hwnd()))));
  }
  const wchar_t* const sizing = left ? IDC_SIZEWE : IDC_SIZENS;
  SetCursor(LoadCursorW(nullptr, dragging_ || OnEdge(at) ? sizing : IDC_ARROW));
}

LRESULT Pane::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_SIZE:
      Arrange();
      InvalidateRect(Hwnd(), nullptr, FALSE);
      return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:  // the one with the focus is painted as such
      InvalidateRect(Hwnd(), nullptr, FALSE);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT: {
      const tavrix::viewkit::win32::PaintScope paint(Hwnd());
      Paint(paint.Dc(), Client());
      return 0;
    }
    case WM_MOUSEMOVE:
      OnMouseMove({GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)});
      return 0;
    case WM_LBUTTONUP:
      if (dragging_) ReleaseCapture();
      return 0;
    case WM_CAPTURECHANGED:
      dragging_ = false;
      return 0;
    default:
      return Window::OnMessage(message, wparam, lparam);
  }
}

RECT CrossArea(const RECT& client, int height, const Style& style) {
  return {client.right - style.scale.Design(32), 0, client.right, height};
}

void PaintCross(HDC dc, const RECT& cross, const Style& style) {
  const int icon = style.small_icon_pixels;
  PaintIcon(dc, Icon::kClose, (cross.left + cross.right - icon) / 2,
            (cross.top + cross.bottom - icon) / 2, icon);
}

}  // namespace desk::app
