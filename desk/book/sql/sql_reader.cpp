#include "book/sql/sql_reader.h"

#include <algorithm>
#include <array>

#include "book/database/database.h"
#include "book/sql/sql_words.h"
#include "host/text.h"
#include "host/utf.h"

namespace desk::book {

namespace {

using tavrix::host::IsDigit;
using Kind = SqlToken::Kind;

[[noreturn]] void RefuseText(const std::string& text) {
  throw DatabaseError(ErrorKind::kRefused, text);
}

bool IsTail(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

/// A message stays readable whatever the statement holds.
std::string Shown(std::string_view text) {
  constexpr std::size_t kMax = 60;
  if (text.size() <= kMax) return std::string(text);
  std::size_t end = kMax;
  while (end > 0 && IsTail(text[end])) --end;
  return std::string(text.substr(0, end)) + "…";
}

/// The letters of names: ASCII and Chinese ideographs. Servers take some other characters for
/// blanks or quotes.
bool IsPlainName(std::string_view name) {
  if (name.find('$') != std::string_view::npos) return false;
  if (std::ranges::none_of(name, [](char c) { return c < 0; })) return true;
  for (const char16_t unit : host::ToUtf16(name)) {
    const bool ideograph = (unit >= 0x3400 && unit <= 0x4DBF) || (unit >= 0x4E00 && unit <= 0x9FFF);
    if (unit >= 0x80 && !ideograph) return false;
  }
  return true;
}

bool IsPlainText(std::string_view text) {
  return std::ranges::count(text, '\'') % 2 == 0;
}

bool IsPlain(const SqlToken& token) {
  constexpr std::string_view kSymbols = "()*,.;=<>+-/|";
  switch (token.kind) {
    case Kind::kWord:
      return IsPlainName(token.text);
    case Kind::kNumber:
      return std::ranges::all_of(token.text, IsDigit);
    case Kind::kText:
      return IsPlainText(token.text);
    case Kind::kSymbol:
      return kSymbols.find(token.text.front()) != std::string_view::npos;
    case Kind::kQuotedName:
      break;
  }
  return false;
}

/// Whether a text may stand directly behind `word`: a word of the grammar's own, which no server
/// reads as a mark of the text like E'..', N'..' or _utf8'..'.
bool LeadsToText(std::string_view word) {
  constexpr std::array<std::string_view, 12> kWords = {"like", "or",      "and",    "not",
                                                       "in",   "then",    "else",   "when",
                                                       "case", "between", "select", "escape"};
  return std::ranges::any_of(kWords, [&](auto known) { return IsSameName(known, word); });
}

}  // namespace

SqlReader::SqlReader(std::string_view sql) : sql_(sql), tokens_(SqlTokens(sql)) {
  // The engines end a text at its first NUL: what follows would escape the checks.
  if (sql.find('\0') != std::string_view::npos) RefuseText("语句中有不允许的字符");
  CheckKind();
  CheckSpelling();
  JoinOperators();
}

void SqlReader::CheckKind() {
  const auto is_end = [](const SqlToken& t) { return t.text == ";"; };
  if (tokens_.empty() || is_end(tokens_.front())) RefuseText("语句为空");
  const auto end = std::ranges::find_if(tokens_, is_end);
  if (!std::all_of(end, tokens_.end(), is_end)) RefuseText("一次只能执行一条语句");
  const bool known = IsWord("select") || IsWord("insert") || IsWord("update") || IsWord("delete");
  if (!known) RefuseText("只允许执行 SELECT、INSERT、UPDATE、DELETE 语句");
}

void SqlReader::CheckSpelling() {
  std::size_t end = 0;
  for (std::size_t at = 0; at <= tokens_.size(); ++at) {
    const std::size_t start = at < tokens_.size() ? tokens_[at].start : sql_.size();
    // A comment may end for the server where it does not end for us.
    const std::string_view gap = sql_.substr(end, start - end);
    if (gap.find_first_not_of(" \t\r\n\v\f") != std::string_view::npos) {
      RefuseText("语句中不允许有注释");
    }
    if (at == tokens_.size()) break;
    CheckToken(at);
    end = tokens_[at].End();
  }
  const auto last = std::ranges::find_if(tokens_, [](const auto& t) { return t.text == ";"; });
  tokens_.erase(last, tokens_.end());
}

void SqlReader::CheckToken(std::size_t at) const {
  const SqlToken& token = tokens_[at];
  bool plain = IsPlain(token);
  if (at > 0 && tokens_[at - 1].End() == token.start && token.kind == Kind::kText) {
    const SqlToken& before = tokens_[at - 1];
    plain = plain && (before.kind == Kind::kSymbol ||
                      (before.kind == Kind::kWord && LeadsToText(before.text)));
  }
  if (at > 0 && tokens_[at - 1].End() == token.start && token.kind == Kind::kWord) {
    plain = plain && tokens_[at - 1].kind != Kind::kNumber;
  }
  if (plain) return;
  Refuse(token.kind == Kind::kText ? "语句中的单引号位置不对：" : "语句中有不允许的写法：", at);
}

/// Makes one token of the two symbols of "<>", "<=", ">=" and "||", and of the parts of "1.5".
void SqlReader::JoinOperators() {
  constexpr std::array<std::string_view, 4> kPairs = {"<>", "<=", ">=", "||"};
  std::vector<SqlToken> joined;
  for (const SqlToken& token : tokens_) {
    const bool touches = !joined.empty() && joined.back().End() == token.start;
    if (!touches) {
      joined.push_back(token);
      continue;
    }
    SqlToken& before = joined.back();
    const std::string_view both = sql_.substr(before.start, token.End() - before.start);
    const bool pair = std::ranges::find(kPairs, both) != kPairs.end();
    const bool number = before.kind == Kind::kNumber &&
                        (both.ends_with('.') || token.kind == Kind::kNumber) &&
                        std::ranges::count(both, '.') == 1;
    if (pair || number) {
      before.text = both;
    } else {
      joined.push_back(token);
    }
  }
  tokens_ = std::move(joined);
  for (std::size_t at = 0; at < tokens_.size(); ++at) {
    if (tokens_[at].kind == Kind::kNumber && tokens_[at].text.ends_with('.')) {
      Refuse("语句中有不允许的写法：", at);
    }
  }
}

bool SqlReader::IsWord(std::string_view word, std::size_t ahead) const {
  return at_ + ahead < tokens_.size() && tokens_[at_ + ahead].kind == Kind::kWord &&
         IsSameName(tokens_[at_ + ahead].text, word);
}

bool SqlReader::IsSymbol(std::string_view symbol, std::size_t ahead) const {
  return at_ + ahead < tokens_.size() && tokens_[at_ + ahead].text == symbol;
}

bool SqlReader::TakeWord(std::string_view word) {
  const bool taken = IsWord(word);
  if (taken) ++at_;
  return taken;
}

bool SqlReader::TakeSymbol(std::string_view symbol) {
  const bool taken = IsSymbol(symbol);
  if (taken) ++at_;
  return taken;
}

void SqlReader::ExpectWord(std::string_view word) {
  if (!TakeWord(word)) RefuseNext();
}

void SqlReader::ExpectSymbol(std::string_view symbol) {
  if (!TakeSymbol(symbol)) RefuseNext();
}

void SqlReader::ExpectNumber() {
  if (!TakeNumber()) RefuseNext();
}

std::string_view SqlReader::TakeOneOf(std::initializer_list<std::string_view> words) {
  const auto* const found =
      std::ranges::find_if(words, [this](std::string_view word) { return TakeWord(word); });
  return found == words.end() ? std::string_view() : *found;
}

bool SqlReader::TakeText() {
  const bool text = !Ended() && tokens_[at_].kind == Kind::kText;
  if (text) ++at_;
  return text;
}

bool SqlReader::TakeNumber() {
  const bool number = !Ended() && tokens_[at_].kind == Kind::kNumber;
  if (number) ++at_;
  return number;
}

bool SqlReader::IsName() const {
  return !Ended() && tokens_[at_].kind == Kind::kWord;
}

std::string_view SqlReader::NextText() const {
  return Ended() ? std::string_view() : tokens_[at_].text;
}

std::string_view SqlReader::ExpectName() {
  if (!IsName()) RefuseNext();
  return tokens_[at_++].text;
}

void SqlReader::RefuseNext() const {
  if (Ended()) RefuseText("语句有语法错误：语句不完整");
  Refuse("语句有语法错误，或有不允许的写法：", at_);
}

void SqlReader::Refuse(std::string_view reason, std::size_t at) const {
  const SqlToken& token = tokens_[at];
  const auto before = sql_.substr(0, token.start);
  const auto place = std::ranges::count_if(before, [](char c) { return !IsTail(c); }) + 1;
  RefuseText(std::string(reason) + Shown(token.text) + "（第 " + std::to_string(place) + " 个字）");
}

}  // namespace desk::book
