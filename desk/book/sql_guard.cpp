#include "book/sql_guard.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "book/database.h"
#include "book/schema.h"
#include "book/sql_text.h"
#include "host/text.h"

namespace desk::book {

namespace {

using Kind = SqlToken::Kind;

[[noreturn]] void Refuse(const std::string& text) {
  throw DatabaseError(Trouble::kRefused, text);
}

template <std::size_t size>
bool IsOneOf(const SqlToken& token, const std::array<std::string_view, size>& words) {
  return token.kind == Kind::kWord && std::ranges::any_of(words, [&](std::string_view word) {
           return host::EqualNoCase(token.text, word);
         });
}

bool IsSymbol(const SqlToken& token, char symbol) {
  return token.kind == Kind::kSymbol && token.text.front() == symbol;
}

/// What may stand before a parenthesis without being the name of a function, and the functions.
constexpr std::array<std::string_view, 34> kBeforeParenthesis = {
    "select", "distinct", "all", "from", "join", "where", "and", "or", "not", "in", "exists", "on",
    "case", "when", "then", "else", "by", "having", "values", "set", "like", "union", "between",
    "as", "is", "null", "limit",
    // functions
    "count", "max", "min", "sum", "len", "left", "iif"};

/// Behind these stands a table.
constexpr std::array<std::string_view, 6> kBeforeTable = {"from",  "join",  "into",
                                                          "using", "table", "update"};
/// These end a list of tables.
constexpr std::array<std::string_view, 14> kBehindTables = {
    "where", "group", "order",     "having", "union", "except", "intersect",
    "set",   "limit", "returning", "select", "for",   "offset", "values"};
/// Words that open ways that no caller needs.
constexpr std::array<std::string_view, 4> kRefused = {"with", "lateral", "only", "window"};

std::string Unquoted(const SqlToken& token) {
  if (token.kind != Kind::kQuotedName || token.text.size() < 2) return std::string(token.text);
  return std::string(token.text.substr(1, token.text.size() - 2));
}

/// Walks through the tokens of one statement.
class TableCheck {
 public:
  explicit TableCheck(std::string_view sql) : sql_(sql), tokens_(SqlTokens(sql)) {}

  void Run() {
    lists_.push_back(false);
    std::size_t end = 0;
    for (at_ = 0; at_ < tokens_.size(); ++at_) {
      CheckGap(end, tokens_[at_].start);
      end = tokens_[at_].End();
      CheckToken(tokens_[at_]);
    }
    CheckGap(end, sql_.size());
    if (expected_) Refuse("语句中缺少表名");
  }

 private:
  /// A comment may end for the server where it does not end for us.
  void CheckGap(std::size_t start, std::size_t end) {
    const std::string_view gap = sql_.substr(start, end - start);
    if (gap.find_first_not_of(" \t\r\n\v\f") != std::string_view::npos) {
      Refuse("语句中不允许有注释");
    }
  }

  void CheckToken(const SqlToken& token) {
    CheckSpelling(token);
    if (token.kind == Kind::kSymbol) return CheckSymbol(token);
    if (expected_) return TakeTable(token);
    if (IsOneOf(token, kRefused)) Refuse("不允许使用 " + std::string(token.text));
    if (IsOneOf(token, kBeforeTable)) {
      expected_ = true;
      lists_.back() = true;
    } else if (IsOneOf(token, kBehindTables)) {
      lists_.back() = false;
    }
    const bool name = token.kind == Kind::kWord || token.kind == Kind::kQuotedName;
    if (name && IsBefore('(') && !IsOneOf(token, kBeforeParenthesis)) {
      Refuse("不允许使用函数：" + std::string(token.text));
    }
  }

  void CheckSymbol(const SqlToken& token) {
    if (IsSymbol(token, '(')) {
      // A list of tables in parentheses, or a select that says itself what it reads.
      lists_.push_back(expected_);
      const bool select =
          at_ + 1 < tokens_.size() && host::EqualNoCase(tokens_[at_ + 1].text, "select");
      if (select) expected_ = false;
    } else if (IsSymbol(token, ')')) {
      if (lists_.size() < 2 || expected_) Refuse("语句中的括号不成对");
      lists_.pop_back();
    } else if (expected_) {
      Refuse("语句中缺少表名");
    } else if (IsSymbol(token, ',')) {
      expected_ = lists_.back();
    }
  }

  void TakeTable(const SqlToken& token) {
    const std::string name = Unquoted(token);
    if (FindSchemaTable(name) == nullptr || IsBefore('.')) Refuse("不允许访问表：" + name);
    expected_ = false;
  }

  /// What a server may read in another way than we do.
  void CheckSpelling(const SqlToken& token) {
    const char first = token.text.front();
    const char last = token.text.back();
    bool odd = token.kind == Kind::kSymbol &&
               std::string_view("#{}\\@:&").find(first) != std::string_view::npos;
    odd = odd || (token.kind == Kind::kQuotedName && first != '"');
    odd = odd || ((token.kind == Kind::kWord || token.kind == Kind::kNumber) &&
                  token.text.find('$') != std::string_view::npos);
    const bool quoted = token.kind == Kind::kText || token.kind == Kind::kQuotedName;
    odd = odd || (quoted && (token.text.size() < 2 || last != first));
    // E'..', N'..', B'..': only plain texts mean the same everywhere.
    odd = odd || (quoted && at_ > 0 && tokens_[at_ - 1].kind == Kind::kWord &&
                  tokens_[at_ - 1].End() == token.start && tokens_[at_ - 1].text.size() == 1);
    if (odd) Refuse("语句中有不允许的写法：" + std::string(token.text));
  }

  [[nodiscard]] bool IsBefore(char symbol) const {
    return at_ + 1 < tokens_.size() && IsSymbol(tokens_[at_ + 1], symbol);
  }

  std::string_view sql_;
  std::vector<SqlToken> tokens_;
  std::size_t at_ = 0;
  bool expected_ = false;    ///< a table must come next
  std::vector<bool> lists_;  ///< for each open parenthesis, whether a comma leads to another table
};

}  // namespace

void CheckCallerTables(std::string_view sql) {
  TableCheck(sql).Run();
}

bool IsQuery(std::string_view sql) {
  const std::vector<SqlToken> tokens = SqlTokens(sql);
  return !tokens.empty() && host::EqualNoCase(tokens.front().text, "select");
}

}  // namespace desk::book
