#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// The little that the desk reads of a statement's text before a database sees it.
namespace desk::book {

struct SqlToken {
  enum class Kind { kWord, kNumber, kText, kQuotedName, kSymbol };
  Kind kind = Kind::kSymbol;
  std::size_t start = 0;
  std::string_view text;  ///< as written, quotes included

  [[nodiscard]] std::size_t End() const { return start + text.size(); }
};

/// The tokens of `sql` without blanks and comments; they point into it. Never fails: what is not
/// closed runs to the end.
[[nodiscard]] std::vector<SqlToken> SqlTokens(std::string_view sql);

/// For an UPDATE of the one row that has a given `i_id`: the query that finds this row. Empty for
/// every other statement.
[[nodiscard]] std::string QueryForChangedRow(std::string_view sql);

/// A statement in the Jet dialect as an engine takes it: "top n" becomes a limit at the end of the
/// same select, unless the engine knows it (`has_top`), and in a text after LIKE the wildcard "*"
/// becomes "%". "%" and "_" match as they always do, and SQLite knows the words True and False.
/// What stands before the limit keeps its place.
[[nodiscard]] std::string FromJet(std::string_view sql, bool has_top = false);

}  // namespace desk::book
