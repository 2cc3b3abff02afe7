#include "app/program/ledger_commands.h"

#include "host/utf.h"
#include "views/account_ledger_view.h"
#include "views/trial_balance_view.h"

namespace desk::app {

namespace {

namespace viewkit = tavrix::viewkit;

void OpenAccount(const Workplace& place, const std::string& code,
                 const std::optional<book::Period>& period) {
  place.sheets.Open(DeskSettings::kAccountLedger, code, {.make = [&](viewkit::UserPort& user) {
                      return std::make_unique<views::AccountLedgerView>(
                          place.book.GetSession(), user,
                          views::AccountLedgerView::Plan{.code = code, .period = period});
                    }});
}

}  // namespace

void ShowAccountLedger(const Workplace& place) {
  const auto account = place.view.SelectedAccount();
  if (account) OpenAccount(place, tavrix::host::Narrow(account->code), std::nullopt);
}

void ShowTrialBalance(const Workplace& place) {
  place.sheets.Open(DeskSettings::kTrialBalance, {}, {.make = [&](viewkit::UserPort& user) {
                      return std::make_unique<views::TrialBalanceView>(
                          place.book.GetSession(), place.book.System(), user,
                          [place](const std::string& code, const book::Period& period) {
                            OpenAccount(place, code, period);
                          });
                    }});
}

}  // namespace desk::app
