#include "viewkit/win32/drawn_peers.h"

#include <windowsx.h>

#include "viewkit/win32/colors.h"

namespace tavrix::viewkit::win32 {
namespace {

constexpr int kKeyStep = 10;  // pixels at 96 dpi

}  // namespace

void SplitterPeer::Open() {
  Create(ClassNamed(L"TavrixSplitter"),
         {.style = StateStyle(), .place = PlaceOfModel(), .parent = Context().window});
}

bool SplitterPeer::WantsKey(Key key, Modifiers modifiers) const {
  return (key == Key::kLeft || key == Key::kRight) && !modifiers.control && !modifiers.alt;
}

void SplitterPeer::Paint(HDC dc) const {
  RECT client{};
  GetClientRect(Hwnd(), &client);
  Fill(dc, client, ToColorRef(Context().back_color, color::kButtonFace));
  if (Model().Focused()) DrawFocusRect(dc, &client);
}

void SplitterPeer::MoveBy(int pixels) {
  Model().SetPosition(Model().GetBounds().left + Context().scale.ToTwips(pixels));
}

LRESULT SplitterPeer::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  const auto painted = OnPaintMessage(message, wparam, [this](HDC dc) { Paint(dc); });
  if (painted) return *painted;
  switch (message) {
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
