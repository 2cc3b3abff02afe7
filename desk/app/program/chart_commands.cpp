#include "app/program/chart_commands.h"

#include <algorithm>
#include <functional>
#include <map>
#include <string>

#include "app/automation/view_grid.h"
#include "app/com.h"
#include "app/work/long_work.h"
#include "book/host/grid_state.h"
#include "book/ledger/code_rule.h"
#include "host/text.h"
#include "host/utf.h"
#include "views/batch_dialog.h"
#include "views/merge_dialog.h"
#include "views/move_dialog.h"

namespace desk::app {
namespace {

using tavrix::host::Narrow;
using tavrix::host::Wide;
using tavrix::viewkit::UserPort;
using views::MoveDialog;

views::LongRunner RunnerOf(const Workplace& place) {
  return
      [&place](const std::string& title, const std::function<void(const book::Progress&)>& work) {
        RunLong(place.frame.Hwnd(), Wide(title), work);
      };
}

std::string SelectedCode(const Workplace& place) {
  const auto account = place.view.SelectedAccount();
  return account ? Narrow(account->code) : std::string();
}

/// An account for which the command is not there says so above the frame.
void Asking(const Workplace& place, const std::function<void()>& body) {
  try {
    body();
  } catch (const book::DatabaseError& error) {
    if (error.Kind() != book::ErrorKind::kRefused) throw;
    (void)place.user.Ask(error.what(), "提示：", UserPort::Icon::kWarning, UserPort::Buttons::kOk);
  }
}

ViewGrid CurrentGrid(const Workplace& place) {
  return ViewGrid(ComPtr<IFlexGrid>(&place.view.CurrentGrid()));
}

/// Accounts have other codes: the branches that were open are open at their new place, and the
/// account `shown` is the current one, with the branches above it open.
void ShowMoved(const Workplace& place, const std::map<std::string, std::string>& codes,
               const std::string& shown) {
  book::GridState state = book::GridState::Of(CurrentGrid(place));
  for (std::string& code : state.open) {
    if (const auto found = codes.find(code); found != codes.end()) code = found->second;
  }
  const std::string rule = book::ReadCodeRule(place.book.GetSession());
  book::CodeRuleArithmetic arithmetic;
  for (std::string above = arithmetic.ParentCode(shown, rule); !above.empty();
       above = arithmetic.ParentCode(above, rule)) {
    state.open.push_back(above);
  }
  std::ranges::sort(state.open, [](const std::string& a, const std::string& b) {
    return tavrix::host::CompareNoCase(a, b) < 0;
  });
  state.open.erase(std::ranges::unique(state.open).begin(), state.open.end());
  state.current = shown;
  place.view.Reload();
  ViewGrid grid = CurrentGrid(place);
  state.PutBack(grid);
  if (!grid.IsInView(grid.Row())) grid.SetTopRow(grid.Row());
}

void AskForCode(const Workplace& place, MoveDialog::Purpose purpose) {
  MoveDialog dialog(place.book.GetSession(), SelectedCode(place), purpose, RunnerOf(place));
  place.user.ShowModal(dialog);
  if (!dialog.Done()) return;
  std::map<std::string, std::string> codes;
  for (const book::MovedAccount& row : dialog.Plan().rows) {
    codes.emplace(row.account.code, row.new_code);
  }
  ShowMoved(place, codes, dialog.Plan().new_code);
}

}  // namespace

void AskRenumber(const Workplace& place) {
  Asking(place, [&] { AskForCode(place, MoveDialog::Purpose::kRenumber); });
}

void AskMove(const Workplace& place) {
  Asking(place, [&] { AskForCode(place, MoveDialog::Purpose::kMove); });
}

void AskMerge(const Workplace& place) {
  Asking(place, [&] {
    views::MergeDialog dialog(place.book.GetSession(), SelectedCode(place), RunnerOf(place));
    place.user.ShowModal(dialog);
    if (dialog.Done()) ShowMoved(place, {}, dialog.Plan()->into.code);
  });
}

void AskBatch(const Workplace& place) {
  Asking(place, [&] {
    views::BatchDialog dialog(place.book.GetSession(), SelectedCode(place), RunnerOf(place));
    place.user.ShowModal(dialog);
  });
}

}  // namespace desk::app
