#include "book/sql/sql_text.h"

#include <algorithm>
#include <utility>

#include "host/text.h"

namespace desk::book {

namespace host = tavrix::host;

namespace {

using tavrix::host::IsDigit;
using Kind = SqlToken::Kind;

bool IsBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
/// Letters of every script: all bytes of a UTF-8 sequence count.
bool IsWordPart(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 0x80 || c == '_' || c == '$' || IsDigit(c) || (c >= 'a' && c <= 'z') ||
         (c >= 'A' && c <= 'Z');
}

/// Reads a statement from its start to its end.
class Scanner {
 public:
  explicit Scanner(std::string_view sql) : sql_(sql) {}

  /// Skips blanks and comments; false at the end.
  [[nodiscard]] bool Skip() {
    while (at_ < sql_.size()) {
      if (IsBlank(sql_[at_])) {
        ++at_;
      } else if (sql_.substr(at_, 2) == "--") {
        at_ = std::min(sql_.find('\n', at_), sql_.size());
      } else if (sql_.substr(at_, 2) == "/*") {
        const std::size_t end = sql_.find("*/", at_ + 2);
        at_ = end == std::string_view::npos ? sql_.size() : end + 2;
      } else {
        return true;
      }
    }
    return false;
  }

  [[nodiscard]] SqlToken Take() {
    const std::size_t start = at_;
    const char first = sql_[at_];
    Kind kind = Kind::kSymbol;
    if (first == '\'' || first == '"' || first == '`' || first == '[') {
      kind = first == '\'' ? Kind::kText : Kind::kQuotedName;
      TakeQuoted(first == '[' ? ']' : first);
    } else if (IsWordPart(first)) {
      kind = IsDigit(first) ? Kind::kNumber : Kind::kWord;
      while (at_ < sql_.size() && IsWordPart(sql_[at_])) ++at_;
    } else {
      ++at_;
    }
    return {kind, start, sql_.substr(start, at_ - start)};
  }

 private:
  /// A doubled quote stands for itself, but not in brackets.
  void TakeQuoted(char quote) {
    for (++at_; at_ < sql_.size(); ++at_) {
      if (sql_[at_] != quote) continue;
      const bool doubled = quote != ']' && at_ + 1 < sql_.size() && sql_[at_ + 1] == quote;
      ++at_;
      if (!doubled) return;
    }
  }

  std::string_view sql_;
  std::size_t at_ = 0;
};

bool IsWord(const SqlToken& token, std::string_view word) {
  return token.kind == Kind::kWord && host::EqualNoCase(token.text, word);
}

bool IsSymbol(const SqlToken& token, char symbol) {
  return token.kind == Kind::kSymbol && token.text.front() == symbol;
}

/// Where the select that begins at token `first` ends: behind its last token.
std::size_t EndOfSelect(const std::vector<SqlToken>& tokens, std::size_t first) {
  int depth = 0;
  std::size_t end = tokens[first].End();
  for (std::size_t i = first; i < tokens.size(); ++i) {
    if (IsSymbol(tokens[i], '(')) ++depth;
    if (IsSymbol(tokens[i], ')') && --depth < 0) break;
    if (IsSymbol(tokens[i], ';')) break;
    end = tokens[i].End();
  }
  return end;
}

/// A piece of the statement that another text replaces.
struct Edit {
  std::size_t start;
  std::size_t end;
  std::string text;
};

/// "select [distinct] top n" at token `select`: the two edits that make it a limit.
void LimitTop(const std::vector<SqlToken>& tokens, std::size_t select, std::vector<Edit>& edits) {
  std::size_t top = select + 1;
  if (top < tokens.size() && (IsWord(tokens[top], "distinct") || IsWord(tokens[top], "all"))) ++top;
  if (top + 1 >= tokens.size() || !IsWord(tokens[top], "top")) return;
  const SqlToken& count = tokens[top + 1];
  if (count.kind != Kind::kNumber) return;
  edits.push_back(
      {tokens[top].start, count.End(), std::string(count.End() - tokens[top].start, ' ')});
  const std::size_t end = EndOfSelect(tokens, select);
  edits.push_back({end, end, " LIMIT " + std::string(count.text)});
}

std::string Apply(std::string_view sql, std::vector<Edit> edits) {
  std::ranges::stable_sort(edits, {}, &Edit::start);
  std::string text;
  std::size_t at = 0;
  for (const Edit& edit : edits) {
    text.append(sql.substr(at, edit.start - at)).append(edit.text);
    at = edit.end;
  }
  return text.append(sql.substr(at));
}

}  // namespace

std::vector<SqlToken> SqlTokens(std::string_view sql) {
  std::vector<SqlToken> tokens;
  Scanner scanner(sql);
  while (scanner.Skip()) tokens.push_back(scanner.Take());
  return tokens;
}

std::string QueryForChangedRow(std::string_view sql) {
  std::vector<SqlToken> tokens = SqlTokens(sql);
  while (!tokens.empty() && IsSymbol(tokens.back(), ';')) tokens.pop_back();
  if (tokens.size() < 6 || !IsWord(tokens.front(), "update")) return {};
  const auto last = tokens.end() - 4;
  const bool by_key = IsWord(last[0], "where") && IsWord(last[1], "i_id") &&
                      IsSymbol(last[2], '=') && last[3].kind == Kind::kNumber;
  if (!by_key) return {};
  return "select i_id from " + std::string(tokens[1].text) +
         " where i_id=" + std::string(last[3].text);
}

std::string FromJet(std::string_view sql, bool has_top) {
  const std::vector<SqlToken> tokens = SqlTokens(sql);
  std::vector<Edit> edits;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    if (!has_top && IsWord(tokens[i], "select")) LimitTop(tokens, i, edits);
    const bool pattern = i > 0 && tokens[i].kind == Kind::kText && IsWord(tokens[i - 1], "like");
    if (!pattern) continue;
    std::string text(tokens[i].text);
    std::ranges::replace(text, '*', '%');
    edits.push_back({tokens[i].start, tokens[i].End(), std::move(text)});
  }
  return Apply(sql, std::move(edits));
}

}  // namespace desk::book
