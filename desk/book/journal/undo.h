#pragma once

#include <cstdint>

#include "book/journal/history.h"
#include "book/session/progress.h"
#include "book/session/session.h"

namespace desk::book {

/// Takes a command of the history back, or does again what an undo took back: every account is as
/// it was before the command, and postings are where they were. All or nothing, in a transaction of
/// its own, and itself a command of the history, whose identifier it gives. `DatabaseError`
/// (`kRefused`) says why it cannot be: accounts were changed since, or the chart would not be
/// whole.
std::int64_t UndoCommand(Session& session, std::int64_t command, const Progress& progress = {});

}  // namespace desk::book
