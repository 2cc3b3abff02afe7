#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <vector>

#include "book/session/session.h"

/// What must be true of every chart: the rules as one looks at the whole of it.
namespace desk::book {

struct ChartFault {
  enum class Kind {
    kNoCode,
    kNoParent,   ///< by the code rule of the book
    kLeafFlag,   ///< says otherwise than the accounts below it
    kPostings,   ///< on an account that is no leaf
    kNoAccount,  ///< for these postings
  };
  Kind kind = Kind::kNoCode;
  std::int64_t id = 0;  ///< of the account; 0 where there is none
  std::string code;     ///< as it was found

  /// The same fault of the same account; of postings, on the same code.
  friend std::strong_ordering operator<=>(const ChartFault& a, const ChartFault& b) {
    if (const auto order = a.kind <=> b.kind; order != 0) return order;
    if (const auto order = a.id <=> b.id; order != 0 || a.id != 0) return order;
    return a.code <=> b.code;
  }
  friend bool operator==(const ChartFault& a, const ChartFault& b) { return (a <=> b) == 0; }
};

/// Everything that is wrong with the chart and the accounts of postings.
[[nodiscard]] std::vector<ChartFault> FindChartFaults(Session& session);

/// For users: "科目 1001 的上级科目不存在".
[[nodiscard]] std::string FaultText(const ChartFault& fault);

/// `DatabaseError` (`kRefused`), which names the account, when there is any fault.
void CheckChart(Session& session);

}  // namespace desk::book
