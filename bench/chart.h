#pragma once

#include <string>

#include "host/non_copyable.h"

struct sqlite3;

namespace tavrix::bench {

/// Fills the empty account table of the book at `path` with `accounts` accounts of the rule 4333,
/// which becomes the book's, spread over the six categories: one first-level account for every
/// hundred accounts or so, or for every thousand in charts of more than 500,000.
void FillChart(const std::string& path, int accounts);

/// A plain connection to the book at `path` with the settings that the book itself uses.
class Connection : private host::NonCopyable {
 public:
  explicit Connection(const std::string& path);
  ~Connection();

  void Run(const std::string& sql) const;
  /// Steps through `sql` and asks for the text of every cell; gives the rows.
  int StepAndRead(const std::string& sql) const;
  /// Bytes that the page cache holds.
  [[nodiscard]] long CacheUsed() const;
  [[nodiscard]] sqlite3* Handle() const { return handle_; }

 private:
  sqlite3* handle_ = nullptr;
  mutable long read_ = 0;  ///< so that nothing of what is measured can be left out
};

/// Adds `count` voucher entries on one account.
void FillPostings(const Connection& connection, const std::string& code, long count);

/// Adds `count` voucher entries on the leaf accounts of the chart, four to a voucher.
void FillVouchers(const Connection& connection, long count);

/// Adds the first-level account `root` with accounts below it, `count` in all.
void FillSubtree(const Connection& connection, const std::string& root, long count);

}  // namespace tavrix::bench
