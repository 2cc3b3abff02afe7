#include "app/frame/pane.h"

#include "app/frame/icons.h"
#include "viewkit/win32/handles.h"

namespace desk::app {

RECT Pane::Client() const {
  RECT area{};
  GetClientRect(Hwnd(), &area);
  return area;
}

LRESULT Pane::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_SIZE:
      Arrange();
      InvalidateRect(Hwnd(), nullptr, FALSE);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT: {
      const tavrix::viewkit::win32::PaintScope paint(Hwnd());
      Paint(paint.Dc(), Client());
      return 0;
    }
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
