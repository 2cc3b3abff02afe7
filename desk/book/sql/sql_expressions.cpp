#include "book/sql/sql_expressions.h"

#include <algorithm>
#include <array>

#include "book/sql/sql_words.h"

namespace desk::book {

namespace {

struct Function {
  std::string_view name;
  int least;
  int most;
  bool aggregate = false;  ///< takes "distinct"
};

constexpr std::array<Function, 13> kFunctions = {{{"count", 1, 1, true},
                                                  {"max", 1, 1, true},
                                                  {"min", 1, 1, true},
                                                  {"sum", 1, 1, true},
                                                  {"avg", 1, 1, true},
                                                  {"len", 1, 1},
                                                  {"left", 2, 2},
                                                  {"iif", 3, 3},
                                                  {"coalesce", 2, 20},
                                                  {"abs", 1, 1},
                                                  {"round", 1, 2},
                                                  {"upper", 1, 1},
                                                  {"lower", 1, 1}}};

}  // namespace

SqlExpressions::Level::Level(SqlExpressions& rules) : depth_(rules.depth_) {
  constexpr int kMax = 50;
  if (depth_ >= kMax) rules.reader_.Refuse("语句嵌套太深：", rules.reader_.At() - 1);
  ++depth_;
}

void SqlExpressions::Expression() {
  const Level level(*this);
  do Condition();
  while (!reader_.TakeOneOf({"and", "or"}).empty());
}

void SqlExpressions::Condition() {
  while (reader_.TakeWord("not")) {
  }
  if (reader_.TakeWord("exists")) {
    reader_.ExpectSymbol("(");
    Subselect();
    return reader_.ExpectSymbol(")");
  }
  Sum();
  Comparison();
}

void SqlExpressions::Comparison() {
  for (const std::string_view sign : {"=", "<>", "<=", ">=", "<", ">"}) {
    if (reader_.TakeSymbol(sign)) return Sum();
  }
  if (reader_.TakeWord("is")) {
    reader_.TakeWord("not");
    return reader_.ExpectWord("null");
  }
  const bool negated = reader_.TakeWord("not");
  const std::string_view word = reader_.TakeOneOf({"like", "between", "in"});
  if (word == "in") return In();
  if (word.empty() && negated) reader_.RefuseNext();
  if (word.empty()) return;
  Sum();
  if (word == "between") {
    reader_.ExpectWord("and");
    Sum();
  } else if (reader_.TakeWord("escape") && !reader_.TakeText()) {
    reader_.RefuseNext();
  }
}

void SqlExpressions::In() {
  reader_.ExpectSymbol("(");
  if (reader_.IsWord("select")) {
    Subselect();
  } else {
    List([this] { Expression(); });
  }
  reader_.ExpectSymbol(")");
}

/// Operators between values; which binds tighter is the server's affair.
void SqlExpressions::Sum() {
  Value();
  while (reader_.TakeSymbol("+") || reader_.TakeSymbol("-") || reader_.TakeSymbol("*") ||
         reader_.TakeSymbol("/") || reader_.TakeSymbol("||")) {
    Value();
  }
}

void SqlExpressions::Value() {
  while (reader_.TakeSymbol("-") || reader_.TakeSymbol("+")) {
  }
  if (reader_.TakeText() || reader_.TakeNumber()) return;
  if (reader_.TakeSymbol("(")) {
    if (reader_.IsWord("select")) {
      Subselect();
    } else {
      Expression();
    }
    return reader_.ExpectSymbol(")");
  }
  if (!reader_.TakeOneOf({"null", "true", "false"}).empty()) return;
  if (reader_.TakeWord("case")) return Case();
  if (reader_.IsSymbol("(", 1)) return Call();
  Name();
}

void SqlExpressions::Case() {
  if (!reader_.IsWord("when")) Expression();
  do {
    reader_.ExpectWord("when");
    Expression();
    reader_.ExpectWord("then");
    Expression();
  } while (reader_.IsWord("when"));
  if (reader_.TakeWord("else")) Expression();
  reader_.ExpectWord("end");
}

void SqlExpressions::Call() {
  const std::size_t at = reader_.At();
  const std::string_view name = reader_.ExpectName();
  const auto* const function = std::ranges::find_if(
      kFunctions, [&](const Function& known) { return IsSameName(known.name, name); });
  if (function == kFunctions.end()) reader_.Refuse("不允许使用函数：", at);
  reader_.ExpectSymbol("(");
  int arguments = 1;
  if (function->name != "count" || !reader_.TakeSymbol("*")) {
    if (function->aggregate) reader_.TakeWord("distinct");
    arguments = List([this] { Expression(); });
  }
  reader_.ExpectSymbol(")");
  const bool fits = arguments >= function->least && arguments <= function->most;
  if (!fits) reader_.Refuse("函数的参数个数不对：", at);
}

void SqlExpressions::Name() {
  if (!reader_.IsName() || IsSqlWord(reader_.NextText())) reader_.RefuseNext();
  NameUse use = {.qualifier = {}, .name = {}, .at = reader_.At()};
  use.name = reader_.ExpectName();
  if (reader_.TakeSymbol(".")) {
    use.qualifier = use.name;
    use.name = reader_.ExpectName();
  }
  scope_->Use(use);
  last_name_ = use;
}

}  // namespace desk::book
