#include "app/frame/commands.h"

#include <array>

#include "host/utf.h"
#include "views/caption_text.h"

namespace desk::app {
namespace {

using enum Command;
using enum views::MenuGroup;
using tavrix::host::Narrow;
using tavrix::host::Wide;
using views::MenuGroup;

struct GroupTitle {
  MenuGroup group;
  const wchar_t* text;
};
// The blank at the end keeps the last bracket in sight: Wine measures bar entries too narrow.
constexpr std::array kGroups = {GroupTitle{kBook, L"账簿(&B) "}, GroupTitle{kAccount, L"科目(&K) "},
                                GroupTitle{kLedger, L"账务(&P) "}, GroupTitle{kView, L"查看(&V) "},
                                GroupTitle{kHelp, L"帮助(&H) "}};

void AppendRecent(HMENU menu, const std::vector<std::wstring>& recent) {
  for (std::size_t i = 0; i < recent.size() && i < kRecentBooks; ++i) {
    const std::wstring text =
        L"&" + std::to_wstring(i + 1) + L"  " + Wide(views::EscapedCaption(Narrow(recent[i])));
    AppendMenuW(menu, MF_STRING, IdOf(kRecentFirst) + i, text.c_str());
  }
}

void AppendCommand(HMENU menu, const CommandInfo& info) {
  AppendMenuW(menu, MF_STRING, IdOf(info.command), Wide(EntryText(info)).c_str());
}

void AppendSeparator(HMENU menu) {
  if (GetMenuItemCount(menu) > 0) AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
}

void AppendLevels(HMENU menu) {
  HMENU levels = CreatePopupMenu();
  for (const CommandInfo& info : Commands()) {
    if (info.group == MenuGroup::kLevels) AppendCommand(levels, info);
  }
  AppendMenuW(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(levels), L"展开到级次(&G)");
}

void AppendGroup(HMENU menu, MenuGroup group, const std::vector<std::wstring>& recent) {
  for (const CommandInfo& info : Commands()) {
    if (info.group != group) continue;
    if (info.new_section) AppendSeparator(menu);
    if (info.command == kRecentBooksList) AppendRecent(menu, recent);
    AppendCommand(menu, info);
    if (info.command == kCollapseAll) AppendLevels(menu);
  }
}

BYTE FlagsOf(tavrix::viewkit::Modifiers modifiers) {
  return static_cast<BYTE>(FVIRTKEY | (modifiers.control ? FCONTROL : 0) |
                           (modifiers.shift ? FSHIFT : 0) | (modifiers.alt ? FALT : 0));
}

}  // namespace

Menu MakeMenuBar(const std::vector<std::wstring>& recent) {
  Menu bar(CreateMenu());
  for (const GroupTitle& title : kGroups) {
    HMENU menu = CreatePopupMenu();
    AppendGroup(menu, title.group, recent);
    AppendMenuW(bar.get(), MF_POPUP, reinterpret_cast<UINT_PTR>(menu), title.text);
  }
  return bar;
}

Menu MakeCommandMenu(std::span<const Command> commands) {
  Menu menu(CreatePopupMenu());
  for (const Command command : commands) {
    if (command == kNone) AppendSeparator(menu.get());
    if (command == kLevelFirst) AppendLevels(menu.get());
    const CommandInfo* const info = views::FindCommand(command);
    if (command != kLevelFirst && info != nullptr) AppendCommand(menu.get(), *info);
  }
  return menu;
}

Accelerators MakeAccelerators(KeyScope scope) {
  std::vector<ACCEL> keys;
  for (const CommandInfo& info : Commands()) {
    // The system itself closes the window on Alt+F4.
    const auto code = static_cast<WORD>(info.key.code);
    if (code == 0 || info.scope != scope || info.command == kExit) continue;
    keys.push_back({FlagsOf(info.key.modifiers), code, IdOf(info.command)});
  }
  return Accelerators(CreateAcceleratorTableW(keys.data(), static_cast<int>(keys.size())));
}

}  // namespace desk::app
