#pragma once

#include <cstdint>
#include <string>

#include "book/journal/history.h"
#include "book/session/session.h"

/// Commands of the history in words for users.
namespace desk::book {

/// What was done, whether it was undone or not: "新增科目 100101 人民币".
[[nodiscard]] std::string DeedText(const HistoryEntry& entry);

/// What a command did: "撤销：新增科目 100101 人民币".
[[nodiscard]] std::string CommandText(const HistoryEntry& entry);

/// What a command has brought about, with its numbers: "新增科目 100101；上级 1001 的 12
/// 笔分录已转入". Empty when there is nothing to tell. `DatabaseError`.
[[nodiscard]] std::string OutcomeText(Session& session, std::int64_t command);

/// Tells of the commands of one session, each once.
class OutcomeTeller {
 public:
  /// What the last command that was committed since the last call has brought about; empty when
  /// there was none.
  [[nodiscard]] std::string Next(Session& session);

 private:
  std::int64_t told_ = 0;
};

}  // namespace desk::book
