#include "views/commands.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace desk::views {
namespace {

std::set<Command> EnabledIn(const DeskState& state) {
  std::set<Command> enabled;
  for (const CommandInfo& info : Commands()) {
    if (StateOf(info, state).enabled && LevelOf(info.command) == 0) enabled.insert(info.command);
  }
  return enabled;
}

TEST(Commands, NoTwoShareAKeyAMnemonicOrANumber) {
  std::set<std::string> keys;
  std::map<MenuGroup, std::string> mnemonics;
  std::set<Command> numbers;
  for (const CommandInfo& info : Commands()) {
    EXPECT_TRUE(numbers.insert(info.command).second) << info.menu_text;
    EXPECT_TRUE(IdOf(info.command) > 2 && info.command < Command::kRecentFirst) << info.menu_text;
    const std::string text = info.menu_text;
    const char letter = text.at(text.find('&') + 1);
    // The first menu also has the recent books, by their digits; the view's has the levels' menu.
    std::string& taken = mnemonics[info.group];
    if (info.group == MenuGroup::kView && taken.empty()) taken = "G";
    EXPECT_EQ(taken.find(letter), std::string::npos) << text;
    taken += letter;
    if (info.key.code == viewkit::Key{}) continue;
    // What works everywhere works in the view too.
    EXPECT_TRUE(keys.insert(info.key.name).second) << text;
    const std::string entry = EntryText(info);
    EXPECT_EQ(entry, text + "\t" + info.key.name);
    const viewkit::Modifiers& with = info.key.modifiers;
    EXPECT_EQ(entry.find("Ctrl+") != std::string::npos, with.control) << text;
    EXPECT_EQ(entry.find("Shift+") != std::string::npos, with.shift) << text;
    const int code = static_cast<int>(info.key.code);  // of a letter or digit: itself
    const bool character = (code >= '0' && code <= '9') || (code >= 'A' && code <= 'Z');
    EXPECT_TRUE(!character || entry.back() == code) << text;
  }
  for (const Command command : ListMenu()) {
    EXPECT_TRUE(command == Command::kNone || FindCommand(command) != nullptr);
  }
}

TEST(Commands, AnEntryTellsWhatItWouldUndo) {
  const CommandInfo& undo = *FindCommand(Command::kUndo);
  EXPECT_EQ(EntryText(undo, ""), "撤销(&Z)\tCtrl+Z");
  EXPECT_EQ(EntryText(undo, "新增科目 1002 A&B"), "撤销：新增科目 1002 A&&B(&Z)  \tCtrl+Z");
  std::string name;
  for (int i = 0; i < 40; ++i) name += "账";
  const std::string text = EntryText(undo, name);
  EXPECT_EQ(text, "撤销：" + name.substr(0, 30 * 3) + "…(&Z)  \tCtrl+Z");
}

TEST(Commands, CanBeUsedWhenThereIsWhatTheyWant) {
  using enum Command;
  const std::set<Command> always = {kNewBook, kOpenBook,  kExit,        kReports,
                                    kAbout,   kLogFolder, kAccountPane, kRecentBooksList};
  EXPECT_EQ(EnabledIn({}), always);
  EXPECT_EQ(EnabledIn({.has_rows = true, .row_selected = true}), always)
      << "of a book that is gone";
  auto wanted = always;
  wanted.insert({kImport, kExport, kUndo, kRedo, kHistory, kNewWindow, kPrint, kPreview, kPosting,
                 kRefresh, kTrialBalance, kVouchers, kOpeningBalances, kColumns, kPickerColumns});
  DeskState state{.started = true};
  auto empty = wanted;
  empty.insert({kAddSibling, kAddChild, kKeepAdding});  // the first account of a chart
  EXPECT_EQ(EnabledIn(state), empty);
  state.has_rows = true;
  wanted.insert({kRecordTop, kRecordPrevious, kRecordNext, kRecordBottom, kFind, kFindNext, kFilter,
                 kExpandAll, kCollapseAll, kBatch, kMnemonics});
  EXPECT_EQ(EnabledIn(state), wanted);
  state.row_selected = true;
  wanted.insert({kAddSibling, kAddChild, kEdit, kDelete, kAccountLedger, kRenumber, kMove, kMerge});
  wanted.insert(kKeepAdding);
  EXPECT_EQ(EnabledIn(state), wanted);
}

TEST(Commands, ShowWhatIsOpenAndWhatTheViewOffers) {
  const auto of = [](Command command, const DeskState& state) {
    return StateOf(*FindCommand(command), state);
  };
  EXPECT_TRUE(of(Command::kReports, {.reports_open = true}).checked);
  EXPECT_TRUE(of(Command::kAccountPane, {.account_shown = true}).checked);
  EXPECT_FALSE(of(Command::kPosting, {.posting_shown = true}).checked) << "without a book";
  const DeskState all{.started = true, .find_shown = true, .posting_shown = true};
  EXPECT_TRUE(of(Command::kPosting, all).checked);
  EXPECT_TRUE(of(Command::kFind, all).checked);
  EXPECT_FALSE(of(Command::kFilter, all).checked);
  EXPECT_FALSE(of(Command::kAddChild, all).visible);
  EXPECT_TRUE(of(Command::kAddChild, {.started = true, .offers_add_child = true}).visible);
  EXPECT_TRUE(of(Command::kAddChild, {}).visible)
      << "the bar keeps its button while no book is open";
}

}  // namespace
}  // namespace desk::views
