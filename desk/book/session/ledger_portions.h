#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <string>

#include "book/database/database.h"

/// Changes of many rows of a ledger in several statements, between which the user may cancel.
namespace desk::book {

/// How many accounts or rows one statement takes, so that it takes a moment and not more.
class Portion {
 public:
  Portion(std::int64_t least, std::int64_t first, std::int64_t most)
      : size_(first), least_(least), most_(most) {}
  /// The next portion of what goes from `begin` to before `end`: to where it goes.
  template <class Work>
  [[nodiscard]] std::int64_t Take(std::int64_t begin, std::int64_t end, Work&& work) {
    using std::chrono::milliseconds;
    const std::int64_t stop = std::min(begin + size_, end);
    const auto started = std::chrono::steady_clock::now();
    work(stop);
    const auto spent = std::chrono::steady_clock::now() - started;
    if (spent < milliseconds(60)) size_ = std::min(size_ * 2, most_);
    if (spent > milliseconds(200)) size_ = std::max(size_ / 2, least_);
    return stop;
  }

 private:
  std::int64_t size_;
  std::int64_t least_;
  std::int64_t most_;
};

/// The identifiers of the rows of a ledger.
struct LedgerRange {
  std::int64_t first = 0;
  std::int64_t end = 0;  ///< behind the last; equal to `first` for an empty ledger

  /// Whether `rows` are so many of them that it is quicker to read the whole ledger once than to
  /// look for these by their codes, which stand scattered over it.
  [[nodiscard]] bool IsReadFor(std::int64_t rows, SqlDialect dialect) const;

  /// The condition for the rows from an identifier on and before another one, its parameters, and
  /// that on the code, which must not be looked for by an index then.
  static constexpr const char* kPart = " where i_id>=? and i_id<? and ";
  [[nodiscard]] static const char* CodeAsRead(SqlDialect dialect) {
    return dialect == SqlDialect::kSqlite ? "+ccode" : "ccode";
  }

  /// `work(first, end)` for one part of the identifiers after the other.
  template <class Work>
  void InParts(Work&& work) const {
    Portion portion(1 << 14, 1 << 14, 1 << 20);  // a statement may list all codes anew
    for (std::int64_t from = first; from < end;) {
      from = portion.Take(from, end, [&](std::int64_t stop) { work(from, stop); });
    }
  }
};

/// `DatabaseError`.
[[nodiscard]] LedgerRange RangeOfLedger(Connection& connection, const std::string& ledger);

/// Inside a transaction: waits for other programs that are posting, and lets nobody post until it
/// ends, so that what is noted of the ledgers is what moves. A file has been locked before.
void LockLedgers(Connection& connection);

}  // namespace desk::book
