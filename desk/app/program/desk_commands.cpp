#include <exception>

#include "app/program/desk.h"
#include "app/program/view_layout.h"

// The commands of menu, tool bar and keys: what each does, and when it can be used.
namespace desk::app {

void Desk::OnCommand(Command command) {
  Trapped({}, [&] { Do(command); });
  account_->Renew();
  if (frame_->Alive()) frame_->UpdateCommands();
}

void Desk::Do(Command command) {
  const WORD recent = static_cast<WORD>(IdOf(command) - IdOf(Command::kRecentFirst));
  if (IdOf(command) >= IdOf(Command::kRecentFirst)) return OpenRecent(recent);
  switch (command) {
    case Command::kNewBook:
      return AskNew();
    case Command::kOpenBook:
      return AskOpen();
    case Command::kExit:
      PostMessageW(frame_->Hwnd(), WM_CLOSE, 0, 0);
      return;
    case Command::kReports:
      return frame_->Reports().SetOpen(!frame_->Reports().Open());
    case Command::kAccountPane:
      return account_->SetShown(!account_->Shown());
    case Command::kAbout:
      return About();
    default:
      if (StateOf(command).enabled) DoOnBook(command);
  }
}

void Desk::DoOnBook(Command command) {
  KjkmView& view = *View();
  switch (command) {
    case Command::kAddSibling:
      view.Call(&IFormUI::FileNew);
      return;
    case Command::kAddChild:
      view.Call(&IFormUI::FileNewNext);
      return;
    case Command::kEdit:
      view.Call(&IFormUI::FileEdit);
      return;
    case Command::kDelete:
      view.Call(&IFormUI::FileDelete);
      return;
    case Command::kRecordTop:
      view.Call(&IFormUI::RecordTop);
      return;
    case Command::kRecordPrevious:
      view.Call(&IFormUI::RecordPrevious);
      return;
    case Command::kRecordNext:
      view.Call(&IFormUI::RecordNext);
      return;
    case Command::kRecordBottom:
      view.Call(&IFormUI::RecordBottom);
      return;
    case Command::kRefresh:
      return ReadAgain();
    case Command::kFind:
      return frame_->ShowBar(frame_->FindBar(), true);
    case Command::kFindNext:
      return OnFindNext();
    case Command::kFilter:
      return frame_->ShowBar(frame_->FilterBar(), true);
    case Command::kPosting:
      return ShowPosting(!posting_shown_);
    case Command::kTrialBalance:
      return ShowTrialBalance();
    case Command::kColumns:
      return AskViewLayout(view, *open_->book.System(), frame_->Hwnd());
    case Command::kPickerColumns:
      return AskPickerLayout(posting_->Picker(), *open_->book.System(), frame_->Hwnd());
    default:
      return DoOnOutline(command);
  }
}

CommandState Desk::StateOf(Command command) {
  switch (command) {
    case Command::kNewBook:
    case Command::kOpenBook:
    case Command::kExit:
    case Command::kAbout:
      return {};
    case Command::kReports:
      return {.pressed = frame_->Reports().Open()};
    case Command::kAccountPane:
      return {.pressed = account_->Shown()};
    default:
      break;
  }
  const KjkmView* view = View();
  const bool started = view != nullptr && view->Started();
  if (!started) return {.enabled = false};
  try {
    return StateOnRow(view->State(), command);
  } catch (const std::exception&) {  // a view that does not answer has no commands
    return {.enabled = false};
  }
}

CommandState Desk::StateOnRow(const ViewState& state, Command command) const {
  switch (command) {
    case Command::kAddSibling:
      return {.enabled = state.row_selected || !state.has_rows};
    case Command::kAddChild:
      return {.enabled = state.row_selected || !state.has_rows, .shown = View()->OffersAddChild()};
    case Command::kEdit:
    case Command::kDelete:
      return {.enabled = state.row_selected};
    case Command::kRecordTop:
    case Command::kRecordPrevious:
    case Command::kRecordNext:
    case Command::kRecordBottom:
    case Command::kFindNext:
    case Command::kExpandAll:
    case Command::kCollapseAll:
      return {.enabled = state.has_rows};
    case Command::kFind:
      return {.enabled = state.has_rows, .pressed = frame_->FindBar().Shown()};
    case Command::kFilter:
      return {.enabled = state.has_rows, .pressed = frame_->FilterBar().Shown()};
    case Command::kPosting:
      return {.pressed = posting_shown_};
    default:
      return {};
  }
}

}  // namespace desk::app
