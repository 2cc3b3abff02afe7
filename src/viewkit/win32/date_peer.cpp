#include "viewkit/win32/date_peer.h"

#include <commctrl.h>

#include "host/flag_scope.h"

namespace tavrix::viewkit::win32 {

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
  const auto day = picker_.Value();
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
          picker_.SetValue(typed_.Day());
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
    picker_.SetValue(shown);
  }
  // Not every system keeps to the calendar, as when the year of a leap day changes.
  if (Alive() && picker_.Value() != shown) OnContent({});
  return 0;
}

}  // namespace tavrix::viewkit::win32
