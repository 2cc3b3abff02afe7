#include "app/program/ledger_commands.h"

#include <chrono>
#include <optional>

#include "app/frame/today.h"
#include "host/utf.h"
#include "views/account_ledger_view.h"
#include "views/opening_balance_view.h"
#include "views/trial_balance_view.h"
#include "views/voucher_list_view.h"
#include "views/voucher_sheet.h"

namespace desk::app {

namespace {

namespace viewkit = tavrix::viewkit;

void OpenAccount(const Workplace& place, const std::string& code,
                 const std::optional<book::Period>& period);
void OpenVoucher(const Workplace& place, const book::VoucherKey& key);

views::VoucherActions::Calls VoucherCalls(const Workplace& place) {
  return {
      .open = [place](const book::VoucherKey& key) { OpenVoucher(place, key); },
      .enter = place.enter_voucher,
      .open_account = [place](const std::string& code) { OpenAccount(place, code, std::nullopt); },
      .today = Today};
}

void OpenVoucher(const Workplace& place, const book::VoucherKey& key) {
  place.sheets.Open(DeskSettings::kVoucher, views::VoucherSheet::KeyOf(key),
                    {.make =
                         [&](viewkit::UserPort& user) {
                           return std::make_unique<views::VoucherSheet>(
                               place.book.GetSession(), user, key, VoucherCalls(place));
                         },
                     .design = {1000, 380}});
}

void OpenAccount(const Workplace& place, const std::string& code,
                 const std::optional<book::Period>& period) {
  views::AccountLedgerView::Plan plan{
      .code = code,
      .period = period,
      .open_voucher = [place](const book::Month& month, int number) {
        OpenVoucher(place, {month, number});
      }};
  SheetWindow& window = place.sheets.Open(
      DeskSettings::kAccountLedger, code, {.make = [&](viewkit::UserPort& user) {
        return std::make_unique<views::AccountLedgerView>(place.book.GetSession(), user, plan);
      }});
  // One that was open already may show another period.
  auto* const view = dynamic_cast<views::AccountLedgerView*>(&window.View());
  if (view != nullptr && period) view->SetPeriod(*period);
}

}  // namespace

void ShowAccountLedger(const Workplace& place) {
  const auto account = place.view.SelectedAccount();
  if (account) OpenAccount(place, tavrix::host::Narrow(account->code), std::nullopt);
}

void ShowVouchers(const Workplace& place) {
  place.sheets.Open(DeskSettings::kVouchers, {}, {.make = [&](viewkit::UserPort& user) {
                      return std::make_unique<views::VoucherListView>(place.book.GetSession(), user,
                                                                      VoucherCalls(place));
                    }});
}

void ShowOpeningBalances(const Workplace& place) {
  place.sheets.Open(DeskSettings::kOpeningBalances, {},
                    {.make =
                         [&](viewkit::UserPort& user) {
                           return std::make_unique<views::OpeningBalanceView>(
                               place.book.GetSession(), user);
                         },
                     .design = {1060, 640}});
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
