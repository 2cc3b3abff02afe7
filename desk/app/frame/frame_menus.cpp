#include <windowsx.h>

#include "app/frame/frame_window.h"
#include "host/utf.h"

// The commands as the frame shows them: enabled and pressed, and menus at a place of the screen.
namespace desk::app {

void FrameWindow::ShowMenu(std::span<const Command> commands, POINT at) {
  const Menu menu = MakeCommandMenu(commands);
  // The states of its entries are set when it opens.
  const int chosen =
      TrackPopupMenuEx(menu.get(), TPM_RETURNCMD | TPM_RIGHTBUTTON, at.x, at.y, Hwnd(), nullptr);
  if (chosen != 0) owner_->OnCommand(static_cast<Command>(chosen));
}

void FrameWindow::ShowOthers() {
  ShowMenu(tool_bar_->Others(), tool_bar_->MorePlace());
}

void FrameWindow::UpdateCommands() {
  const views::DeskState desk = owner_->State();
  for (const CommandInfo& info : Commands()) {
    if (*info.bar_text == '\0') continue;
    const CommandState state = StateOf(info, desk);
    tool_bar_->SetEnabled(info.command, state.enabled);
    tool_bar_->SetShown(info.command, state.visible);
    tool_bar_->SetPressed(info.command, state.checked);
  }
}

void FrameWindow::ShowDeeds(HMENU menu) {
  const auto deeds = owner_->OnDeeds();
  const auto show = [&](Command command, const std::string& deed) {
    const std::wstring text = tavrix::host::Wide(EntryText(*views::FindCommand(command), deed));
    const UINT id = IdOf(command);
    ModifyMenuW(menu, id, MF_BYCOMMAND | MF_STRING, id, text.c_str());
    const bool nothing = deeds && deed.empty();
    if (nothing) EnableMenuItem(menu, id, MF_BYCOMMAND | MF_GRAYED);
  };
  show(Command::kUndo, deeds ? deeds->undo : std::string());
  show(Command::kRedo, deeds ? deeds->redo : std::string());
}

void FrameWindow::OnMenuOpening(HMENU menu) {
  const views::DeskState desk = owner_->State();
  for (const CommandInfo& info : Commands()) {
    const UINT id = IdOf(info.command);
    if (GetMenuState(menu, id, MF_BYCOMMAND) == static_cast<UINT>(-1)) continue;
    const CommandState state = StateOf(info, desk);
    const bool usable = state.enabled && state.visible;
    EnableMenuItem(menu, id, static_cast<UINT>(MF_BYCOMMAND | (usable ? MF_ENABLED : MF_GRAYED)));
    CheckMenuItem(menu, id, static_cast<UINT>(state.checked ? MF_CHECKED : MF_UNCHECKED));
  }
  const UINT undo = GetMenuState(menu, IdOf(Command::kUndo), MF_BYCOMMAND);
  if (desk.started && undo != static_cast<UINT>(-1)) ShowDeeds(menu);
}

// Panes have menus of their own: only what belongs to the view, or to nobody, comes here. Which
// window the message names depends on how many have passed it on.
void FrameWindow::OnContextMenu(LPARAM place) {
  constexpr LPARAM kByKey = -1;
  std::optional<POINT> at;
  if (place != kByKey) at = POINT{GET_X_LPARAM(place), GET_Y_LPARAM(place)};
  const HWND part = at ? WindowFromPoint(*at) : GetFocus();
  if (part != nullptr && IsChild(area_->Hwnd(), part)) owner_->OnViewMenu(part, at);
}

}  // namespace desk::app
