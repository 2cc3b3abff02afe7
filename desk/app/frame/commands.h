#pragma once

#include <windows.h>

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "app/frame/icons.h"

/// What the user can tell the desk to do: one table from which menu, tool bar and keys are made.
namespace desk::app {

enum class Command : WORD {
  kNone = 0,
  kNewBook = 100,
  kOpenBook,
  kExit,
  kAddSibling,
  kAddChild,
  kEdit,
  kDelete,
  kRecordTop,
  kRecordPrevious,
  kRecordNext,
  kRecordBottom,
  kFind,
  kFindNext,
  kFilter,
  kRefresh,
  kPosting,
  kTrialBalance,
  kColumns,
  kPickerColumns,
  kReports,
  kAbout,
  kAccountPane,
  kExpandAll,
  kCollapseAll,
  kMore = 150,  ///< the tool bar's buttons that have no room
  kLevelFirst =
      160,  ///< this and the next kOutlineLevels - 1 numbers expand the outline to a level
  kRecentFirst = 200,  ///< this and the next kRecentBooks - 1 numbers open a recent book
};
inline constexpr std::size_t kRecentBooks = 8;
inline constexpr int kOutlineLevels = 7;

[[nodiscard]] constexpr WORD IdOf(Command command) {
  return static_cast<WORD>(command);
}

/// Where in the menu bar a command stands; the levels have a menu of their own inside the view's.
enum class MenuGroup { kBook, kAccount, kView, kHelp, kLevels };

/// Keys that work everywhere, or only while the focus is in the view (elsewhere they edit text).
enum class KeyScope { kFrame, kView };

struct Key {
  WORD code = 0;  ///< virtual key; 0 for none
  BYTE modifiers = 0;
  const wchar_t* name = L"";
};

struct CommandInfo {
  Command command = Command::kNone;
  MenuGroup group = MenuGroup::kBook;
  const wchar_t* menu_text = L"";  ///< with its mnemonic
  const wchar_t* bar_text = L"";   ///< caption on the tool bar; empty when it has no button there
  const wchar_t* tip = L"";
  Icon icon = Icon::kNone;
  Key key;
  KeyScope scope = KeyScope::kFrame;
  bool new_section = false;  ///< a separator comes before it
};

/// All commands but those of the recent books, in the order of the menus.
[[nodiscard]] std::span<const CommandInfo> Commands();

struct MenuDeleter {
  void operator()(HMENU menu) const noexcept { DestroyMenu(menu); }
};
using Menu = std::unique_ptr<std::remove_pointer_t<HMENU>, MenuDeleter>;

/// The menu bar; `recent` become entries of the first menu.
[[nodiscard]] Menu MakeMenuBar(const std::vector<std::wstring>& recent);

/// A menu of these commands; `Command::kNone` stands for a line between two parts.
[[nodiscard]] Menu MakeCommandMenu(std::span<const Command> commands);

struct AcceleratorDeleter {
  void operator()(HACCEL table) const noexcept { DestroyAcceleratorTable(table); }
};
using Accelerators = std::unique_ptr<std::remove_pointer_t<HACCEL>, AcceleratorDeleter>;

[[nodiscard]] Accelerators MakeAccelerators(KeyScope scope);

}  // namespace desk::app
