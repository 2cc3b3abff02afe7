#include "book/exchange/gb18030.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <vector>

#include "embedded/kGb18030Pairs.h"
#include "embedded/kGb18030Ranges.h"
#include "host/code_points.h"

namespace desk::book {

namespace {

namespace host = tavrix::host;

constexpr unsigned kFirstLead = 0x81;
constexpr unsigned kLastLead = 0xFE;
constexpr unsigned kFirstTrail = 0x40;
constexpr unsigned kNoTrail = 0x7F;
constexpr std::size_t kTrails = kLastLead - kFirstTrail;  // one of the numbers is left out

/// The characters of two bytes, in the order of the bytes.
std::vector<char32_t> ReadPairs() {
  std::vector<char32_t> pairs;
  for (const std::string_view line : embedded::kGb18030Pairs) {
    for (std::size_t at = 0; at < line.size();) pairs.push_back(host::NextCodePoint(line, at));
  }
  return pairs;
}

/// Characters of four bytes stand in order, in runs: `first` counts from the first of them.
struct Run {
  std::uint32_t first;
  char32_t point;  ///< 0: they are none
};

std::vector<Run> ReadRuns() {
  std::vector<Run> runs;
  for (const std::string_view line : embedded::kGb18030Ranges) {
    const char* const end = line.data() + line.size();
    std::uint32_t first = 0;
    std::uint32_t point = 0;
    const auto number = std::from_chars(line.data(), end, first);
    std::from_chars(number.ptr + 1, end, point);
    runs.push_back({first, point});
  }
  return runs;
}

/// Where a character of four bytes stands among all of them.
char32_t PointAt(std::uint32_t position) {
  constexpr std::uint32_t kFirstBeyond = 189000;  // of U+10000
  constexpr std::uint32_t kBelow = 39420;         // so many stand below U+10000
  if (position >= kFirstBeyond) {
    const char32_t point = 0x10000 + (position - kFirstBeyond);
    return point <= 0x10FFFF ? point : 0;
  }
  if (position >= kBelow) return 0;
  static const std::vector<Run> runs = ReadRuns();
  const auto after = std::ranges::upper_bound(runs, position, {}, &Run::first);
  if (after == runs.begin()) return 0;
  const Run& run = *std::prev(after);
  return run.point == 0 ? 0 : run.point + (position - run.first);
}

class Reader {
 public:
  explicit Reader(std::string_view bytes) : bytes_(bytes) {}

  [[nodiscard]] bool AtEnd() const { return at_ >= bytes_.size(); }

  char32_t Next() {
    const unsigned lead = Byte(0);
    if (lead < 0x80) return Take(1, lead);
    if (lead < kFirstLead || lead > kLastLead) return Take(1, 0);
    const unsigned second = Byte(1);
    if (second >= '0' && second <= '9') return Long(lead, second);
    if (second < kFirstTrail || second > kLastLead || second == kNoTrail) return Take(1, 0);
    static const std::vector<char32_t> pairs = ReadPairs();
    const std::size_t trail = second - kFirstTrail - (second > kNoTrail ? 1 : 0);
    return Take(2, pairs.at((lead - kFirstLead) * kTrails + trail));
  }

 private:
  [[nodiscard]] unsigned Byte(std::size_t offset) const {
    return at_ + offset < bytes_.size() ? static_cast<unsigned char>(bytes_[at_ + offset]) : 0;
  }
  char32_t Take(std::size_t bytes, char32_t point) {
    at_ += point == 0 && bytes > 1 ? 1 : bytes;
    return point == 0 && bytes_[at_ - 1] != 0 ? host::kReplacement : point;
  }
  char32_t Long(unsigned lead, unsigned second) {
    const unsigned third = Byte(2);
    const unsigned fourth = Byte(3);
    const bool whole = third >= kFirstLead && third <= kLastLead && fourth >= '0' && fourth <= '9';
    if (!whole) return Take(1, 0);
    constexpr unsigned kThirds = kLastLead - kFirstLead + 1;
    const unsigned pair = (lead - kFirstLead) * 10 + (second - '0');
    return Take(4, PointAt((pair * kThirds + (third - kFirstLead)) * 10 + (fourth - '0')));
  }

  std::string_view bytes_;
  std::size_t at_ = 0;
};

}  // namespace

std::string FromGb18030(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 2);
  Reader reader(bytes);
  while (!reader.AtEnd()) host::AppendUtf8(text, reader.Next());
  return text;
}

}  // namespace desk::book
