#pragma once

#include "app/program/workplace.h"

/// The commands that rearrange accounts: each asks in a dialog that previews what it does. They
/// throw what view and database raise.
namespace desk::app {

void AskRenumber(const Workplace& place);
void AskMove(const Workplace& place);
void AskMerge(const Workplace& place);
void AskBatch(const Workplace& place);

}  // namespace desk::app
