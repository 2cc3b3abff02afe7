#include "viewkit/win32/splitter_peer.h"

#include <windowsx.h>

#include "viewkit/win32/colors.h"

namespace tavrix::viewkit::win32 {
namespace {

constexpr int kKeyStep = 10;  // pixels at 96 dpi

const WindowClass& SplitterClass() {
  static const WindowClass splitter(L"TavrixSplitter");
  return splitter;
}

}  // namespace

void SplitterPeer::Open() {
  Create(SplitterClass(),
         {.style = StateStyle(), .place = PlaceOfModel(), .parent = Context().window});
}

bool SplitterPeer::WantsKey(Key key, Modifiers modifiers) const {
  return (key == Key::kLeft || key == Key::kRight) && !modifiers.control && !modifiers.alt;
}

void SplitterPeer::Paint(HDC dc) const {
  RECT client{};
  GetClientRect(Hwnd(), &client);
  Fill(dc, client, ToColorRef(Context().back_color, color::kButtonFace));
  if (splitter_.Focused()) DrawFocusRect(dc, &client);
}

void SplitterPeer::MoveBy(int pixels) {
  splitter_.SetPosition(splitter_.GetBounds().left + Context().scale.ToTwips(pixels));
}

LRESULT SplitterPeer::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT: {
      const PaintScope paint(Hwnd());
      Paint(paint.Dc());
      return 0;
    }
    case WM_PRINTCLIENT:
      Paint(reinterpret_cast<HDC>(wparam));
      return 0;
    case WM_SETCURSOR:
      SetCursor(LoadCursorW(nullptr, IDC_SIZEWE));
      return TRUE;
    case WM_LBUTTONDOWN:
      grip_ = GET_X_LPARAM(lparam);
      SetCapture(Hwnd());
      return 0;
    case WM_MOUSEMOVE:
      if (grip_ >= 0) MoveBy(GET_X_LPARAM(lparam) - grip_);
      return 0;
    case WM_LBUTTONUP:
      ReleaseCapture();
      return 0;
    case WM_CAPTURECHANGED:
      grip_ = -1;
      return 0;
    default:
      break;
  }
  const LRESULT result = ControlPeer::OnMessage(message, wparam, lparam);
  if (!Alive()) return result;
  const int step = Context().scale.Design(kKeyStep);
  if (message == WM_KEYDOWN && wparam == VK_LEFT) MoveBy(-step);
  if (message == WM_KEYDOWN && wparam == VK_RIGHT) MoveBy(step);
  if (message == WM_SETFOCUS || message == WM_KILLFOCUS) InvalidateRect(Hwnd(), nullptr, FALSE);
  return result;
}

}  // namespace tavrix::viewkit::win32
