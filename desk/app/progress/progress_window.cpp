#include "app/progress/progress_window.h"

#include <commctrl.h>

#include <algorithm>

namespace desk::app {
namespace {

constexpr DWORD kStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
constexpr DWORD kExtendedStyle = WS_EX_DLGMODALFRAME;
constexpr int kWidth = 420;  // all at 96 dots per inch
constexpr int kMargin = 16;
constexpr int kLine = 22;
constexpr int kBarTop = kMargin + 2 * kLine + 4;
constexpr int kBarHeight = 16;
constexpr int kButtonTop = kBarTop + kBarHeight + kMargin;
constexpr int kButtonWidth = 104;
constexpr int kButtonHeight = 28;
constexpr int kHeight = kButtonTop + kButtonHeight + kMargin;
constexpr int kWhole = 1000;
constexpr WORD kCancelId = IDCANCEL;

HWND MakeChild(HWND parent, const wchar_t* window_class, const wchar_t* text, DWORD style,
               WORD id) {
  return CreateWindowExW(0, window_class, text, WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, parent,
                         reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), win32::ThisModule(),
                         nullptr);
}

}  // namespace

std::shared_ptr<ProgressWindow> ProgressWindow::Show(HWND owner, const std::wstring& title) {
  auto window = std::make_shared<ProgressWindow>();
  const UINT dpi = owner == nullptr ? GetDpiForSystem() : GetDpiForWindow(owner);
  window->style_ = std::make_shared<const Style>(static_cast<int>(dpi));
  window->Create(
      win32::ClassNamed(L"DeskProgress"),
      {.text = title.c_str(), .style = kStyle, .extended_style = kExtendedStyle, .parent = owner});
  window->MakeChildren();
  const auto design = [&](int pixels) { return window->style_->scale.Design(pixels); };
  RECT size{0, 0, design(kWidth), design(kHeight)};
  AdjustWindowRectExForDpi(&size, kStyle, FALSE, kExtendedStyle, dpi);
  RECT over = win32::WorkArea(window->Hwnd());
  if (owner != nullptr && !IsIconic(owner)) GetWindowRect(owner, &over);
  const LONG width = size.right - size.left;
  const LONG height = size.bottom - size.top;
  SetWindowPos(window->Hwnd(), HWND_TOP, (over.left + over.right - width) / 2,
               (over.top + over.bottom - height) / 2, width, height, SWP_SHOWWINDOW);
  SetFocus(window->button_);
  return window;
}

void ProgressWindow::MakeChildren() {
  bar_ = MakeChild(Hwnd(), PROGRESS_CLASSW, L"", 0, 0);
  button_ = MakeChild(Hwnd(), WC_BUTTONW, L"取消", WS_TABSTOP | BS_PUSHBUTTON, kCancelId);
  SendMessageW(bar_, PBM_SETRANGE32, 0, kWhole);
  SetFontsInside(Hwnd(), *style_);
}

void ProgressWindow::Arrange() {
  const auto place = [this](HWND child, int left, int top, int width, int height) {
    const auto& scale = style_->scale;
    MoveWindow(child, scale.Design(left), scale.Design(top), scale.Design(width),
               scale.Design(height), TRUE);
  };
  place(bar_, kMargin, kBarTop, kWidth - 2 * kMargin, kBarHeight);
  place(button_, kWidth - kMargin - kButtonWidth, kButtonTop, kButtonWidth, kButtonHeight);
}

void ProgressWindow::SetState(const std::wstring& step, const std::wstring& how_far,
                              int thousandths) {
  if (cancelled_) return;
  if (step != step_ || how_far != how_far_) InvalidateRect(Hwnd(), nullptr, FALSE);
  step_ = step;
  how_far_ = how_far;
  if (thousandths == thousandths_) return;
  thousandths_ = thousandths;
  SendMessageW(bar_, PBM_SETPOS, static_cast<WPARAM>(std::clamp(thousandths, 0, kWhole)), 0);
}

void ProgressWindow::Pump() {
  MSG message{};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | PM_QS_PAINT)) DispatchMessageW(&message);
  while (Alive() && PeekMessageW(&message, Hwnd(), 0, 0, PM_REMOVE)) {
    if (message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE) Cancel();
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

void ProgressWindow::Cancel() {
  cancelled_ = true;
  how_far_ = L"正在取消…";
  EnableWindow(button_, FALSE);
  SetFocus(Hwnd());
  InvalidateRect(Hwnd(), nullptr, FALSE);
}

RECT ProgressWindow::Line(int number) const {
  const auto design = [this](int pixels) { return style_->scale.Design(pixels); };
  return {design(kMargin), design(kMargin + number * kLine), Client().right - design(kMargin),
          design(kMargin + (number + 1) * kLine)};
}

void ProgressWindow::Paint(HDC dc, const RECT& area) {
  FillBox(dc, area, FaceColor());
  const win32::Selected font(dc, style_->Font());
  SetBkMode(dc, TRANSPARENT);
  DrawLine(dc, step_.c_str(), Line(0), TextColor());
  DrawLine(dc, how_far_.c_str(), Line(1), FaintColor());
}

LRESULT ProgressWindow::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_CLOSE:
      Cancel();
      return 0;
    case WM_COMMAND:
      if (LOWORD(wparam) == kCancelId) Cancel();
      return 0;
    default:
      return Pane::OnMessage(message, wparam, lparam);
  }
}

}  // namespace desk::app
