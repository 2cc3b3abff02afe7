#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "book/chart/chart_account.h"
#include "book/session/progress.h"

/// One leaf account merged into another: its postings move there, and it goes.
namespace desk::book {

/// One respect in which the two accounts are compared.
struct MergeRow {
  std::string subject = {};
  std::string from = {};
  std::string into = {};
  std::string note = {};  ///< what the difference means; empty for none
  bool refused = false;
  friend bool operator==(const MergeRow&, const MergeRow&) = default;
};

struct MergePlan {
  ChartAccount from;
  ChartAccount into;
  PostingCount moved = {};    ///< the postings of `from`
  PostingCount present = {};  ///< those of `into`
  std::vector<MergeRow> rows;
  std::vector<std::string> notes;  ///< what becomes of others
  std::string refusal;             ///< of the whole; empty when a row is all that hinders

  [[nodiscard]] bool Allowed() const;
  /// The first reason against it; empty when there is none.
  [[nodiscard]] std::string WhyNot() const;
};

/// What a merge of the account `from` into `into` would do. Refused are accounts that are no leaf
/// accounts, a sealed target, and differences in which the postings would lose what they say, or
/// lack what the target wants of them: currency, quantity, department, person, customer, supplier,
/// project. `DatabaseError` when one is not there, or the book cannot be read.
[[nodiscard]] MergePlan PlanMerge(Session& session, const std::string& from,
                                  const std::string& into);

/// Carries the plan out in one transaction. The plan is made anew inside it; `DatabaseError` when
/// it is refused now or the accounts are not those that were shown. How many ledger rows have
/// moved: more than were shown, when others have posted meanwhile.
std::int64_t MergeAccounts(Session& session, const MergePlan& plan, const Progress& progress = {});

}  // namespace desk::book
