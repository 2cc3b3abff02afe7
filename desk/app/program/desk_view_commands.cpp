#include <exception>
#include <utility>

#include "app/automation/view_grid.h"
#include "app/program/desk.h"
#include "host/flag_scope.h"
#include "host/report.h"
#include "host/utf.h"
#include "views/outline_commands.h"

// What the user does with the rows of the view: finding, filtering, the outline, its menu.
namespace desk::app {
namespace {

namespace host = tavrix::host;

ViewGrid CurrentGrid(const KjkmView& view) {
  return ViewGrid(ComPtr<IFlexGrid>(&view.CurrentGrid()));
}

std::wstring Position(const book::SearchTally& tally) {
  return std::to_wstring(tally.position) + L" / " + std::to_wstring(tally.matches);
}

}  // namespace

AccountFollower::Calls Desk::MakeFollowerCalls() {
  return {.choice = [this]() -> AccountFollower::Choice {
            if (!open_) return {};
            const auto account = View() ? View()->SelectedAccount() : std::nullopt;
            return {.session = &open_->book.GetSession(),
                    .code = account ? tavrix::host::Narrow(account->code) : ""};
          },
          .leave = [this] { OnFocusView(); }};
}

BookFollower::Calls Desk::MakeBookFollowerCalls() {
  return {.session = [this] { return open_ ? &open_->book.GetSession() : nullptr; },
          .quiet = [this](bool quiet) { wait_->SetQuiet(quiet); },
          .changed = [this](book::ChangeWatch::Seen seen) { return FollowOthers(seen); }};
}

bool Desk::FollowOthers(book::ChangeWatch::Seen seen) {
  const host::FlagScope unasked(unasked_);
  const std::wstring before = std::exchange(unread_, {});
  try {
    // The list keeps what it shows, which it would lose to a reading that fails.
    book::CheckReadable(open_->book.GetSession());
    seen.accounts ? ReadAgain() : ReadPostings();
  } catch (const std::exception& error) {
    unread_ = tavrix::host::Wide(host::ErrorText(error));
  }
  const bool read = unread_.empty();
  if (!read) {
    frame_->SetMessage(L"账簿在别处有修改，暂时不能重新读取：" + unread_);
    if (unread_ != before) log_.Unread(unread_);
  } else if (seen.accounts || !before.empty()) {
    frame_->SetMessage(L"账簿在别处有修改，已重新读取");
  }
  frame_->UpdateCommands();
  return read;
}

void Desk::OnFind(const std::wstring& text) {
  if (!View() || text.empty()) return;
  TellFound(View()->Find(text));
}

void Desk::OnFindNext() {
  if (!View()) return;
  SearchStrip& bar = frame_->FindBar();
  if (!bar.Shown() || bar.Text().empty()) return frame_->ShowBar(bar, true);
  TellFound(View()->Call(&IFormUI::FindNext));
}

void Desk::TellFound(bool found) {
  frame_->FindBar().SetAnswer(found ? Position(*open_->book.Environment().tally) : L"没有找到",
                              !found);
}

void Desk::OnFilter(const std::wstring& text) {
  if (!View()) return;
  const bool found = View()->Filter(text);
  SearchStrip& bar = frame_->FilterBar();
  if (text.empty()) return bar.SetAnswer({});
  if (!found) return bar.SetAnswer(L"没有找到", true);
  bar.SetAnswer(L"符合条件 " + std::to_wstring(open_->book.Environment().tally->matches) + L" 个");
}

void Desk::ExpandTo(int level) {
  ViewGrid grid = CurrentGrid(*View());
  views::ExpandToLevel(grid, level);
}

/// The grid itself has made the row under the mouse the current one.
void Desk::OnViewMenu(HWND part, std::optional<POINT> at) {
  if (!View()) return;
  Trapped({}, [&] {
    const ViewGrid grid = CurrentGrid(*View());
    if (reinterpret_cast<HWND>(grid.WindowHandle()) != part) return;
    const auto design = [this](int pixels) { return frame_->CurrentStyle()->scale.Design(pixels); };
    POINT below{design(24), grid.BottomOf(grid.Row()).value_or(design(24))};
    ClientToScreen(part, &below);
    frame_->UpdateCommands();
    frame_->ShowMenu(views::ListMenu(), at.value_or(below));
  });
}

}  // namespace desk::app
