#pragma once

#include <string>
#include <vector>

#include "book/book.h"

namespace tavrix::test {

/// A chart of three levels in rule 4222 whose texts hold what goes wrong between programs: quotes,
/// separators, ends of lines, letters with marks, characters beyond the basic plane, what looks
/// like numbers, formulas, markup or escapes. `count` accounts.
[[nodiscard]] std::vector<desk::book::Account> OddAccounts(int count);

/// Fills the columns of the book's accounts that `book::Account` does not have.
void AddOddColumns(const desk::book::Book& book);

/// Every column of every account but its identifier.
[[nodiscard]] std::vector<std::string> WholeChart(const desk::book::Book& book);

/// The engines that are there: SQLite, and a server if one is named.
[[nodiscard]] std::vector<std::string> EnginesAtHand();

}  // namespace tavrix::test
