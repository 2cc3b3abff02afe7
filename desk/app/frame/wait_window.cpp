#include "app/frame/wait_window.h"

#include <windowsx.h>

namespace desk::app {
namespace {

constexpr int kDesignWidth = 400;
constexpr int kDesignHeight = 104;
constexpr int kMargin = 16;

}  // namespace

std::shared_ptr<WaitWindow> WaitWindow::Show(HWND over) {
  auto window = std::make_shared<WaitWindow>();
  window->style_ = std::make_shared<const Style>(static_cast<int>(GetDpiForWindow(over)));
  window->Create(win32::ClassNamed(L"DeskWait", CS_DROPSHADOW),
                 {.style = WS_POPUP | WS_BORDER,
                  .extended_style = WS_EX_NOACTIVATE | WS_EX_TOOLWINDOW,
                  .parent = over});
  RECT place{};
  GetWindowRect(over, &place);
  const int width = window->style_->scale.Design(kDesignWidth);
  const int height = window->style_->scale.Design(kDesignHeight);
  SetWindowPos(window->Hwnd(), HWND_TOP, (place.left + place.right - width) / 2,
               (place.top + place.bottom - height) / 2, width, height,
               SWP_NOACTIVATE | SWP_SHOWWINDOW);
  return window;
}

void WaitWindow::SetText(const std::wstring& text) {
  if (text == text_) return;
  text_ = text;
  SetWindowTextW(Hwnd(), text_.c_str());
  InvalidateRect(Hwnd(), nullptr, FALSE);
}

RECT WaitWindow::Button() const {
  const auto design = [this](int pixels) { return style_->scale.Design(pixels); };
  const RECT area = Client();
  return {area.right - design(kMargin + 104), area.bottom - design(kMargin + 24),
          area.right - design(kMargin), area.bottom - design(kMargin) + design(2)};
}

void WaitWindow::Paint(HDC dc, const RECT& area) {
  const auto design = [this](int pixels) { return style_->scale.Design(pixels); };
  FillBox(dc, area, FaceColor());
  const win32::Selected font(dc, style_->Font());
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, TextColor());
  RECT text{design(kMargin), design(12), area.right - design(kMargin), Button().top};
  DrawTextW(dc, text_.c_str(), -1, &text, DT_WORDBREAK | DT_NOPREFIX);
  RECT button = Button();
  DrawFrameControl(dc, &button, DFC_BUTTON, DFCS_BUTTONPUSH);
  DrawTextW(dc, L"取消（Esc）", -1, &button, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

LRESULT WaitWindow::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_MOUSEACTIVATE:
      return MA_NOACTIVATE;
    case WM_LBUTTONUP: {
      const RECT button = Button();
      if (PtInRect(&button, {GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)})) clicked_ = true;
      return 0;
    }
    default:
      return Pane::OnMessage(message, wparam, lparam);
  }
}

}  // namespace desk::app
