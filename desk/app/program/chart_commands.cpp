#include "app/program/chart_commands.h"

#include <functional>
#include <map>
#include <string>

#include "app/program/follow_codes.h"
#include "app/program/refusal.h"
#include "app/progress/long_work.h"
#include "host/utf.h"
#include "views/batch_dialog.h"
#include "views/merge_dialog.h"
#include "views/move_dialog.h"

namespace desk::app {
namespace {

using tavrix::host::Narrow;
using views::MoveDialog;

constexpr char kTitle[] = "提示：";

std::string SelectedCode(const Workplace& place) {
  const auto account = place.view.SelectedAccount();
  return account ? Narrow(account->code) : std::string();
}

void AskForCode(const Workplace& place, MoveDialog::Purpose purpose) {
  MoveDialog dialog(place.book.GetSession(), SelectedCode(place), purpose,
                    LongRunnerAbove(place.frame.Hwnd()));
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
  TellRefusal(place, kTitle, [&] { AskForCode(place, MoveDialog::Purpose::kRenumber); });
}

void AskMove(const Workplace& place) {
  TellRefusal(place, kTitle, [&] { AskForCode(place, MoveDialog::Purpose::kMove); });
}

void AskMerge(const Workplace& place) {
  TellRefusal(place, kTitle, [&] {
    views::MergeDialog dialog(place.book.GetSession(), SelectedCode(place),
                              LongRunnerAbove(place.frame.Hwnd()));
    place.user.ShowModal(dialog);
    if (!dialog.Done()) return;
    const book::MergePlan& plan = *dialog.Plan();
    FollowCodes(place, {{plan.from.code, plan.into.code}});
  });
}

void AskBatch(const Workplace& place) {
  TellRefusal(place, kTitle, [&] {
    views::BatchDialog dialog(place.book.GetSession(), SelectedCode(place),
                              LongRunnerAbove(place.frame.Hwnd()));
    place.user.ShowModal(dialog);
  });
}

}  // namespace desk::app
