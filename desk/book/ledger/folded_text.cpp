#include "book/ledger/folded_text.h"

#include <algorithm>
#include <array>

#include "host/code_points.h"
#include "host/text.h"

namespace desk::book {

namespace {

namespace host = tavrix::host;

/// The plain letters of U+00C0 to U+017F, sixteen to a line; '?' for what stays as it is and digits
/// for what becomes two letters (see `kPairs`).
constexpr std::string_view kPlain =
    "aaaaaa1ceeeeiiii"
    "dnooooo?ouuuuy53"
    "aaaaaa1ceeeeiiii"
    "dnooooo?ouuuuy5y"
    "aaaaaaccccccccdd"
    "ddeeeeeeeeeegggg"
    "gggghhhhiiiiiiii"
    "ii44jjkkklllllll"
    "lllnnnnnnnnnoooo"
    "oo22rrrrrrssssss"
    "ssttttttuuuuuuuu"
    "uuuuwwyyyzzzzzzs";
constexpr char32_t kFirstPlain = 0xC0;
static_assert(kPlain.size() == 0x180 - kFirstPlain);
constexpr std::array<std::string_view, 6> kPairs = {"", "ae", "oe", "ss", "ij", "th"};

/// Further letters that are one plain letter with marks: Pinyin, Romanian, Vietnamese.
struct MarkedLetters {
  char32_t first;
  char32_t last;
  char plain;
};
constexpr std::array kMarked = {
    MarkedLetters{0x1A0, 0x1A1, 'o'},   MarkedLetters{0x1AF, 0x1B0, 'u'},
    MarkedLetters{0x1CD, 0x1CE, 'a'},   MarkedLetters{0x1CF, 0x1D0, 'i'},
    MarkedLetters{0x1D1, 0x1D2, 'o'},   MarkedLetters{0x1D3, 0x1DC, 'u'},
    MarkedLetters{0x218, 0x219, 's'},   MarkedLetters{0x21A, 0x21B, 't'},
    MarkedLetters{0x1EA0, 0x1EB7, 'a'}, MarkedLetters{0x1EB8, 0x1EC7, 'e'},
    MarkedLetters{0x1EC8, 0x1ECB, 'i'}, MarkedLetters{0x1ECC, 0x1EE3, 'o'},
    MarkedLetters{0x1EE4, 0x1EF1, 'u'}, MarkedLetters{0x1EF2, 0x1EF9, 'y'}};

constexpr bool Within(char32_t point, char32_t first, char32_t last) {
  return point >= first && point <= last;
}

/// What the keyboard has for a sign of the typesetter; others stay.
char32_t PlainSign(char32_t point) {
  if (point == 0xA0 || point == 0x3000 || Within(point, 0x2000, 0x200A) || point == 0x202F) {
    return ' ';
  }
  if (Within(point, 0x2010, 0x2015)) return '-';
  if (Within(point, 0x2018, 0x201B) || point == 0x2BC) return '\'';
  if (Within(point, 0x201C, 0x201F)) return '"';
  return point;
}

constexpr bool IsCombiningMark(char32_t point) {
  return Within(point, 0x300, 0x36F);
}

/// Whether all characters that begin with this byte of UTF-8 have three bytes and stay as they are:
/// U+4000 to U+CFFF, Chinese ones among them.
constexpr bool FoldsToItself(unsigned byte) {
  return byte >= 0xE4 && byte <= 0xEC;
}

char LowerAscii(char unit) {
  return unit >= 'A' && unit <= 'Z' ? static_cast<char>(unit + ('a' - 'A')) : unit;
}

bool IsContinuation(char unit) {
  return (static_cast<unsigned char>(unit) & 0xC0) == 0x80;
}

/// How many bytes a text begins with that stay as they are but for capitals of ASCII: most of a
/// chart, codes and Chinese names.
std::size_t PlainLength(std::string_view text) {
  std::size_t length = 0;
  while (length < text.size()) {
    const auto unit = static_cast<unsigned char>(text[length]);
    if (unit < 0x80) {
      ++length;
      continue;
    }
    const bool whole = FoldsToItself(unit) && length + 2 < text.size() &&
                       IsContinuation(text[length + 1]) && IsContinuation(text[length + 2]);
    if (!whole) return length;
    length += 3;
  }
  return length;
}

void AppendPlain(char letter, char32_t point, std::string& folded) {
  if (letter == '?') return host::AppendUtf8(folded, point);
  if (!host::IsDigit(letter)) return folded.push_back(letter);
  folded += kPairs[static_cast<std::size_t>(letter - '0')];
}

void AppendFolded(char32_t point, std::string& folded) {
  if (IsCombiningMark(point)) return;
  constexpr char32_t kFullWidth = 0xFF01 - '!';
  if (Within(point, 0xFF01, 0xFF5E)) point -= kFullWidth;
  point = PlainSign(point);
  if (point < 0x80) return folded.push_back(LowerAscii(static_cast<char>(point)));
  if (point >= kFirstPlain && point - kFirstPlain < kPlain.size()) {
    return AppendPlain(kPlain[point - kFirstPlain], point, folded);
  }
  const auto* const marked = std::ranges::find_if(
      kMarked, [point](const MarkedLetters& some) { return Within(point, some.first, some.last); });
  if (marked != kMarked.end()) return folded.push_back(marked->plain);
  host::AppendUtf8(folded, point);
}

/// Greek and Cyrillic have capitals too, which the table above does not know.
bool HasOtherLetters(char32_t point) {
  return Within(point, 0x370, 0x52F);
}

}  // namespace

void FoldInto(std::string_view text, std::string& folded) {
  folded.clear();
  for (std::size_t at = 0; at < text.size();) {
    if (const std::size_t plain = PlainLength(text.substr(at)); plain > 0) {
      const std::size_t start = folded.size();
      folded += text.substr(at, plain);
      for (std::size_t i = start; i < folded.size(); ++i) folded[i] = LowerAscii(folded[i]);
      at += plain;
      continue;
    }
    const std::size_t start = at;
    const char32_t point = host::NextCodePoint(text, at);
    if (HasOtherLetters(point)) {
      folded += host::LowerCase(text.substr(start, at - start));
    } else {
      AppendFolded(point, folded);
    }
  }
}

std::string Folded(std::string_view text) {
  std::string folded;
  FoldInto(text, folded);
  return folded;
}

FoldedPattern::FoldedPattern(std::string_view text) : sought_(Folded(text)) {
  if (sought_.empty()) return;
  constexpr char kReplacement = '\xEF';  // how U+FFFD begins, which broken sequences fold to
  const bool any = sought_.front() == kReplacement;
  for (unsigned byte = 0; byte < starts_.size(); ++byte) {
    const bool folds = byte >= 0x80 && (any || !FoldsToItself(byte));
    starts_[byte] = folds || LowerAscii(static_cast<char>(byte)) == sought_.front();
  }
}

bool FoldedPattern::FoundIn(std::string_view text) const {
  const auto may_start = [this](char unit) { return starts_[static_cast<unsigned char>(unit)]; };
  if (!sought_.empty() && std::ranges::none_of(text, may_start)) return false;
  FoldInto(text, folded_);
  return folded_.find(sought_) != std::string::npos;
}

}  // namespace desk::book
