#include "book/folded_text.h"

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

char LowerAscii(char32_t point) {
  return static_cast<char>(Within(point, 'A', 'Z') ? point + ('a' - 'A') : point);
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
  if (point < 0x80) return folded.push_back(LowerAscii(point));
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
    const auto unit = static_cast<unsigned char>(text[at]);
    if (unit < 0x80) {  // most of a chart: codes
      folded.push_back(LowerAscii(unit));
      ++at;
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

bool FoldedPattern::FoundIn(std::string_view text) const {
  FoldInto(text, folded_);
  return folded_.find(sought_) != std::string::npos;
}

}  // namespace desk::book
