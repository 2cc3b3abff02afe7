#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace desk::book {

/// As engines count them: not in UTF-16 units.
[[nodiscard]] std::size_t CharactersOf(const std::string& text);

/// How the codes of a subtree follow the code of its topmost account: each keeps its own part of
/// every level below. Where these levels are as long at the new place, what stands behind the old
/// code is taken as it is; else each part gets zeros before it, or loses zeros, to fit.
class CodeMap {
 public:
  /// Both codes stand on levels of `rule`, except that codes of one length need none.
  CodeMap(std::string rule, std::string from, std::string to);

  /// The level of the topmost account at its new place.
  [[nodiscard]] int Level() const { return to_level_; }

  struct Place {
    std::string code = {};
    int level = 0;             ///< 0 when the rule has none for the code
    std::string refusal = {};  ///< why there is none; then the code is empty
  };
  /// Where a code that begins with the old one comes to.
  [[nodiscard]] Place PlaceOf(const std::string& code) const;

  /// An expression for the new code of `column`, with one parameter, `NewTop`. `condition` selects
  /// the codes it is for, empty when it is for all. Codes that have no place are not thought of.
  struct Part {
    std::string expression;
    std::string condition;
  };
  [[nodiscard]] std::vector<Part> Parts(const std::string& column) const;
  /// An expression for the new level of the account whose old code `ccode` still is.
  [[nodiscard]] std::string LevelExpression() const;
  [[nodiscard]] const std::string& NewTop() const { return to_; }

 private:
  struct Step {
    int position = 0;  ///< of the part in the old code, from 0
    int length = 0;
    int more = 0;  ///< zeros that come before it; less than 0: that go
  };
  [[nodiscard]] Place Kept(const std::string& code) const;
  [[nodiscard]] Place Fitted(const std::string& code) const;
  /// The parts of a code of `level`, at the old place.
  [[nodiscard]] std::vector<Step> StepsTo(int level) const;
  [[nodiscard]] int Digits(int level) const;
  [[nodiscard]] int Length(int level) const;
  /// The deepest level that has one at the new place.
  [[nodiscard]] int LastLevel() const { return Levels() - std::max(to_level_ - from_level_, 0); }
  [[nodiscard]] int Levels() const { return static_cast<int>(rule_.size()); }

  std::string rule_;
  std::string from_;
  std::string to_;
  int from_level_ = 0;
  int to_level_ = 0;
  bool kept_ = true;  // what stands behind the old code is taken as it is
};

}  // namespace desk::book
