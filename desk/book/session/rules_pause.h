#pragma once

#include <string>
#include <vector>

#include "book/session/chart_check.h"
#include "book/session/session.h"
#include "host/non_copyable.h"

namespace desk::book {

/// The condition, in triggers, under which the rules work: a row of `desk_identifier` (SQLite), or
/// a setting of the transaction (PostgreSQL), says when they pause.
[[nodiscard]] std::string RulesWork(SqlDialect dialect);

/// False for a book of an earlier desk that nobody could renew: its rules do not know of pauses.
[[nodiscard]] bool RulesCanPause(Session& session);

/// While it lives, inside one transaction, the rules of the ledgers (`LedgerRules`) do nothing: no
/// postings move, no parents are asked for, no flags are set. The history goes on. For those who
/// rearrange the chart in steps that the rules would not let through one by one; what they do not
/// do then, moving postings and setting flags, is theirs to do; nobody else can post meanwhile. The
/// transaction cannot be committed before `Resume`. `DatabaseError`, as for all that writes.
class RulesPause : private tavrix::host::NonCopyable {
 public:
  /// Inside an open `Transaction`. Keeps what was wrong with the chart before.
  explicit RulesPause(Session& session);
  ~RulesPause() = default;

  /// Lets the rules work again. `DatabaseError` (`kRefused`), which names the account, when
  /// something is wrong with the chart that was not before.
  void Resume();
  /// `Resume`, after it has set flags of leaves that are wrong and were not before.
  void ResumeWithFlags();

 private:
  /// What is wrong with the chart that was not before.
  [[nodiscard]] std::vector<ChartFault> NewFaults() const;
  void ResumeWithout(const std::vector<ChartFault>& faults);

  Session& session_;
  std::vector<ChartFault> before_;
};

}  // namespace desk::book
