#include "app/program/ledger_commands.h"

#include "views/trial_balance_view.h"

namespace desk::app {

namespace {

namespace viewkit = tavrix::viewkit;

}  // namespace

void ShowTrialBalance(const Workplace& place) {
  book::Book& book = place.book;
  place.sheets.Open(DeskSettings::kTrialBalance, {}, {.make = [&book](viewkit::UserPort& user) {
                      return std::make_unique<views::TrialBalanceView>(book.GetSession(),
                                                                       book.System(), user);
                    }});
}

}  // namespace desk::app
