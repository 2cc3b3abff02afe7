#include "app/sheet/sheet_window.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "app/frame/popup_menu.h"
#include "host/utf.h"
#include "viewkit/win32/clipboard.h"

namespace desk::app {
namespace {

namespace viewkit = tavrix::viewkit;
using tavrix::host::Wide;

constexpr DWORD kStyle = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
constexpr int kMinDesignWidth = 620;
constexpr int kMinDesignHeight = 260;

}  // namespace

std::shared_ptr<SheetWindow> SheetWindow::Make(HWND frame, SharedStyle style, const Plan& plan,
                                               Calls calls) {
  auto window = std::make_shared<SheetWindow>();
  SheetWindow& self = *window;
  self.style_ = std::move(style);
  self.calls_ = std::move(calls);
  self.user_ =
      win32::WindowsUser({.owner = [&self] { return self.Hwnd(); },
                          .modal = [&self](bool modal) { self.calls_.modal(self.Hwnd(), modal); }});
  self.view_ = plan.make(self.user_);
  self.Create(win32::ClassNamed(L"DeskSheet"),
              {.text = Wide(self.view_->Title()).c_str(), .style = kStyle});
  self.view_->TitleChanged.Add(
      [&self] { SetWindowTextW(self.Hwnd(), Wide(self.view_->Title()).c_str()); });
  for (const UINT size : {UINT{ICON_SMALL}, UINT{ICON_BIG}}) {  // the frame's, which outlive this
    SendMessageW(self.Hwnd(), WM_SETICON, size, SendMessageW(frame, WM_GETICON, size, 0));
  }
  self.Place(frame, plan.design);
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
void SheetWindow::Place(HWND frame_window, SIZE design) {
  const RECT work = win32::WorkArea(frame_window);
  RECT frame{};
  GetWindowRect(frame_window, &frame);
  const LONG width = std::min<LONG>(style_->scale.Design(design.cx), work.right - work.left);
  const LONG height = std::min<LONG>(style_->scale.Design(design.cy), work.bottom - work.top);
  const LONG left =
      std::clamp((frame.left + frame.right - width) / 2, work.left, work.right - width);
  const LONG top =
      std::clamp((frame.top + frame.bottom - height) / 2, work.top, work.bottom - height);
  SetWindowPos(Hwnd(), nullptr, left, top, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

void SheetWindow::Open() {
  if (!IsWindowVisible(Hwnd())) calls_.show(Hwnd());
  if (IsIconic(Hwnd())) ShowWindow(Hwnd(), SW_RESTORE);
  SetWindowPos(Hwnd(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
  SetForegroundWindow(Hwnd());
  controls_->FocusFirst();
}

bool SheetWindow::UseKey(const MSG& message) {
  if (message.message != WM_KEYDOWN && message.message != WM_SYSKEYDOWN) return false;
  return view_->UseKey(static_cast<viewkit::Key>(message.wParam),
                       win32::ModifiersOf(message.lParam));
}

/// What the controls have no use for.
bool SheetWindow::UseLastKey(const MSG& message) {
  if (message.message != WM_KEYDOWN) return false;
  const auto key = static_cast<viewkit::Key>(message.wParam);
  switch (message.wParam) {
    case VK_ESCAPE:
      SendMessageW(Hwnd(), WM_CLOSE, 0, 0);
      return true;
    case VK_F5:
      view_->Reload();
      return true;
    default:
      return calls_.key && calls_.key(*this, key, win32::ModifiersOf(message.lParam));
  }
}

bool SheetWindow::Translate(MSG& message) {
  if (!Alive() || (message.hwnd != Hwnd() && !IsChild(Hwnd(), message.hwnd))) return false;
  const auto keep = shared_from_this();
  if (AsksForMenu(message)) return OpenMenu(message), true;
  if (UseKey(message) || !Alive()) return true;
  if (controls_->TranslateAccelerator(message)) return true;
  // Letters with Alt are the captions' mnemonics.
  const bool mnemonic = message.message == WM_SYSCHAR;
  if (mnemonic && IsDialogMessageW(controls_->Handle(), &message)) return true;
  if (UseLastKey(message)) return true;
  TranslateMessage(&message);
  DispatchMessageW(&message);
  return true;
}

void SheetWindow::OnContextMenu(LPARAM place) {
  const auto keep = shared_from_this();
  viewkit::FlexGrid& grid = view_->Grid();
  std::vector<views::Sheet::MenuItem> items = view_->Menu();
  if (!items.empty()) items.emplace_back();
  items.push_back({.text = "复制(&C)\tCtrl+C",
                   .run = [&] { win32::CopyText(Hwnd(), grid.ClipText()); },
                   .enabled = grid.Row() >= grid.FixedRows()});
  items.push_back({.text = "刷新(&R)\tF5", .run = [&] { view_->Reload(); }});
  const auto print = [this](bool shift) {
    return [this, shift] {
      static_cast<void>(calls_.key(*this, viewkit::Key{'P'}, {.shift = shift, .control = true}));
    };
  };
  if (calls_.key) {
    items.emplace_back();
    items.push_back({.text = "打印(&P)…\tCtrl+P", .run = print(false)});
    items.push_back({.text = "打印预览(&V)\tCtrl+Shift+P", .run = print(true)});
  }
  std::vector<std::wstring> texts;
  texts.reserve(items.size());
  for (const views::Sheet::MenuItem& item : items) texts.push_back(Wide(item.text));
  std::vector<MenuEntry> entries;
  for (std::size_t i = 0; i < items.size(); ++i) {
    entries.push_back({texts[i].c_str(), items[i].enabled});
  }
  const HWND part = reinterpret_cast<HWND>(grid.WindowHandle());
  const auto entry = ChooseEntry(Hwnd(), MenuPlace(part, place, {}), entries);
  if (entry && Alive() && items[*entry].run) items[*entry].run();
}

void SheetWindow::OnDestroyed() {
  controls_.reset();
  view_.reset();
  if (calls_.closed) std::exchange(calls_.closed, {})();
}

LRESULT SheetWindow::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
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
      if (!view_ || view_->MayClose()) Destroy();
      return 0;
    case WM_DESTROY:
      calls_.closing(Hwnd());
      return 0;
    default:
      return Window::OnMessage(message, wparam, lparam);
  }
}

}  // namespace desk::app
