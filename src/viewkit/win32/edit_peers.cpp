#include "viewkit/win32/edit_peers.h"

#include <commctrl.h>

#include <algorithm>

#include "host/flag_scope.h"
#include "host/utf.h"

namespace tavrix::viewkit::win32 {
namespace {

constexpr int kItemsDropped = 12;

/// Keys that move in a text or change it, before a container makes commands of them.
bool IsEditingKey(Key key, Modifiers modifiers) {
  if (modifiers.alt) return false;
  constexpr char kCommands[] = "ACVXYZ";
  const int number = static_cast<int>(key);
  if (modifiers.control && number < 0x80) {
    for (const char command : kCommands) {
      if (command == number) return true;
    }
  }
  return key == Key::kLeft || key == Key::kRight || key == Key::kHome || key == Key::kEnd ||
         key == Key::kDelete || key == Key::kBack;
}

/// Ctrl+A as a character; the system's edit control does not know it.
constexpr WPARAM kControlA = 1;

}  // namespace

void EditPeer::Open() {
  OpenNative({.class_name = L"EDIT",
              .style = ES_AUTOHSCROLL | EditStyle(),
              .extended_style = WS_EX_CLIENTEDGE});
  Tell(EM_SETLIMITTEXT, 0);
}

void EditPeer::ApplyBounds() {
  const RECT place = PlaceOfLine();
  SetWindowPos(Hwnd(), nullptr, place.left, place.top, place.right - place.left,
               place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

bool EditPeer::WantsKey(Key key, Modifiers modifiers) const {
  return IsEditingKey(key, modifiers);
}

void EditPeer::OnContent(const Change& change) {
  if (change.kind == Change::Kind::kSelection) return static_cast<void>(Tell(EM_SETSEL, 0, -1));
  const host::FlagScope showing(showing_);
  ShowText(ModelText());
}

std::optional<LRESULT> EditPeer::OnNotify(UINT message, WPARAM wparam, LPARAM) {
  if (message != WM_COMMAND || HIWORD(wparam) != EN_CHANGE || showing_) return {};
  SetModelText(ShownText());
  return 0;
}

LRESULT EditPeer::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_CHAR && wparam == kControlA) return Tell(EM_SETSEL, 0, -1);
  const bool unused = wparam == VK_RETURN || wparam == VK_ESCAPE;
  if (message == WM_CHAR && unused) return 0;  // the control would only beep
  const LRESULT result = NativePeer::OnMessage(message, wparam, lparam);
  const bool by_key = message == WM_SETFOCUS && GetKeyState(VK_LBUTTON) >= 0;
  if (by_key && Alive()) Tell(EM_SETSEL, 0, -1);
  return result;
}

void TextBoxPeer::Open() {
  EditPeer::Open();
  if (box_.Placeholder().empty()) return;
  Tell(EM_SETCUEBANNER, FALSE, reinterpret_cast<LPARAM>(host::Wide(box_.Placeholder()).c_str()));
}

void SearchBoxPeer::Open() {
  EditPeer::Open();
  Tell(EM_SETCUEBANNER, TRUE, reinterpret_cast<LPARAM>(L"搜索"));
}

void ComboBoxPeer::Open() {
  const bool list = box_.GetStyle() == ComboBox::Style::kList;
  const DWORD kind = list ? CBS_DROPDOWNLIST : CBS_DROPDOWN | CBS_AUTOHSCROLL;
  OpenNative({.class_name = L"COMBOBOX", .style = kind | WS_VSCROLL | CBS_HASSTRINGS});
}

bool ComboBoxPeer::WantsKey(Key key, Modifiers modifiers) const {
  const bool closes = key == Key::kEnter || key == Key::kEscape;
  return IsEditingKey(key, modifiers) || key == Key::kUp || key == Key::kDown ||
         (closes && IsDropped());
}

void ComboBoxPeer::ApplyBounds() {
  const RECT place = PlaceOfLine();
  const int height = static_cast<int>(place.bottom - place.top);
  const auto item = Tell(CB_GETITEMHEIGHT, 0);
  // To the system a combo box is as high as its dropped list.
  SetWindowPos(Hwnd(), nullptr, place.left, place.top, place.right - place.left,
               height + static_cast<int>(item) * kItemsDropped, SWP_NOZORDER | SWP_NOACTIVATE);
  constexpr int kFrame = 6;  // pixels, at every scale
  Tell(CB_SETITEMHEIGHT, static_cast<WPARAM>(-1), std::max(height - kFrame, 1));
}

void ComboBoxPeer::OnContent(const Change& change) {
  if (editing_) return;
  if (change.kind != Change::Kind::kSelection) ShowItems();
  ShowSelection();
}

void ComboBoxPeer::ShowItems() {
  Tell(CB_RESETCONTENT);
  for (int item = 0; item < box_.ListCount(); ++item) {
    Tell(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(host::Wide(box_.List(item)).c_str()));
  }
}

void ComboBoxPeer::ShowSelection() {
  Tell(CB_SETCURSEL, static_cast<WPARAM>(box_.ListIndex()));
  if (box_.GetStyle() == ComboBox::Style::kEditable) ShowText(box_.Text());
}

std::optional<LRESULT> ComboBoxPeer::OnNotify(UINT message, WPARAM wparam, LPARAM) {
  if (message != WM_COMMAND) return {};
  switch (HIWORD(wparam)) {
    case CBN_SELCHANGE:
      box_.SetListIndex(static_cast<int>(Tell(CB_GETCURSEL)));
      return 0;
    case CBN_EDITCHANGE: {
      const host::FlagScope editing(editing_);
      box_.SetText(ShownText());
      return 0;
    }
    case CBN_SETFOCUS:
    case CBN_KILLFOCUS:
      FocusChanged(HIWORD(wparam) == CBN_SETFOCUS, GetFocus());
      return 0;
    default:
      return {};
  }
}

bool ComboBoxPeer::TakeFocus() {
  const auto keep = shared_from_this();
  if (!CanTakeFocus(Hwnd())) return false;
  ::SetFocus(Hwnd());
  const HWND focus = GetFocus();  // an editable box hands it to the edit control inside
  return focus == Hwnd() || IsChild(Hwnd(), focus);
}

LRESULT ComboBoxPeer::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  // The box's own notices of the focus cover the edit control inside it, these messages do not:
  // they pass by what all controls do on them.
  if (message == WM_SETFOCUS || message == WM_KILLFOCUS) {
    return Window::OnMessage(message, wparam, lparam);  // NOLINT(bugprone-parent-virtual-call)
  }
  return NativePeer::OnMessage(message, wparam, lparam);
}

}  // namespace tavrix::viewkit::win32
