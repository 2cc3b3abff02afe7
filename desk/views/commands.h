#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "book/host/recent_books.h"
#include "viewkit/input.h"
#include "views/icon.h"

/// What the user can tell the desk to do: one table from which menus, tool bar and keys are made,
/// and which says when a command can be used.
namespace desk::views {

namespace viewkit = tavrix::viewkit;

/// The numbers are those of menu entries and tool bar buttons.
enum class Command : std::uint16_t {
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
  kImport = 300,
  kExport,
  kMnemonics,
  kUndo = 320,
  kRedo,
  kHistory,
  kRenumber = 340,
  kMove,
  kMerge,
  kBatch,
  kAccountLedger = 360,
  kVouchers,
  kOpeningBalances,
  kPrint = 380,
  kPreview,
  kNewWindow,
  kKeepAdding,
  kLogFolder,
  kRecentBooksList,
  kMore = 150,  ///< the tool bar's buttons that have no room
  kLevelFirst =
      160,  ///< this and the next kOutlineLevels - 1 numbers expand the outline to a level
  kRecentFirst = 1000,  ///< this and the next kRecentBooks - 1 numbers open a recent book
};
inline constexpr std::size_t kRecentBooks = book::RecentBooks::kMax;
inline constexpr int kOutlineLevels = 7;

[[nodiscard]] constexpr std::uint16_t IdOf(Command command) {
  return static_cast<std::uint16_t>(command);
}

/// The level to which `command` expands the outline, from 1; 0 for any other command.
[[nodiscard]] int LevelOf(Command command);

/// Where in the menu bar a command stands; the levels have a menu of their own inside the view's.
enum class MenuGroup { kBook, kAccount, kLedger, kView, kHelp, kLevels };

/// Keys that work everywhere, or only while the focus is in the view (elsewhere they edit text).
enum class KeyScope { kFrame, kView };

struct CommandKey {
  viewkit::Key code{};  ///< 0 for none
  viewkit::Modifiers modifiers{};
  const char* name = "";  ///< as menus and tips show it
};

/// How things stand, as far as commands depend on it.
struct DeskState {
  bool started = false;  ///< a book is open, and its view has been started
  bool has_rows = false;
  bool row_selected = false;
  bool offers_add_child = false;
  bool find_shown = false;
  bool filter_shown = false;
  bool posting_shown = false;
  bool account_shown = false;
  bool reports_open = false;
};

/// What a command wants before it can be used.
enum class Need {
  kNothing,
  kBook,        ///< an open book
  kRows,        ///< and accounts in the view
  kRow,         ///< and one that is selected
  kRowOrEmpty,  ///< one that is selected, or none at all
};

struct CommandInfo {
  Command command = Command::kNone;
  MenuGroup group = MenuGroup::kBook;
  const char* menu_text = "";  ///< with its mnemonic
  const char* bar_text = "";   ///< caption on the tool bar; empty when it has no button there
  const char* tip = "";
  Icon icon = Icon::kNone;
  CommandKey key = {};
  KeyScope scope = KeyScope::kFrame;
  bool new_section = false;  ///< a separator comes before it
  Need need = Need::kNothing;
  bool DeskState::*checked = nullptr;  ///< true while what the command shows is there
  bool DeskState::*visible = nullptr;  ///< null: always
};

/// The levels of the outline included.
inline constexpr std::size_t kCommandCount = 50;

/// All commands but those of the recent books, in the order of the menus.
[[nodiscard]] std::span<const CommandInfo> Commands();
/// Null for a command that is not in the table.
[[nodiscard]] const CommandInfo* FindCommand(Command command);

/// The menu text with the key behind a tab.
[[nodiscard]] std::string EntryText(const CommandInfo& info);
/// The same for a command whose entry says what it would do at this moment: "撤销：新增科目
/// 1002(&Z)". What is long is cut; an empty `deed` gives the plain text.
[[nodiscard]] std::string EntryText(const CommandInfo& info, std::string_view deed);
/// The tip with the key in brackets.
[[nodiscard]] std::string TipText(const CommandInfo& info);

/// The menu of the list of accounts: `kNone` stands for a line, `kLevelFirst` for the levels.
[[nodiscard]] std::span<const Command> ListMenu();

/// How a command stands at this moment.
struct CommandState {
  bool enabled = true;
  bool visible = true;
  bool checked = false;
  friend bool operator==(const CommandState&, const CommandState&) = default;
};

[[nodiscard]] CommandState StateOf(const CommandInfo& info, const DeskState& state);

}  // namespace desk::views
