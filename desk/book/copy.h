#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace desk::book {

struct CopiedTable {
  std::string name;
  std::int64_t rows = 0;
};

/// Makes the book at `to` (see `Book::Create`) with all rows of the one at `from`, of whatever
/// engines, and compares both row by row before anything of it stays. Identifiers and the record of
/// those given come along. Nobody with this library's host writes into `from` meanwhile.
/// `DatabaseError` when a row could not be copied or came back otherwise; nothing is left then.
std::vector<CopiedTable> CopyBook(const std::string& from, const std::string& to);

}  // namespace desk::book
