#include "book/ledger/mnemonic.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>

#include "book/ledger/folded_text.h"
#include "embedded/kPinyinInitials.h"
#include "host/code_points.h"
#include "host/text.h"

namespace desk::book {

namespace {

namespace host = tavrix::host;

constexpr std::size_t kLongest = 12;

/// Words in which a character is read otherwise than mostly, as far as accounts are called by them.
struct Word {
  std::string_view text;
  std::string_view letters;
};
constexpr std::array kWords = {
    Word{"银行", "yh"},    Word{"工行", "gh"},    Word{"建行", "jh"}, Word{"农行", "nh"},
    Word{"中行", "zh"},    Word{"交行", "jh"},    Word{"招行", "zh"}, Word{"浦发行", "pfh"},
    Word{"央行", "yh"},    Word{"总行", "zh"},    Word{"分行", "fh"}, Word{"支行", "zh"},
    Word{"商行", "sh"},    Word{"同行", "th"},    Word{"他行", "th"}, Word{"本行", "bh"},
    Word{"行业", "hy"},    Word{"行情", "hq"},    Word{"行号", "hh"}, Word{"行名", "hm"},
    Word{"会计", "kj"},    Word{"长期", "cq"},    Word{"长江", "cj"}, Word{"长城", "cc"},
    Word{"长短", "cd"},    Word{"长款", "ck"},    Word{"长沙", "cs"}, Word{"长春", "cc"},
    Word{"延长", "yc"},    Word{"长度", "cd"},    Word{"重组", "cz"}, Word{"重估", "cg"},
    Word{"重置", "cz"},    Word{"重新", "cx"},    Word{"重复", "cf"}, Word{"重庆", "cq"},
    Word{"重分类", "cfl"}, Word{"重计量", "cjl"}, Word{"重整", "cz"}, Word{"重建", "cj"},
    Word{"调整", "tz"},    Word{"调节", "tj"},    Word{"调账", "tz"}, Word{"调帐", "tz"},
    Word{"调剂", "tj"},    Word{"调价", "tj"},    Word{"调解", "tj"}, Word{"调试", "ts"},
    Word{"空调", "kt"},    Word{"协调", "xt"},    Word{"税率", "sl"}, Word{"西藏", "xz"},
    Word{"音乐", "yy"},    Word{"校验", "jy"},    Word{"校准", "jz"}, Word{"供给", "gj"},
    Word{"给付", "jf"},    Word{"补给", "bj"},    Word{"自给", "zj"}, Word{"畜牧", "xm"},
    Word{"厦门", "xm"},    Word{"弹性", "tx"},    Word{"弹簧", "th"}, Word{"率先", "sx"},
    Word{"贾", "j"},       Word{"曾用", "cy"},    Word{"曾经", "cj"}, Word{"传记", "zj"},
    Word{"自行车", "zxc"}, Word{"石家庄", "sjz"}, Word{"合同", "ht"}, Word{"便宜", "py"},
    Word{"仔猪", "zz"},    Word{"似的", "sd"},    Word{"降落", "jl"}, Word{"投降", "tx"},
};

/// The word at the start of a text; the longest, where one begins with another.
const Word* WordAt(std::string_view text) {
  const Word* found = nullptr;
  for (const Word& word : kWords) {
    const bool longer = found == nullptr || word.text.size() > found->text.size();
    if (longer && text.starts_with(word.text)) found = &word;
  }
  return found;
}

std::optional<char> InitialOf(char32_t point) {
  constexpr char32_t kFirst = 0x4E00;
  constexpr std::size_t kOnLine = 64;
  constexpr std::size_t kAll = std::size(embedded::kPinyinInitials) * kOnLine;
  if (point < kFirst || point - kFirst >= kAll) return std::nullopt;
  const std::size_t place = point - kFirst;
  const char letter = embedded::kPinyinInitials[place / kOnLine][place % kOnLine];
  if (letter == '.') return std::nullopt;
  return letter;
}

bool IsCapital(char32_t point) {
  return point >= 'A' && point <= 'Z';
}

char32_t AtHalfWidth(char32_t point) {
  constexpr char32_t kFirst = 0xFF01;
  constexpr char32_t kLast = 0xFF5E;
  return point >= kFirst && point <= kLast ? point - kFirst + '!' : point;
}

/// The plain letter or digit that a character comes to; nothing for signs and other scripts.
std::optional<char> LatinOf(std::string_view character) {
  const std::string folded = Folded(character);
  if (folded.empty()) return std::nullopt;
  const char unit = folded.front();
  const bool good = host::IsDigit(unit) || (unit >= 'a' && unit <= 'z');
  return good ? std::optional(unit) : std::nullopt;
}

/// Gathers the letters of Latin words: which of them count is known from the one before.
class LatinWord {
 public:
  /// Whether this letter or digit counts.
  bool Take(char32_t point) {
    const bool whole =
        IsCapital(point) || (point < 0x80 && host::IsDigit(static_cast<char>(point)));
    const bool counts = whole || !inside_;
    inside_ = true;
    return counts;
  }
  void End() { inside_ = false; }

 private:
  bool inside_ = false;
};

}  // namespace

std::string ProposeMnemonic(std::string_view name) {
  std::string mnemonic;
  LatinWord latin;
  for (std::size_t at = 0; at < name.size() && mnemonic.size() < kLongest;) {
    if (const Word* word = WordAt(name.substr(at)); word != nullptr) {
      mnemonic += word->letters;
      at += word->text.size();
      latin.End();
      continue;
    }
    const char32_t point = AtHalfWidth(host::NextCodePoint(name, at));
    std::string character;
    host::AppendUtf8(character, point);
    if (const auto letter = LatinOf(character)) {
      if (latin.Take(point)) mnemonic += *letter;
      continue;
    }
    latin.End();
    if (const auto initial = InitialOf(point)) mnemonic += *initial;
  }
  mnemonic.resize(std::min(mnemonic.size(), kLongest));
  return mnemonic;
}

}  // namespace desk::book
