#pragma once

#include "app/program/workplace.h"

/// The commands of the ledgers: each opens a sheet.
namespace desk::app {

void ShowTrialBalance(const Workplace& place);

}  // namespace desk::app
