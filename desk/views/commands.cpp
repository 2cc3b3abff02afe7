#include "views/commands.h"

#include <algorithm>
#include <array>

#include "views/caption_text.h"

namespace desk::views {
namespace {

using viewkit::Key;
using viewkit::Modifiers;

constexpr Modifiers kPlain{};
constexpr Modifiers kCtrl{.control = true};
constexpr Modifiers kCtrlShift{.shift = true, .control = true};
constexpr Modifiers kAlt{.alt = true};

constexpr Key kInsert{0x2D};

constexpr Key Letter(char letter) {
  return static_cast<Key>(letter);
}
constexpr Key Function(int number) {
  constexpr int kF1 = 0x70;
  return static_cast<Key>(kF1 + number - 1);
}

using enum Command;
using enum MenuGroup;

constexpr CommandInfo LevelInfo(int level, const char* text, const char* key) {
  return {.command = static_cast<Command>(IdOf(kLevelFirst) + level - 1),
          .group = kLevels,
          .menu_text = text,
          .key = {static_cast<Key>('0' + level), kCtrl, key},
          .need = Need::kBook};
}

constexpr std::array<CommandInfo, kCommandCount> kCommands = {
    CommandInfo{.command = kNewBook,
                .group = kBook,
                .menu_text = "新建账簿(&N)…",
                .bar_text = "新建账簿",
                .tip = "用会计准则模板建立新账簿",
                .icon = Icon::kNewBook,
                .key = {Letter('N'), kCtrlShift, "Ctrl+Shift+N"}},
    CommandInfo{.command = kOpenBook,
                .group = kBook,
                .menu_text = "打开账簿(&O)…",
                .bar_text = "打开账簿",
                .tip = "打开已有的账簿文件",
                .icon = Icon::kOpenBook,
                .key = {Letter('O'), kCtrl, "Ctrl+O"}},
    CommandInfo{.command = kNewWindow,
                .group = kBook,
                .menu_text = "新窗口(&W)",
                .key = {Letter('W'), kCtrlShift, "Ctrl+Shift+W"},
                .need = Need::kBook},
    CommandInfo{.command = kImport,
                .group = kBook,
                .menu_text = "导入科目(&I)…",
                .key = {Letter('I'), kCtrlShift, "Ctrl+Shift+I"},
                .new_section = true,
                .need = Need::kBook},
    CommandInfo{.command = kExport,
                .group = kBook,
                .menu_text = "导出科目(&E)…",
                .key = {Letter('E'), kCtrlShift, "Ctrl+Shift+E"},
                .need = Need::kBook},
    CommandInfo{.command = kPrint,
                .group = kBook,
                .menu_text = "打印(&P)…",
                .key = {Letter('P'), kCtrl, "Ctrl+P"},
                .new_section = true,
                .need = Need::kBook},
    CommandInfo{.command = kPreview,
                .group = kBook,
                .menu_text = "打印预览(&V)",
                .key = {Letter('P'), kCtrlShift, "Ctrl+Shift+P"},
                .need = Need::kBook},
    CommandInfo{.command = kRecentBooksList,
                .group = kBook,
                .menu_text = "最近的账簿(&R)…",
                .new_section = true},
    CommandInfo{.command = kExit,
                .group = kBook,
                .menu_text = "退出(&X)",
                .key = {Function(4), kAlt, "Alt+F4"},
                .new_section = true},
    CommandInfo{.command = kAddSibling,
                .group = kAccount,
                .menu_text = "新增同级(&N)",
                .bar_text = "新增同级",
                .tip = "在所选科目旁新增同级科目",
                .icon = Icon::kAddSibling,
                .key = {Letter('N'), kCtrl, "Ctrl+N"},
                .new_section = true,
                .need = Need::kRowOrEmpty},
    CommandInfo{.command = kAddChild,
                .group = kAccount,
                .menu_text = "新增下级(&C)",
                .bar_text = "新增下级",
                .tip = "在所选科目下新增下级科目",
                .icon = Icon::kAddChild,
                .key = {kInsert, kCtrl, "Ctrl+Ins"},
                .need = Need::kRowOrEmpty,
                .visible = &DeskState::offers_add_child},
    CommandInfo{.command = kKeepAdding,
                .group = kAccount,
                .menu_text = "连续新增(&A)",
                .key = {kInsert, kCtrlShift, "Ctrl+Shift+Ins"},
                .need = Need::kRowOrEmpty},
    CommandInfo{.command = kEdit,
                .group = kAccount,
                .menu_text = "修改(&E)",
                .bar_text = "修改",
                .tip = "修改所选科目",
                .icon = Icon::kEdit,
                .key = {Function(2), kPlain, "F2"},
                .need = Need::kRow},
    CommandInfo{.command = kDelete,
                .group = kAccount,
                .menu_text = "删除(&D)",
                .bar_text = "删除",
                .tip = "删除所选科目及其下级",
                .icon = Icon::kDelete,
                .key = {Key::kDelete, kPlain, "Del"},
                .scope = KeyScope::kView,
                .need = Need::kRow},
    CommandInfo{.command = kUndo,
                .group = kAccount,
                .menu_text = "撤销(&Z)",
                .key = {Letter('Z'), kCtrl, "Ctrl+Z"},
                .scope = KeyScope::kView,
                .new_section = true,
                .need = Need::kBook},
    CommandInfo{.command = kRedo,
                .group = kAccount,
                .menu_text = "重做(&Y)",
                .key = {Letter('Y'), kCtrl, "Ctrl+Y"},
                .scope = KeyScope::kView,
                .need = Need::kBook},
    CommandInfo{.command = kHistory,
                .group = kAccount,
                .menu_text = "变更记录(&H)",
                .key = {Letter('H'), kCtrl, "Ctrl+H"},
                .need = Need::kBook},
    CommandInfo{.command = kRenumber,
                .group = kAccount,
                .menu_text = "改编码(&M)…",
                .key = {Letter('M'), kCtrl, "Ctrl+M"},
                .new_section = true,
                .need = Need::kRow},
    CommandInfo{.command = kMove,
                .group = kAccount,
                .menu_text = "移到其他上级(&T)…",
                .key = {Letter('M'), kCtrlShift, "Ctrl+Shift+M"},
                .need = Need::kRow},
    CommandInfo{.command = kMerge,
                .group = kAccount,
                .menu_text = "合并到(&G)…",
                .key = {Letter('G'), kCtrl, "Ctrl+G"},
                .need = Need::kRow},
    CommandInfo{.command = kBatch,
                .group = kAccount,
                .menu_text = "批量处理(&B)…",
                .key = {Letter('B'), kCtrl, "Ctrl+B"},
                .need = Need::kRows},
    CommandInfo{.command = kMnemonics,
                .group = kAccount,
                .menu_text = "补助记码(&P)…",
                .key = {Letter('H'), kCtrlShift, "Ctrl+Shift+H"},
                .need = Need::kRows},
    CommandInfo{.command = kPosting,
                .group = kLedger,
                .menu_text = "录入凭证(&V)",
                .bar_text = "凭证",
                .tip = "打开或收起凭证录入",
                .icon = Icon::kVoucher,
                .key = {Function(7), kPlain, "F7"},
                .new_section = true,
                .need = Need::kBook,
                .checked = &DeskState::posting_shown},
    CommandInfo{.command = kVouchers,
                .group = kLedger,
                .menu_text = "凭证查询(&Q)",
                .key = {Function(7), kCtrl, "Ctrl+F7"},
                .need = Need::kBook},
    CommandInfo{.command = kOpeningBalances,
                .group = kLedger,
                .menu_text = "期初余额(&O)",
                .key = {Function(7), {.shift = true}, "Shift+F7"},
                .need = Need::kBook},
    CommandInfo{.command = kAccountLedger,
                .group = kLedger,
                .menu_text = "科目明细账(&L)",
                .key = {Key::kEnter, kCtrl, "Ctrl+Enter"},
                .scope = KeyScope::kView,
                .new_section = true,
                .need = Need::kRow},
    CommandInfo{.command = kTrialBalance,
                .group = kLedger,
                .menu_text = "试算平衡(&S)",
                .key = {Function(9), kPlain, "F9"},
                .need = Need::kBook},
    CommandInfo{.command = kRecordTop,
                .group = kView,
                .menu_text = "首条(&T)",
                .bar_text = "首条",
                .tip = "移到第一个科目",
                .icon = Icon::kFirst,
                .key = {Key::kHome, kCtrl, "Ctrl+Home"},
                .scope = KeyScope::kView,
                .new_section = true,
                .need = Need::kRows},
    CommandInfo{.command = kRecordPrevious,
                .group = kView,
                .menu_text = "上条(&P)",
                .bar_text = "上条",
                .tip = "移到上一个科目",
                .icon = Icon::kPrevious,
                .key = {Key::kUp, kCtrl, "Ctrl+↑"},
                .scope = KeyScope::kView,
                .need = Need::kRows},
    CommandInfo{.command = kRecordNext,
                .group = kView,
                .menu_text = "下条(&N)",
                .bar_text = "下条",
                .tip = "移到下一个科目",
                .icon = Icon::kNext,
                .key = {Key::kDown, kCtrl, "Ctrl+↓"},
                .scope = KeyScope::kView,
                .need = Need::kRows},
    CommandInfo{.command = kRecordBottom,
                .group = kView,
                .menu_text = "末条(&B)",
                .bar_text = "末条",
                .tip = "移到最后一个科目",
                .icon = Icon::kLast,
                .key = {Key::kEnd, kCtrl, "Ctrl+End"},
                .scope = KeyScope::kView,
                .need = Need::kRows},
    CommandInfo{.command = kFind,
                .group = kView,
                .menu_text = "查找(&F)",
                .bar_text = "查找",
                .tip = "按编码或名称查找",
                .icon = Icon::kFind,
                .key = {Letter('F'), kCtrl, "Ctrl+F"},
                .new_section = true,
                .need = Need::kRows,
                .checked = &DeskState::find_shown},
    CommandInfo{.command = kFindNext,
                .group = kView,
                .menu_text = "查找下一个(&X)",
                .tip = "查找下一个",
                .key = {Function(3), kPlain, "F3"},
                .need = Need::kRows},
    CommandInfo{.command = kFilter,
                .group = kView,
                .menu_text = "筛选(&L)",
                .bar_text = "筛选",
                .tip = "只显示符合条件的科目",
                .icon = Icon::kFilter,
                .key = {Letter('L'), kCtrl, "Ctrl+L"},
                .need = Need::kRows,
                .checked = &DeskState::filter_shown},
    CommandInfo{.command = kRefresh,
                .group = kView,
                .menu_text = "刷新(&R)",
                .bar_text = "刷新",
                .tip = "从账簿重新读取科目",
                .icon = Icon::kRefresh,
                .key = {Function(5), kPlain, "F5"},
                .new_section = true,
                .need = Need::kBook},
    CommandInfo{.command = kColumns,
                .group = kView,
                .menu_text = "列布局(&W)…",
                .key = {Letter('L'), kCtrlShift, "Ctrl+Shift+L"},
                .new_section = true,
                .need = Need::kBook},
    CommandInfo{.command = kPickerColumns,
                .group = kView,
                .menu_text = "科目选择的列布局(&K)…",
                .need = Need::kBook},
    CommandInfo{.command = kExpandAll,
                .group = kView,
                .menu_text = "全部展开(&A)",
                .key = {Key::kRight, kCtrlShift, "Ctrl+Shift+→"},
                .scope = KeyScope::kView,
                .new_section = true,
                .need = Need::kRows},
    CommandInfo{.command = kCollapseAll,
                .group = kView,
                .menu_text = "全部收起(&O)",
                .key = {Key::kLeft, kCtrlShift, "Ctrl+Shift+←"},
                .scope = KeyScope::kView,
                .need = Need::kRows},
    LevelInfo(1, "一级(&1)", "Ctrl+1"),
    LevelInfo(2, "二级(&2)", "Ctrl+2"),
    LevelInfo(3, "三级(&3)", "Ctrl+3"),
    LevelInfo(4, "四级(&4)", "Ctrl+4"),
    LevelInfo(5, "五级(&5)", "Ctrl+5"),
    LevelInfo(6, "六级(&6)", "Ctrl+6"),
    LevelInfo(7, "七级(&7)", "Ctrl+7"),
    CommandInfo{.command = kAccountPane,
                .group = kView,
                .menu_text = "科目详情(&I)",
                .bar_text = "详情",
                .tip = "显示或收起所选科目的详情",
                .icon = Icon::kDetails,
                .key = {Letter('I'), kCtrl, "Ctrl+I"},
                .new_section = true,
                .checked = &DeskState::account_shown},
    CommandInfo{.command = kReports,
                .group = kView,
                .menu_text = "错误报告(&E)",
                .bar_text = "报告",
                .tip = "显示或收起错误报告",
                .icon = Icon::kReports,
                .key = {Function(8), kPlain, "F8"},
                .checked = &DeskState::reports_open},
    CommandInfo{.command = kLogFolder, .group = kHelp, .menu_text = "日志文件夹(&L)"},
    CommandInfo{.command = kAbout, .group = kHelp, .menu_text = "关于(&A)…"},
};

constexpr std::array kListMenu = {
    kEdit,  kAddSibling, kAddChild, kDelete,        kNone, kRenumber,    kMove,        kMerge,
    kBatch, kNone,       kPosting,  kAccountLedger, kNone, kExpandAll,   kCollapseAll, kLevelFirst,
    kNone,  kFind,       kFilter,   kRefresh,       kNone, kAccountPane, kColumns};

bool IsMet(Need need, const DeskState& state) {
  switch (need) {
    case Need::kNothing:
      return true;
    case Need::kBook:
      return state.started;
    case Need::kRows:
      return state.started && state.has_rows;
    case Need::kRow:
      return state.started && state.row_selected;
    case Need::kRowOrEmpty:
      return state.started && (state.row_selected || !state.has_rows);
  }
  return false;
}

}  // namespace

int LevelOf(Command command) {
  const int level = IdOf(command) - IdOf(kLevelFirst) + 1;
  return level >= 1 && level <= kOutlineLevels ? level : 0;
}

std::span<const CommandInfo> Commands() {
  return kCommands;
}

const CommandInfo* FindCommand(Command command) {
  const auto* const found = std::ranges::find(kCommands, command, &CommandInfo::command);
  return found == kCommands.end() ? nullptr : found;
}

std::string EntryText(const CommandInfo& info) {
  return EntryText(info, {});
}

std::string EntryText(const CommandInfo& info, std::string_view deed) {
  std::string text = info.menu_text;
  if (!deed.empty()) {
    text.insert(std::min(text.find('('), text.size()), "：" + EscapedCaption(Shortened(deed)));
    text += "  ";  // a menu may be measured in another font than it is painted in
  }
  if (info.key.code != Key{}) text.append("\t").append(info.key.name);
  return text;
}

std::string TipText(const CommandInfo& info) {
  std::string text = info.tip;
  if (info.key.code != Key{}) text.append(" (").append(info.key.name).append(")");
  return text;
}

std::span<const Command> ListMenu() {
  return kListMenu;
}

CommandState StateOf(const CommandInfo& info, const DeskState& state) {
  // Without a book a command that wants one says nothing else of itself.
  if (info.need != Need::kNothing && !state.started) return {.enabled = false};
  return {.enabled = IsMet(info.need, state),
          .visible = info.visible == nullptr || state.*info.visible,
          .checked = info.checked != nullptr && state.*info.checked};
}

}  // namespace desk::views
