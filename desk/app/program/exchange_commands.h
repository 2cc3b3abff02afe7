#pragma once

#include "app/program/workplace.h"

namespace desk::app {

/// Asks for a file and shows what importing it would do.
void ImportAccounts(const Workplace& place);
/// Asks for a file and writes the whole chart there, in the form that its ending says.
void ExportAccounts(const Workplace& place);
/// Lists the accounts without mnemonics, with what is proposed for them.
void FillMnemonics(const Workplace& place);

}  // namespace desk::app
