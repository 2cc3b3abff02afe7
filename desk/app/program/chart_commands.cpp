#include "app/program/chart_commands.h"

#include <functional>
#include <map>
#include <string>

#include "app/program/follow_codes.h"
#include "app/work/long_work.h"
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

void AskForCode(const Workplace& place, MoveDialog::Purpose purpose) {
  MoveDialog dialog(place.book.GetSession(), SelectedCode(place), purpose, RunnerOf(place));
  place.user.ShowModal(dialog);
  if (!dialog.Done()) return;
  std::map<std::string, std::string> codes;
  for (const book::MovedAccount& row : dialog.Plan().rows) {
    codes.emplace(row.account.code, row.new_code);
  }
  FollowCodes(place, codes);
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
    if (!dialog.Done()) return;
    const book::MergePlan& plan = *dialog.Plan();
    FollowCodes(place, {{plan.from.code, plan.into.code}});
  });
}

void AskBatch(const Workplace& place) {
  Asking(place, [&] {
    views::BatchDialog dialog(place.book.GetSession(), SelectedCode(place), RunnerOf(place));
    place.user.ShowModal(dialog);
  });
}

}  // namespace desk::app
