#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "book/chart/chart_account.h"
#include "book/session/progress.h"

/// Several accounts sealed, unsealed or deleted at once.
namespace desk::book {

enum class BatchAction { kSeal, kUnseal, kDelete };

/// The chart as a batch is chosen from, with what may hinder a deletion.
struct BatchChart {
  std::vector<ChartAccount> accounts = {};  ///< in order of their codes
  std::vector<bool> posted = {};            ///< for each: a ledger has rows on it
};
[[nodiscard]] BatchChart ReadBatchChart(Session& session);

struct BatchRow {
  std::size_t account = 0;  ///< its position in the chart
  bool changes = false;
  std::string reason = {};  ///< why it does not change; empty when it does
};

struct BatchPlan {
  BatchAction action = BatchAction::kSeal;
  std::vector<BatchRow> rows;  ///< the chosen accounts with all below them, in order of their codes
  std::size_t changing = 0;
  std::size_t refused = 0;  ///< rows that hinder; what is sealed already, or is not, does not
};

/// What would become of the accounts at the positions `chosen` and of all below them. Not deleted
/// is an account that has been posted to, and one that has such an account below it; what others
/// are summarised into neither, unless these go as well.
[[nodiscard]] BatchPlan PlanBatch(const BatchChart& chart, BatchAction action,
                                  const std::set<std::size_t>& chosen);

/// Changes the accounts that change by `plan`, in one transaction, and leaves the others as they
/// are. The plan is made anew inside it; `DatabaseError` when accounts have changed meanwhile so
/// that others would change than were shown.
std::int64_t ChangeBatch(Session& session, const BatchChart& chart, const BatchPlan& plan,
                         const std::set<std::size_t>& chosen, const Progress& progress = {});

}  // namespace desk::book
