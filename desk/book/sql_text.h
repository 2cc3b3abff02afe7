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

/// Refuses, with `DatabaseError`, what is not exactly one SELECT, INSERT, UPDATE or DELETE. A
/// semicolon and comments may follow it.
void CheckCallerStatement(std::string_view sql);

/// Whether the statement is an UPDATE of the one row that has a given `i_id`.
[[nodiscard]] bool ChangesRowByKey(std::string_view sql);

/// A statement in the Jet dialect as the other engines take it: "top n" becomes a limit at the end
/// of the same select, and in a text after LIKE the wildcard "*" becomes "%". "%" and "_" match as
/// they always do, and the words True and False are known to the engines.
[[nodiscard]] std::string FromJet(std::string_view sql);

}  // namespace desk::book
