#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tavrix::host {

/// The number at the start of `text`: blanks, a sign, digits, a point, an exponent; nothing when
/// there is none. What follows the number is ignored; an overflow gives the nearest finite value.
[[nodiscard]] std::optional<double> NumberAtStart(std::string_view text);

/// As `NumberAtStart`; no number gives 0.
[[nodiscard]] double LeadingNumber(std::string_view text);

/// `number` truncated towards zero and held within 32 bits; not-a-number gives 0.
[[nodiscard]] std::int32_t ToLong32(double number);

/// As `LeadingNumber`, through `ToLong32`.
[[nodiscard]] std::int32_t LeadingLong(std::string_view text);

[[nodiscard]] constexpr bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

/// Length of `text` in UTF-16 units: what every rule on the length of a code or a name means.
[[nodiscard]] std::size_t TextLength(std::string_view text);

/// Orders UTF-8 texts as their UTF-16 code units order: negative, zero or positive.
[[nodiscard]] int CompareText(std::string_view left, std::string_view right);

/// Without leading and trailing blanks (U+0020 only).
[[nodiscard]] std::string_view Trimmed(std::string_view text);

/// Simple case mapping of Latin, Greek and Cyrillic letters; all else stays.
[[nodiscard]] std::string LowerCase(std::string_view text);
[[nodiscard]] std::string UpperCase(std::string_view text);

/// Orders as `CompareText` orders the lower-case forms.
[[nodiscard]] int CompareNoCase(std::string_view left, std::string_view right);

/// Equal but for case, in the sense of `LowerCase`.
[[nodiscard]] bool EqualNoCase(std::string_view left, std::string_view right);

/// A text that is looked for in many others, which are neither changed nor copied for that: as if
/// the lower-case forms of both were compared.
class CaselessText {
 public:
  explicit CaselessText(std::string_view text);
  [[nodiscard]] bool IsEmpty() const { return lower_.empty(); }
  [[nodiscard]] bool IsIn(std::string_view text) const;
  [[nodiscard]] bool IsStartOf(std::string_view text) const { return StandsAt(text, 0); }

 private:
  [[nodiscard]] bool StandsAt(std::string_view text, std::size_t at) const;

  std::string lower_;
  std::array<bool, 256> begins_{};  ///< the bytes that a place where it stands can begin with
};

}  // namespace tavrix::host
