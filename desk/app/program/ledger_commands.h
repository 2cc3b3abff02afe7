#pragma once

#include "app/program/workplace.h"

/// The commands of the ledgers: each opens a sheet.
namespace desk::app {

/// The sheet of the account that is selected in the view.
void ShowAccountLedger(const Workplace& place);
void ShowVouchers(const Workplace& place);
void ShowOpeningBalances(const Workplace& place);
void ShowTrialBalance(const Workplace& place);

}  // namespace desk::app
