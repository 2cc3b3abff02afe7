#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

#include "viewkit/ports.h"

namespace tavrix::viewkit {

/// Finds out of many texts those that may be the widest, so that only they are measured. Estimates
/// add up the widths of single characters.
class WidestTexts {
 public:
  struct Candidate {
    int estimate;  ///< twips, `extra` included
    int row;
    friend bool operator==(const Candidate&, const Candidate&) = default;
  };

  explicit WidestTexts(const TextMeasure& measure);

  /// `extra` twips stand beside the text.
  void Offer(int row, std::string_view text, int extra, bool bold) {
    const auto length = static_cast<int>(std::min(text.size(), kLongestText));
    const int beside = extra + (bold ? length * kTwipsPerPixel : 0);
    if (length * widest_byte_ + beside > bar_) Consider(row, text, beside);
  }
  [[nodiscard]] const std::vector<Candidate>& Candidates() const { return candidates_; }

 private:
  /// Longer texts are wider than any screen; estimating them further would tell nothing.
  static constexpr std::size_t kLongestText = 2000;

  void Consider(int row, std::string_view text, int extra);
  [[nodiscard]] int Estimate(std::string_view text) const;

  std::array<int, 256> widths_{};  // by the first byte of a character; 0 for what follows it
  int widest_byte_ = 0;
  int bar_ = -1;                       // what an estimate has to pass
  std::vector<Candidate> candidates_;  // widest first
};

}  // namespace tavrix::viewkit
