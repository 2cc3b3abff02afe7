#pragma once

#include <windows.h>

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "views/commands.h"

/// Menus and keys made from the table of commands.
namespace desk::app {

using views::Command;
using views::CommandInfo;
using views::Commands;
using views::CommandState;
using views::IdOf;
using views::KeyScope;
using views::kRecentBooks;

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
