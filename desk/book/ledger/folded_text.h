#pragma once

#include <array>
#include <string>
#include <string_view>

namespace desk::book {

/// What of a text counts when it is looked for: small letters, without accents, at half width;
/// typographic quotes, dashes and blanks as those of a keyboard. Chinese characters stay.
[[nodiscard]] std::string Folded(std::string_view text);

/// The same into a text that is used again and again: no memory is taken once it is large enough.
void FoldInto(std::string_view text, std::string& folded);

/// A text that is looked for in many others. One thread.
class FoldedPattern {
 public:
  explicit FoldedPattern(std::string_view text);
  [[nodiscard]] bool Empty() const { return sought_.empty(); }
  [[nodiscard]] bool FoundIn(std::string_view text) const;

 private:
  std::string sought_;
  std::array<bool, 256> starts_{};  // the bytes that the text sought may begin with before folding
  mutable std::string folded_;      // the text that is looked through, kept for its memory
};

}  // namespace desk::book
