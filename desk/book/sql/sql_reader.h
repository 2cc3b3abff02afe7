#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "book/sql/sql_text.h"

namespace desk::book {

/// Reads a caller's statement token by token for those who judge it. What a server might take apart
/// in another way is refused: comments, escapes, quoting of one server alone, a number or a text
/// that runs into a word. All refusals are `DatabaseError` and name the place.
class SqlReader {
 public:
  /// Refuses at once what is no statement of the four kinds, or more than one of them. `sql` must
  /// outlive the reader.
  explicit SqlReader(std::string_view sql);

  [[nodiscard]] bool Ended() const { return at_ == tokens_.size(); }
  /// Where the next token stands; one past the last at the end.
  [[nodiscard]] std::size_t At() const { return at_; }

  /// Whether the next token, or the one `ahead` behind it, is this word or symbol.
  [[nodiscard]] bool IsWord(std::string_view word, std::size_t ahead = 0) const;
  [[nodiscard]] bool IsSymbol(std::string_view symbol, std::size_t ahead = 0) const;

  /// Passes the next token when it is the one named.
  bool TakeWord(std::string_view word);
  bool TakeSymbol(std::string_view symbol);
  /// Refuses anything else.
  void ExpectWord(std::string_view word);
  void ExpectSymbol(std::string_view symbol);
  void ExpectNumber();

  /// Passes the next token when it is one of `words`, and says which; else empty.
  [[nodiscard]] std::string_view TakeOneOf(std::initializer_list<std::string_view> words);
  [[nodiscard]] bool TakeText();
  [[nodiscard]] bool TakeNumber();
  /// Whether the next token is a word.
  [[nodiscard]] bool IsName() const;
  /// The next token as written; empty at the end.
  [[nodiscard]] std::string_view NextText() const;
  /// The next token, which must be a word, whatever it says.
  [[nodiscard]] std::string_view ExpectName();

  /// Refuses the next token as one that may not stand there.
  [[noreturn]] void RefuseNext() const;
  /// Refuses with `reason`, which the token at `at` and its place follow.
  [[noreturn]] void Refuse(std::string_view reason, std::size_t at) const;

 private:
  void CheckSpelling();
  void CheckToken(std::size_t at) const;
  void JoinOperators();
  void CheckKind();

  std::string_view sql_;
  std::vector<SqlToken> tokens_;
  std::size_t at_ = 0;
};

}  // namespace desk::book
