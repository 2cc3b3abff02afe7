#include "viewkit/grid/text_width.h"

#include <algorithm>

namespace tavrix::viewkit {

namespace {

constexpr std::size_t kMaxCandidates = 8;

void Fill(std::array<int, 256>& widths, std::size_t first, std::size_t end, int width) {
  std::fill(widths.begin() + static_cast<std::ptrdiff_t>(first),
            widths.begin() + static_cast<std::ptrdiff_t>(end), width);
}

}  // namespace

WidestTexts::WidestTexts(const TextMeasure& measure) {
  for (unsigned char c = ' '; c < 0x7F; ++c) {
    const char letter = static_cast<char>(c);
    widths_[c] = measure.Width({&letter, 1}, false);
  }
  const int two_bytes = measure.Width("\xD0\x96", false);
  const int wide = measure.Width("国", false);
  Fill(widths_, 0xC0, 0xE0, two_bytes);
  Fill(widths_, 0xE0, 0xF8, wide);
  const int ascii = *std::max_element(widths_.begin(), widths_.begin() + 0x7F);
  widest_byte_ = std::max({ascii, (two_bytes + 1) / 2, (wide + 2) / 3});
}

int WidestTexts::Estimate(std::string_view text) const {
  int width = 0;
  for (const char c : text.substr(0, kLongestText)) width += widths_[static_cast<unsigned char>(c)];
  return width;
}

void WidestTexts::Consider(int row, std::string_view text, int extra) {
  const Candidate candidate{Estimate(text) + extra, row};
  if (candidate.estimate <= bar_) return;
  if (candidates_.size() == kMaxCandidates) candidates_.pop_back();
  const auto place =
      std::find_if(candidates_.begin(), candidates_.end(),
                   [&](const Candidate& other) { return other.estimate < candidate.estimate; });
  candidates_.insert(place, candidate);
  if (candidates_.size() == kMaxCandidates) bar_ = candidates_.back().estimate;
}

}  // namespace tavrix::viewkit
