#pragma once

#include "book/exchange/import_plan.h"
#include "book/session/progress.h"

namespace desk::book {

/// Carries out what `plan`, which `PlanImport` made of the same table and options, says: all lines
/// that are not refused, in one transaction. The book is judged again first; where others have
/// changed it since, so that something else would happen, nothing does. `DatabaseError` also when
/// the engine refuses a row, `WorkCancelled` when the user has had enough: the book is as it was.
void ImportChart(Session& session, const SourceTable& table, const ImportOptions& options,
                 const ImportPlan& plan, const Progress& progress = {});

}  // namespace desk::book
