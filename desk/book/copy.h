#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace desk::book {

struct CopiedTable {
  std::string name;
  std::int64_t rows = 0;
};

/// How far a copy has come. Every row counts twice: it is copied, and later compared.
struct CopyState {
  std::string_view table;
  bool compares = false;  ///< its rows are copied no more, but compared
  std::int64_t done = 0;  ///< rows of all tables
  std::int64_t all = 0;
};
/// Told every thousand rows or so, in the thread that copies. False cancels the copy.
using CopyWatch = std::function<bool(const CopyState&)>;

/// Makes the book at `to` (see `Book::Create`) with all rows of the one at `from`, of whatever
/// engines, and compares both before anything of it stays: the number of rows and a sum over the
/// contents of each. Identifiers and the record of those given come along. Nobody with this
/// library's host writes into `from` meanwhile. It takes a few megabytes, however large the book.
/// `DatabaseError` when a row could not be copied or came back otherwise, or when `watch` has
/// cancelled; nothing is left then.
std::vector<CopiedTable> CopyBook(const std::string& from, const std::string& to,
                                  const CopyWatch& watch = {});

}  // namespace desk::book
