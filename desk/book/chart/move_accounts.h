#pragma once

#include <cstdint>

#include "book/chart/move_plan.h"
#include "book/session/journal_command.h"
#include "book/session/progress.h"

namespace desk::book {

struct MoveResult {
  std::int64_t accounts = 0;
  std::int64_t postings = 0;  ///< rows of all ledgers
};

/// Carries out what `plan` shows, in one transaction: the accounts get their new codes, levels and
/// categories, the ledgers and the accounts summarised into them follow, and the flags of the old
/// and the new parent are set. The plan is made anew inside the transaction; `DatabaseError` when
/// it is refused now or says something else than what was shown, `WorkCancelled` when the user has
/// cancelled. Nothing has changed then. `kind` is what the history calls it.
MoveResult MoveAccounts(Session& session, const MovePlan& plan, CommandKind kind,
                        const Progress& progress = {});

}  // namespace desk::book
