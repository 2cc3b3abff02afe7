#pragma once

#include <string>

struct sqlite3;

namespace tavrix::bench {

/// Fills the account table of the book at `path` with `accounts` accounts of the rule 4333, spread
/// over the six categories: one first-level account for every hundred accounts or so.
void FillChart(const std::string& path, int accounts);

/// A plain connection to the book at `path` with the settings that the book itself uses.
class Connection {
 public:
  explicit Connection(const std::string& path);
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection();

  void Run(const std::string& sql) const;
  /// Steps through `sql` and copies the text of every cell into `buffer`; gives the rows.
  int FetchAndCopy(const std::string& sql, std::string& buffer) const;
  /// Bytes that the page cache holds.
  [[nodiscard]] long CacheUsed() const;

 private:
  sqlite3* handle_ = nullptr;
};

/// Adds `count` voucher entries on one account.
void FillPostings(const Connection& connection, const std::string& code, long count);

/// Adds the first-level account `root` with accounts below it, `count` in all.
void FillSubtree(const Connection& connection, const std::string& root, long count);

}  // namespace tavrix::bench
