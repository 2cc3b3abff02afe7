#include "viewkit/win32/input_peers.h"

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
  if (Model().Placeholder().empty()) return;
  Tell(EM_SETCUEBANNER, FALSE, reinterpret_cast<LPARAM>(host::Wide(Model().Placeholder()).c_str()));
}

void SearchBoxPeer::Open() {
  EditPeer::Open();
  Tell(EM_SETCUEBANNER, TRUE, reinterpret_cast<LPARAM>(L"搜索"));
}

void ComboBoxPeer::Open() {
  const bool list = Model().GetStyle() == ComboBox::Style::kList;
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
  for (int item = 0; item < Model().ListCount(); ++item) {
    Tell(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(host::Wide(Model().List(item)).c_str()));
  }
}

void ComboBoxPeer::ShowSelection() {
  Tell(CB_SETCURSEL, static_cast<WPARAM>(Model().ListIndex()));
  if (Model().GetStyle() == ComboBox::Style::kEditable) ShowText(Model().Text());
}

std::optional<LRESULT> ComboBoxPeer::OnNotify(UINT message, WPARAM wparam, LPARAM) {
  if (message != WM_COMMAND) return {};
  switch (HIWORD(wparam)) {
    case CBN_SELCHANGE:
      Model().SetListIndex(static_cast<int>(Tell(CB_GETCURSEL)));
      return 0;
    case CBN_EDITCHANGE: {
      const host::FlagScope editing(editing_);
      Model().SetText(ShownText());
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

void DatePeer::Open() {
  INITCOMMONCONTROLSEX classes{};
  classes.dwSize = sizeof classes;
  classes.dwICC = ICC_DATE_CLASSES;
  InitCommonControlsEx(&classes);
  OpenNative({.class_name = DATETIMEPICK_CLASSW, .style = DTS_SHORTDATECENTURYFORMAT});
  DateTime_SetFormat(Hwnd(), L"yyyy-MM-dd");
}

bool DatePeer::WantsKey(Key key, Modifiers modifiers) const {
  if (modifiers.control || modifiers.alt) return false;
  return key >= Key::kEnd && key <= Key::kDown;  // the ends and the arrows
}

void DatePeer::ApplyBounds() {
  const RECT place = PlaceOfLine();
  SetWindowPos(Hwnd(), nullptr, place.left, place.top, place.right - place.left,
               place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

void DatePeer::OnContent(const Change&) {
  if (taking_) return;
  const auto day = Model().Value();
  SYSTEMTIME date{};
  date.wYear = static_cast<WORD>(static_cast<int>(day.year()));
  date.wMonth = static_cast<WORD>(static_cast<unsigned>(day.month()));
  date.wDay = static_cast<WORD>(static_cast<unsigned>(day.day()));
  DateTime_SetSystemtime(Hwnd(), GDT_VALID, &date);
}

LRESULT DatePeer::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_KEYDOWN:  // digits and separators come as characters; an arrow goes to another part
      if (wparam >= VK_PRIOR && wparam <= VK_DELETE) typed_.Clear();
      break;
    case WM_SETFOCUS:
    case WM_LBUTTONDOWN:
      typed_.Clear();
      break;
    case WM_CHAR:
      switch (typed_.Add(static_cast<char32_t>(wparam))) {
        case TypedDay::Result::kOther:
          break;
        case TypedDay::Result::kComplete:
          Model().SetValue(typed_.Day());
          return 0;
        case TypedDay::Result::kTaken:
          return 0;
      }
      break;
    default:
      break;
  }
  return NativePeer::OnMessage(message, wparam, lparam);
}

std::optional<LRESULT> DatePeer::OnNotify(UINT message, WPARAM, LPARAM lparam) {
  if (message != WM_NOTIFY) return {};
  if (reinterpret_cast<const NMHDR*>(lparam)->code != DTN_DATETIMECHANGE) return {};
  const auto& change = *reinterpret_cast<const NMDATETIMECHANGE*>(lparam);
  if (change.dwFlags != GDT_VALID) return 0;
  const std::chrono::year_month_day shown{std::chrono::year{change.st.wYear},
                                          std::chrono::month{change.st.wMonth},
                                          std::chrono::day{change.st.wDay}};
  {
    const host::FlagScope taking(taking_);
    Model().SetValue(shown);
  }
  // Not every system keeps to the calendar, as when the year of a leap day changes.
  if (Alive() && Model().Value() != shown) OnContent({});
  return 0;
}

}  // namespace tavrix::viewkit::win32
