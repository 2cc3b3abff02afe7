#include <algorithm>
#include <chrono>
#include <exception>

#include "app/program/chart_commands.h"
#include "app/program/desk.h"
#include "app/program/exchange_commands.h"
#include "app/program/history_commands.h"
#include "app/program/keep_adding.h"
#include "app/program/ledger_commands.h"
#include "app/program/new_window.h"
#include "app/program/print_commands.h"
#include "app/program/recent_commands.h"
#include "app/program/view_layout.h"
#include "book/journal/command_text.h"
#include "views/outline_commands.h"

// The commands of menu, tool bar and keys: what each does, and what they depend on.
namespace desk::app {

using enum Command;

/// All but the levels of the outline and the recent books, which go by their numbers.
const Desk::Action Desk::kActions[] = {
    {kNewBook, [](Desk& desk) { desk.AskNew(); }},
    {kOpenBook, [](Desk& desk) { desk.AskOpen(); }},
    {kNewWindow, [](Desk& desk) { OpenNewWindow(desk.open_->file); }},
    {kImport, [](Desk& desk) { ImportAccounts(desk.Place()); }},
    {kExport, [](Desk& desk) { ExportAccounts(desk.Place()); }},
    {kMnemonics, [](Desk& desk) { FillMnemonics(desk.Place()); }},
    {kPrint, [](Desk& desk) { PrintChart(desk.Place()); }},
    {kPreview, [](Desk& desk) { PreviewChart(desk.Place()); }},
    {kRecentBooksList,
     [](Desk& desk) {
       const std::wstring wanted = AskRecentBook(desk.user_, desk.settings_.Recent());
       desk.frame_->SetRecent(desk.settings_.RecentNames());
       if (!wanted.empty()) desk.Open(wanted);
     }},
    {kExit, [](Desk& desk) { PostMessageW(desk.frame_->Hwnd(), WM_CLOSE, 0, 0); }},
    {kAddSibling, [](Desk& desk) { desk.View()->Call(&IFormUI::FileNew); }},
    {kAddChild, [](Desk& desk) { desk.View()->Call(&IFormUI::FileNewNext); }},
    {kKeepAdding, [](Desk& desk) { KeepAdding(desk.Place()); }},
    {kEdit, [](Desk& desk) { desk.View()->Call(&IFormUI::FileEdit); }},
    {kDelete, [](Desk& desk) { desk.View()->Call(&IFormUI::FileDelete); }},
    {kUndo, [](Desk& desk) { UndoLast(desk.Place()); }},
    {kRedo, [](Desk& desk) { RedoLast(desk.Place()); }},
    {kHistory, [](Desk& desk) { ShowHistory(desk.Place()); }},
    {kRenumber, [](Desk& desk) { AskRenumber(desk.Place()); }},
    {kMove, [](Desk& desk) { AskMove(desk.Place()); }},
    {kMerge, [](Desk& desk) { AskMerge(desk.Place()); }},
    {kBatch, [](Desk& desk) { AskBatch(desk.Place()); }},
    {kPosting, [](Desk& desk) { desk.ShowPosting(!desk.posting_shown_); }},
    {kRecordTop, [](Desk& desk) { desk.View()->Call(&IFormUI::RecordTop); }},
    {kRecordPrevious, [](Desk& desk) { desk.View()->Call(&IFormUI::RecordPrevious); }},
    {kRecordNext, [](Desk& desk) { desk.View()->Call(&IFormUI::RecordNext); }},
    {kRecordBottom, [](Desk& desk) { desk.View()->Call(&IFormUI::RecordBottom); }},
    {kFind, [](Desk& desk) { desk.frame_->ShowBar(desk.frame_->FindBar(), true); }},
    {kFindNext, [](Desk& desk) { desk.OnFindNext(); }},
    {kFilter, [](Desk& desk) { desk.frame_->ShowBar(desk.frame_->FilterBar(), true); }},
    {kRefresh, [](Desk& desk) { desk.ReadAgain(); }},
    {kAccountLedger, [](Desk& desk) { ShowAccountLedger(desk.Place()); }},
    {kVouchers, [](Desk& desk) { ShowVouchers(desk.Place()); }},
    {kOpeningBalances, [](Desk& desk) { ShowOpeningBalances(desk.Place()); }},
    {kTrialBalance, [](Desk& desk) { ShowTrialBalance(desk.Place()); }},
    {kColumns,
     [](Desk& desk) {
       AskViewLayout(*desk.View(), *desk.open_->book.System(), desk.frame_->Hwnd());
     }},
    {kPickerColumns,
     [](Desk& desk) {
       AskPickerLayout(desk.posting_->Picker(), *desk.open_->book.System(), desk.frame_->Hwnd());
     }},
    {kExpandAll, [](Desk& desk) { desk.ExpandTo(views::kAllLevels); }},
    {kCollapseAll, [](Desk& desk) { desk.ExpandTo(1); }},
    {kAccountPane, [](Desk& desk) { desk.account_->SetShown(!desk.account_->Shown()); }},
    {kReports, [](Desk& desk) { desk.frame_->Reports().SetOpen(!desk.frame_->Reports().Open()); }},
    {kLogFolder, [](Desk& desk) { OpenFolder(desk.folders_.user); }},
    {kAbout,
     [](Desk& desk) {
       const bool open = desk.open_.has_value();
       ShowAbout(desk.user_, desk.log_, open ? &desk.open_->book : nullptr,
                 open ? desk.open_->file : std::wstring());
     }},
};

Workplace Desk::Place() {
  return {.frame = *frame_,
          .user = user_,
          .settings = settings_,
          .book = open_->book,
          .file = open_->file,
          .view = *open_->view,
          .sheets = sheets_,
          .read_again = [this] { ReadAgain(); },
          .enter_voucher = [this](const book::Voucher& voucher) { EnterVoucher(voucher); }};
}

void Desk::EnterVoucher(const book::Voucher& voucher) {
  SetForegroundWindow(frame_->Hwnd());
  ShowPosting(true);
  posting_->Take(voucher);
  frame_->UpdateCommands();
}

void Desk::OnCommand(Command command) {
  const auto start = std::chrono::steady_clock::now();
  Trapped({}, [&] { Do(command); });
  log_.Done(command, std::chrono::duration_cast<std::chrono::milliseconds>(
                         std::chrono::steady_clock::now() - start));
  account_->Renew();
  if (frame_->Alive()) frame_->UpdateCommands();
}

void Desk::Do(Command command) {
  static_assert(std::size(kActions) + views::kOutlineLevels == views::kCommandCount);
  if (IdOf(command) >= IdOf(kRecentFirst)) {
    return OpenRecent(std::size_t{IdOf(command)} - IdOf(kRecentFirst));
  }
  const CommandInfo* info = views::FindCommand(command);
  if (info == nullptr || !StateOf(*info, State()).enabled) return;
  if (const int level = views::LevelOf(command); level != 0) return ExpandTo(level);
  const auto* const action = std::ranges::find(kActions, command, &Action::command);
  if (action != std::end(kActions)) action->run(*this);
}

std::optional<FrameOwner::Deeds> Desk::OnDeeds() {
  if (!open_) return std::nullopt;
  try {
    const book::HistorySteps steps = book::ReadSteps(open_->book.GetSession());
    const auto text = [](const auto& entry) {
      return entry ? book::DeedText(*entry) : std::string();
    };
    return Deeds{.undo = text(steps.undo), .redo = text(steps.redo)};
  } catch (const std::exception&) {  // the command itself says why
    return std::nullopt;
  }
}

views::DeskState Desk::State() {
  views::DeskState state{.find_shown = frame_->FindBar().Shown(),
                         .filter_shown = frame_->FilterBar().Shown(),
                         .posting_shown = posting_shown_,
                         .account_shown = account_->Shown(),
                         .reports_open = frame_->Reports().Open()};
  const KjkmView* view = View();
  if (view == nullptr || !view->Started()) return state;
  try {
    const ViewState rows = view->State();
    state.started = true;
    state.has_rows = rows.has_rows;
    state.row_selected = rows.row_selected;
    state.offers_add_child = view->OffersAddChild();
  } catch (const std::exception&) {  // a view that does not answer has no commands
  }
  return state;
}

}  // namespace desk::app
