#include "app/balance/trial_balance_window.h"

#include <algorithm>
#include <array>
#include <utility>

#include "app/frame/popup_menu.h"
#include "viewkit/win32/clipboard.h"

namespace desk::app {
namespace {

namespace win32 = tavrix::viewkit::win32;

constexpr DWORD kStyle = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
constexpr int kDesignWidth = 1160;
constexpr int kDesignHeight = 640;
constexpr int kMinDesignWidth = 620;
constexpr int kMinDesignHeight = 260;

const win32::WindowClass& BalanceClass() {
  static const win32::WindowClass balance(L"DeskTrialBalance", 0);
  return balance;
}

}  // namespace

std::shared_ptr<TrialBalanceWindow> TrialBalanceWindow::Make(HWND frame, SharedStyle style,
                                                             const book::Book& book, Calls calls) {
  auto window = std::make_shared<TrialBalanceWindow>();
  TrialBalanceWindow& self = *window;
  self.style_ = std::move(style);
  self.calls_ = std::move(calls);
  self.user_ =
      win32::WindowsUser({.owner = [&self] { return self.Hwnd(); }, .modal = self.calls_.modal});
  self.view_ =
      std::make_unique<views::TrialBalanceView>(book.GetSession(), book.System(), self.user_);
  self.Create(BalanceClass(), {.text = L"试算平衡", .style = kStyle});
  for (const UINT size : {UINT{ICON_SMALL}, UINT{ICON_BIG}}) {  // the frame's, which outlive this
    SendMessageW(self.Hwnd(), WM_SETICON, size, SendMessageW(frame, WM_GETICON, size, 0));
  }
  self.Place(frame);
  RECT area{};
  GetClientRect(self.Hwnd(), &area);
  self.controls_.emplace(self.view_->Controls(),
                         win32::ViewWindowOptions{.parent = self.Hwnd(),
                                                  .place = area,
                                                  .font = DeskFont(),
                                                  .resized = [&self](int width, int height) {
                                                    self.view_->Resize(width, height);
                                                  }});
  return window;
}

/// In the middle of the frame, as large as it should be and the screen allows.
void TrialBalanceWindow::Place(HWND frame_window) {
  const RECT work = win32::WorkArea(frame_window);
  RECT frame{};
  GetWindowRect(frame_window, &frame);
  const LONG width = std::min<LONG>(style_->scale.Design(kDesignWidth), work.right - work.left);
  const LONG height = std::min<LONG>(style_->scale.Design(kDesignHeight), work.bottom - work.top);
  const LONG left =
      std::clamp((frame.left + frame.right - width) / 2, work.left, work.right - width);
  const LONG top =
      std::clamp((frame.top + frame.bottom - height) / 2, work.top, work.bottom - height);
  SetWindowPos(Hwnd(), nullptr, left, top, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

void TrialBalanceWindow::Open() {
  if (!IsWindowVisible(Hwnd())) calls_.show(Hwnd());
  if (IsIconic(Hwnd())) ShowWindow(Hwnd(), SW_RESTORE);
  SetWindowPos(Hwnd(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
  SetForegroundWindow(Hwnd());
  controls_->FocusFirst();
}

bool TrialBalanceWindow::UseKey(const MSG& message) {
  if (message.message != WM_KEYDOWN) return false;
  const auto keep = shared_from_this();
  switch (message.wParam) {
    case VK_ESCAPE:
      SendMessageW(Hwnd(), WM_CLOSE, 0, 0);
      return true;
    case VK_F5:
      view_->Reload();
      return true;
    default:
      return false;
  }
}

bool TrialBalanceWindow::Translate(MSG& message) {
  if (!Alive() || (message.hwnd != Hwnd() && !IsChild(Hwnd(), message.hwnd))) return false;
  const auto keep = shared_from_this();
  if (AsksForMenu(message)) return OpenMenu(message), true;
  if (controls_->TranslateAccelerator(message)) return true;
  // Letters with Alt are the captions' mnemonics.
  const bool mnemonic = message.message == WM_SYSCHAR;
  if (mnemonic && IsDialogMessageW(controls_->Handle(), &message)) return true;
  if (UseKey(message)) return true;
  TranslateMessage(&message);
  DispatchMessageW(&message);
  return true;
}

void TrialBalanceWindow::OnContextMenu(LPARAM place) {
  const HWND grid = reinterpret_cast<HWND>(view_->Grid().WindowHandle());
  const std::array entries = {MenuEntry{L"复制(&C)\tCtrl+C", view_->Grid().Row() > 0}, MenuEntry{},
                              MenuEntry{L"刷新(&R)\tF5"}, MenuEntry{L"列布局(&L)…"}};
  const auto keep = shared_from_this();
  const auto entry = ChooseEntry(Hwnd(), MenuPlace(grid, place, {}), entries);
  if (!entry || !Alive()) return;
  if (*entry == 0) win32::CopyText(Hwnd(), view_->Grid().ClipText());
  if (*entry == 2) view_->Reload();
  if (*entry == 3) view_->AskLayout();
}

void TrialBalanceWindow::OnDestroyed() {
  controls_.reset();
  view_.reset();
  if (calls_.closed) std::exchange(calls_.closed, {})();
}

LRESULT TrialBalanceWindow::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_SIZE: {
      RECT area{};
      GetClientRect(Hwnd(), &area);
      if (controls_ && wparam != SIZE_MINIMIZED) controls_->SetPlace(area);
      return 0;
    }
    case WM_DPICHANGED: {
      const RECT& wanted = *reinterpret_cast<const RECT*>(lparam);
      SetWindowPos(Hwnd(), nullptr, wanted.left, wanted.top, wanted.right - wanted.left,
                   wanted.bottom - wanted.top, SWP_NOZORDER | SWP_NOACTIVATE);
      return 0;
    }
    case WM_GETMINMAXINFO:
      reinterpret_cast<MINMAXINFO*>(lparam)->ptMinTrackSize = {
          style_->scale.Design(kMinDesignWidth), style_->scale.Design(kMinDesignHeight)};
      return 0;
    case WM_CONTEXTMENU:
      if (view_) OnContextMenu(lparam);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_SETFOCUS:
      if (controls_) controls_->FocusFirst();
      return 0;
    case WM_CLOSE:
      Destroy();
      return 0;
    case WM_DESTROY:
      calls_.closing(Hwnd());
      return 0;
    default:
      return Window::OnMessage(message, wparam, lparam);
  }
}

}  // namespace desk::app
