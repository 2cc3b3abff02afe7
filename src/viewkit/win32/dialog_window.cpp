#include "viewkit/win32/dialog_window.h"

#include <algorithm>
#include <map>
#include <mutex>

#include "host/utf.h"
#include "viewkit/win32/button_peers.h"
#include "viewkit/win32/input_peers.h"

namespace tavrix::viewkit::win32 {
namespace {

constexpr DWORD kStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
constexpr DWORD kExtendedStyle = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT;

/// Each dialog's class is named after it and kept until the module goes: dialogs of one name may
/// be open at once, also in several apartments.
const WindowClass& DialogClass(const std::string& name) {
  static std::mutex mutex;
  const std::lock_guard lock(mutex);
  static std::map<std::string, WindowClass> classes;
  return classes.try_emplace(name, host::Wide(name)).first->second;
}

SIZE SizeOf(const RECT& area) {
  return {area.right - area.left, area.bottom - area.top};
}

}  // namespace

DialogWindow::DialogWindow(DialogModel& dialog) : dialog_(dialog) {
  caption_listener_ = dialog_.CaptionChanged.Add([this] { SetCaption(); });
}

DialogWindow::~DialogWindow() {
  dialog_.CaptionChanged.Remove(caption_listener_);
  Destroy();
  ClosePeers();
}

void DialogWindow::Open(HWND owner) {
  Create(DialogClass(dialog_.Name()),
         {.style = kStyle, .extended_style = kExtendedStyle, .parent = owner});
  Prepare(color::kButtonFace, FontSpec::System());
  SetCaption();
  SizeAndCenter(owner);
  OpenPeers(dialog_.Controls());
  SetIdentifiers();
  SendMessageW(Hwnd(), WM_UPDATEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEACCEL | UISF_HIDEFOCUS), 0);
}

void DialogWindow::SetCaption() {
  SetWindowTextW(Hwnd(), host::Wide(dialog_.Caption()).c_str());
}

void DialogWindow::SetIdentifiers() {
  for (std::size_t i = 0; i < dialog_.Controls().Count(); ++i) {
    const Control& control = dialog_.Controls().At(i);
    auto* window = reinterpret_cast<HWND>(control.WindowHandle());
    SetWindowLongPtrW(window, GWLP_ID, dialog_.Identifier(control));
    if (&control == dialog_.DefaultButton()) SendMessageW(window, BM_SETSTYLE, BS_DEFPUSHBUTTON, 0);
  }
}

void DialogWindow::SizeAndCenter(HWND owner) {
  const Scale& scale = GetScale();
  const RECT work = WorkArea(owner == nullptr ? Hwnd() : owner);
  RECT area{};
  AdjustWindowRectExForDpi(&area, kStyle, FALSE, kExtendedStyle, static_cast<UINT>(scale.dpi));
  const SIZE border = SizeOf(area);
  dialog_.FitInto(scale.ToTwips(static_cast<int>(work.bottom - work.top - border.cy)));
  const SIZE size{border.cx + scale.ToPixels(dialog_.Width()),
                  border.cy + scale.ToPixels(dialog_.Height())};
  RECT frame = work;
  if (owner != nullptr && !IsIconic(owner)) GetWindowRect(owner, &frame);
  const LONG left = (frame.left + frame.right - size.cx) / 2;
  const LONG top = (frame.top + frame.bottom - size.cy) / 2;
  SetWindowPos(Hwnd(), nullptr, std::max(work.left, std::min(left, work.right - size.cx)),
               std::max(work.top, std::min(top, work.bottom - size.cy)), size.cx, size.cy,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

void DialogWindow::Run() {
  ShowWindow(Hwnd(), SW_SHOW);
  dialog_.Opened();
  MSG message{};
  while (Alive() && dialog_.IsOpen()) {
    const BOOL got = GetMessageW(&message, nullptr, 0, 0);
    if (got <= 0) {
      dialog_.Unload();
      if (got == 0) PostQuitMessage(static_cast<int>(message.wParam));
      return;
    }
    if (Translate(message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

bool DialogWindow::Translate(MSG& message) {
  if (!Alive() || (message.hwnd != Hwnd() && !IsChild(Hwnd(), message.hwnd))) return false;
  if (message.message == WM_KEYDOWN) {
    return TranslateKey(static_cast<Key>(message.wParam), ModifiersOf(message.lParam));
  }
  // Letters with Alt are the system's rule: the mnemonics in the captions.
  return message.message == WM_SYSCHAR && IsDialogMessageW(Hwnd(), &message);
}

bool DialogWindow::TranslateKey(Key key, Modifiers modifiers) {
  ControlPeer* focus = PeerOf(GetFocus());
  if (key == Key::kTab && !modifiers.control && !modifiers.alt) {
    return MoveFocus(modifiers.shift) || (modifiers.shift ? FocusLast() : FocusFrom(0, false));
  }
  if (dynamic_cast<OptionButtonPeer*>(focus) != nullptr) {
    if (key == Key::kLeft || key == Key::kUp) return MoveOption(true);
    if (key == Key::kRight || key == Key::kDown) return MoveOption(false);
  }
  const auto* list = dynamic_cast<ComboBoxPeer*>(focus);
  if (list != nullptr && list->IsDropped()) return false;
  // One that is held has opened the dialog, or closed a list in it: it does not end the dialog too.
  const bool ends = key == Key::kEnter || key == Key::kEscape;
  return (ends && modifiers.repeated) || dialog_.KeyDown(key);
}

/// The arrow keys choose among the option buttons that follow each other.
bool DialogWindow::MoveOption(bool backward) {
  auto* option = dynamic_cast<OptionButtonPeer*>(PeerBeside(*PeerOf(GetFocus()), backward));
  if (option != nullptr && option->TakeFocus()) option->Choose();
  return true;
}

void DialogWindow::RestoreFocus() {
  Control* control = dialog_.FocusControl();
  if (control == nullptr || !control->SetFocus()) FocusFrom(0, false);
}

LRESULT DialogWindow::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_CLOSE:
      dialog_.Close();
      return 0;
    case WM_SETFOCUS:
      RestoreFocus();
      return 0;
    case WM_DPICHANGED: {
      const auto* place = reinterpret_cast<const RECT*>(lparam);
      const SIZE size = SizeOf(*place);
      SetWindowPos(Hwnd(), nullptr, place->left, place->top, size.cx, size.cy,
                   SWP_NOZORDER | SWP_NOACTIVATE);
      ApplyScale();
      return 0;
    }
    default:
      return PeerHost::OnMessage(message, wparam, lparam);
  }
}

void DialogWindow::OnDestroyed() {
  dialog_.Unload();
}

}  // namespace tavrix::viewkit::win32
