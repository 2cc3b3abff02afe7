#include "app/frame/commands.h"

#include <algorithm>
#include <array>

namespace desk::app {
namespace {

constexpr BYTE kCtrl = FCONTROL;
constexpr BYTE kCtrlShift = FCONTROL | FSHIFT;

using enum Command;
using enum MenuGroup;

constexpr CommandInfo LevelInfo(int level, const wchar_t* text, const wchar_t* key) {
  CommandInfo info;
  info.command = static_cast<Command>(IdOf(kLevelFirst) + level - 1);
  info.group = MenuGroup::kLevels;
  info.menu_text = text;
  info.key = {static_cast<WORD>('0' + level), kCtrl, key};
  return info;
}

constexpr std::array kCommands = {
    CommandInfo{kNewBook,
                kBook,
                L"新建账簿(&N)…",
                L"新建账簿",
                L"用会计准则模板建立新账簿",
                Icon::kNewBook,
                {'N', kCtrlShift, L"Ctrl+Shift+N"}},
    CommandInfo{kOpenBook,
                kBook,
                L"打开账簿(&O)…",
                L"打开账簿",
                L"打开已有的账簿文件",
                Icon::kOpenBook,
                {'O', kCtrl, L"Ctrl+O"}},
    CommandInfo{kExit,
                kBook,
                L"退出(&X)",
                L"",
                L"",
                Icon::kNone,
                {VK_F4, FALT, L"Alt+F4"},
                KeyScope::kFrame,
                true},

    CommandInfo{kAddSibling,
                kAccount,
                L"新增同级(&N)",
                L"新增同级",
                L"在所选科目旁新增同级科目",
                Icon::kAddSibling,
                {'N', kCtrl, L"Ctrl+N"},
                KeyScope::kFrame,
                true},
    CommandInfo{kAddChild,
                kAccount,
                L"新增下级(&C)",
                L"新增下级",
                L"在所选科目下新增下级科目",
                Icon::kAddChild,
                {VK_INSERT, kCtrl, L"Ctrl+Ins"}},
    CommandInfo{
        kEdit, kAccount, L"修改(&E)", L"修改", L"修改所选科目", Icon::kEdit, {VK_F2, 0, L"F2"}},
    CommandInfo{kDelete,
                kAccount,
                L"删除(&D)",
                L"删除",
                L"删除所选科目及其下级",
                Icon::kDelete,
                {VK_DELETE, 0, L"Del"},
                KeyScope::kView},
    CommandInfo{kPosting,
                kAccount,
                L"录入凭证(&V)",
                L"凭证",
                L"打开或收起凭证录入",
                Icon::kVoucher,
                {VK_F7, 0, L"F7"},
                KeyScope::kFrame,
                true},

    CommandInfo{kRecordTop,
                kView,
                L"首条(&T)",
                L"首条",
                L"移到第一个科目",
                Icon::kFirst,
                {VK_HOME, kCtrl, L"Ctrl+Home"},
                KeyScope::kView,
                true},
    CommandInfo{kRecordPrevious,
                kView,
                L"上条(&P)",
                L"上条",
                L"移到上一个科目",
                Icon::kPrevious,
                {VK_UP, kCtrl, L"Ctrl+↑"},
                KeyScope::kView},
    CommandInfo{kRecordNext,
                kView,
                L"下条(&N)",
                L"下条",
                L"移到下一个科目",
                Icon::kNext,
                {VK_DOWN, kCtrl, L"Ctrl+↓"},
                KeyScope::kView},
    CommandInfo{kRecordBottom,
                kView,
                L"末条(&B)",
                L"末条",
                L"移到最后一个科目",
                Icon::kLast,
                {VK_END, kCtrl, L"Ctrl+End"},
                KeyScope::kView},
    CommandInfo{kFind,
                kView,
                L"查找(&F)",
                L"查找",
                L"按编码或名称查找",
                Icon::kFind,
                {'F', kCtrl, L"Ctrl+F"},
                KeyScope::kFrame,
                true},
    CommandInfo{
        kFindNext, kView, L"查找下一个(&X)", L"", L"查找下一个", Icon::kNone, {VK_F3, 0, L"F3"}},
    CommandInfo{kFilter,
                kView,
                L"筛选(&L)",
                L"筛选",
                L"只显示符合条件的科目",
                Icon::kFilter,
                {'L', kCtrl, L"Ctrl+L"}},
    CommandInfo{kRefresh,
                kView,
                L"刷新(&R)",
                L"刷新",
                L"从账簿重新读取科目",
                Icon::kRefresh,
                {VK_F5, 0, L"F5"},
                KeyScope::kFrame,
                true},
    CommandInfo{kTrialBalance,
                kView,
                L"试算平衡(&S)",
                L"",
                L"",
                Icon::kNone,
                {VK_F9, 0, L"F9"},
                KeyScope::kFrame,
                true},
    CommandInfo{
        kColumns, kView, L"列布局(&W)…", L"", L"", Icon::kNone, {'L', kCtrlShift, L"Ctrl+Shift+L"}},
    CommandInfo{kPickerColumns, kView, L"科目选择的列布局(&K)…", L"", L"", Icon::kNone, {}},
    CommandInfo{kExpandAll,
                kView,
                L"全部展开(&A)",
                L"",
                L"",
                Icon::kNone,
                {VK_RIGHT, kCtrlShift, L"Ctrl+Shift+→"},
                KeyScope::kView,
                true},
    CommandInfo{kCollapseAll,
                kView,
                L"全部收起(&O)",
                L"",
                L"",
                Icon::kNone,
                {VK_LEFT, kCtrlShift, L"Ctrl+Shift+←"},
                KeyScope::kView},
    LevelInfo(1, L"一级(&1)", L"Ctrl+1"),
    LevelInfo(2, L"二级(&2)", L"Ctrl+2"),
    LevelInfo(3, L"三级(&3)", L"Ctrl+3"),
    LevelInfo(4, L"四级(&4)", L"Ctrl+4"),
    LevelInfo(5, L"五级(&5)", L"Ctrl+5"),
    LevelInfo(6, L"六级(&6)", L"Ctrl+6"),
    LevelInfo(7, L"七级(&7)", L"Ctrl+7"),

    CommandInfo{kAccountPane,
                kView,
                L"科目详情(&I)",
                L"详情",
                L"显示或收起所选科目的详情",
                Icon::kDetails,
                {'I', kCtrl, L"Ctrl+I"},
                KeyScope::kFrame,
                true},
    CommandInfo{kReports,
                kView,
                L"错误报告(&E)",
                L"报告",
                L"显示或收起错误报告",
                Icon::kReports,
                {VK_F8, 0, L"F8"}},

    CommandInfo{kAbout, kHelp, L"关于(&A)…", L"", L"", Icon::kNone, {}},
};

struct GroupTitle {
  MenuGroup group;
  const wchar_t* text;
};
// The blank at the end keeps the last bracket in sight: Wine measures bar entries too narrow.
constexpr std::array kGroups = {GroupTitle{kBook, L"账簿(&B) "}, GroupTitle{kAccount, L"科目(&K) "},
                                GroupTitle{kView, L"查看(&V) "}, GroupTitle{kHelp, L"帮助(&H) "}};

std::wstring EntryText(const CommandInfo& info) {
  std::wstring text = info.menu_text;
  if (info.key.code != 0) text.append(L"\t").append(info.key.name);
  return text;
}

// File names may hold ampersands, which a menu would take for mnemonics.
std::wstring WithoutMnemonics(const std::wstring& text) {
  std::wstring escaped;
  for (const wchar_t unit : text) escaped.append(unit == L'&' ? 2u : 1u, unit);
  return escaped;
}

void AppendRecent(HMENU menu, const std::vector<std::wstring>& recent) {
  if (recent.empty()) return;
  AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
  for (std::size_t i = 0; i < recent.size() && i < kRecentBooks; ++i) {
    const std::wstring text = L"&" + std::to_wstring(i + 1) + L"  " + WithoutMnemonics(recent[i]);
    AppendMenuW(menu, MF_STRING, IdOf(kRecentFirst) + i, text.c_str());
  }
}

void AppendCommand(HMENU menu, const CommandInfo& info) {
  AppendMenuW(menu, MF_STRING, IdOf(info.command), EntryText(info).c_str());
}

void AppendSeparator(HMENU menu) {
  if (GetMenuItemCount(menu) > 0) AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
}

void AppendLevels(HMENU menu) {
  HMENU levels = CreatePopupMenu();
  for (const CommandInfo& info : kCommands) {
    if (info.group == MenuGroup::kLevels) AppendCommand(levels, info);
  }
  AppendMenuW(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(levels), L"展开到级次(&G)");
}

void AppendGroup(HMENU menu, MenuGroup group, const std::vector<std::wstring>& recent) {
  for (const CommandInfo& info : kCommands) {
    if (info.group != group) continue;
    if (info.command == kExit) AppendRecent(menu, recent);
    if (info.new_section) AppendSeparator(menu);
    AppendCommand(menu, info);
    if (info.command == kCollapseAll) AppendLevels(menu);
  }
}

}  // namespace

std::span<const CommandInfo> Commands() {
  return kCommands;
}

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
    const auto* const info = std::ranges::find(kCommands, command, &CommandInfo::command);
    if (command != kLevelFirst && info != kCommands.end()) AppendCommand(menu.get(), *info);
  }
  return menu;
}

Accelerators MakeAccelerators(KeyScope scope) {
  std::vector<ACCEL> keys;
  for (const CommandInfo& info : kCommands) {
    // The system itself closes the window on Alt+F4.
    if (info.key.code == 0 || info.scope != scope || info.command == kExit) continue;
    const BYTE flags = static_cast<BYTE>(FVIRTKEY | info.key.modifiers);
    keys.push_back({flags, info.key.code, IdOf(info.command)});
  }
  return Accelerators(CreateAcceleratorTableW(keys.data(), static_cast<int>(keys.size())));
}

}  // namespace desk::app
