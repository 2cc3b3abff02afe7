#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "book/session/journal_command.h"
#include "book/session/progress.h"
#include "book/session/session.h"

/// Postings as an undo moves them. Inside its transaction, while the rules pause.
namespace desk::book {

/// Postings that went from one account to another by the command `of` go back, the last move first:
/// exactly those, and only while they are all there as they were; `command` notes it. The code of
/// an account whose postings are others now, after which nothing may be committed; empty when all
/// have gone back.
[[nodiscard]] std::string ReturnPostings(Session& session, std::int64_t of, std::int64_t command);

struct CodeChange {
  std::string from;
  std::string to;
};

/// Postings follow the codes of their accounts back, after the command `of`, and `command` says how
/// many. `codes` in the order of `from`; `meet` when one is the old code of one account and the new
/// code of another. `DatabaseError`; `WorkCancelled`.
void FollowCodes(Session& session, std::int64_t of, const std::vector<CodeChange>& codes, bool meet,
                 JournalCommand& command, const Progress& progress);

}  // namespace desk::book
