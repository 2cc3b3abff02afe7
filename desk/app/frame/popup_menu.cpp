#include "app/frame/popup_menu.h"

#include <commctrl.h>
#include <windowsx.h>

#include "app/frame/commands.h"

namespace desk::app {

std::optional<std::size_t> ChooseEntry(HWND owner, POINT at, std::span<const MenuEntry> entries) {
  const Menu menu(CreatePopupMenu());
  UINT_PTR number = 0;  // of the entry, from 1: 0 is no choice
  for (const MenuEntry& entry : entries) {
    ++number;
    const UINT flags = *entry.text == L'\0' ? UINT{MF_SEPARATOR}
                       : entry.enabled      ? UINT{MF_STRING}
                                            : UINT{MF_STRING | MF_GRAYED};
    AppendMenuW(menu.get(), flags, number, entry.text);
  }
  const int chosen =
      TrackPopupMenuEx(menu.get(), TPM_RETURNCMD | TPM_RIGHTBUTTON, at.x, at.y, owner, nullptr);
  if (chosen <= 0) return std::nullopt;
  return static_cast<std::size_t>(chosen) - 1;
}

bool AsksForMenu(const MSG& message) {
  if (message.message == WM_KEYUP) return message.wParam == VK_APPS;
  return message.message == WM_SYSKEYDOWN && message.wParam == VK_F10 && GetKeyState(VK_SHIFT) < 0;
}

void OpenMenu(const MSG& message) {
  SendMessageW(message.hwnd, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(message.hwnd), -1);
}

POINT MenuPlace(HWND part, LPARAM lparam, const RECT& item) {
  constexpr LPARAM kByKey = -1;
  if (lparam != kByKey) return {GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)};
  RECT client{};
  GetClientRect(part, &client);
  const bool inside = item.bottom > client.top && item.bottom <= client.bottom;
  POINT below{client.left + GetSystemMetrics(SM_CXSMICON),
              inside ? item.bottom : client.top + GetSystemMetrics(SM_CYSMICON)};
  ClientToScreen(part, &below);
  return below;
}

POINT MenuPlaceInList(HWND list, LPARAM lparam) {
  RECT item{};
  const int row = ListView_GetNextItem(list, -1, LVNI_FOCUSED);
  if (row >= 0) ListView_GetItemRect(list, row, &item, LVIR_BOUNDS);
  return MenuPlace(list, lparam, item);
}

}  // namespace desk::app
