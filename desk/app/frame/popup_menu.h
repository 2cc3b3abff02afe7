#pragma once

#include <windows.h>

#include <optional>
#include <span>

namespace desk::app {

/// One entry of a menu; an empty text stands for a line between two parts.
struct MenuEntry {
  const wchar_t* text = L"";  ///< with its mnemonic, and its key behind a tab
  bool enabled = true;
};

/// Lets the user choose; nothing when he does not. `at` is on the screen.
[[nodiscard]] std::optional<std::size_t> ChooseEntry(HWND owner, POINT at,
                                                     std::span<const MenuEntry> entries);

/// A key asks for a menu: Shift+F10, or the menu key. Not every window makes a request of it by
/// itself.
[[nodiscard]] bool AsksForMenu(const MSG& message);
/// Makes that request.
void OpenMenu(const MSG& message);

/// Where a menu stands that `WM_CONTEXTMENU` with this `lparam` asks for in `part`: at the mouse,
/// or when a key asked, below `item` (in pixels of `part`).
[[nodiscard]] POINT MenuPlace(HWND part, LPARAM lparam, const RECT& item);

/// The same for a list view: below its focused row.
[[nodiscard]] POINT MenuPlaceInList(HWND list, LPARAM lparam);

}  // namespace desk::app
