#include "book/sql/sql_guard.h"

#include <utility>

#include "book/sql/sql_expressions.h"
#include "book/sql/sql_words.h"

namespace desk::book {

namespace {

/// Reads one statement by recursive descent: one routine for each rule of the grammar. What a rule
/// does not expect is refused where it stands; names are judged when all that a select reads from
/// is known.
class Grammar final : private SqlExpressions {
 public:
  Grammar(std::string_view sql, const ColumnQuestion& question)
      : SqlExpressions(sql), question_(question) {}

  StatementKind Statement() {
    const bool query = Reader().IsWord("select");
    NameUses unknown;
    if (query) {
      (void)Query(unknown);
    } else if (Reader().TakeWord("insert")) {
      Insert(unknown);
    } else {
      Change(unknown);
    }
    if (!Reader().Ended()) Reader().RefuseNext();
    RefuseUnknown(unknown, Reader());
    return query ? StatementKind::kQuery : StatementKind::kChange;
  }

 private:
  void Close(const SqlScope& scope, NameUses& unknown) const {
    const NameUses rest = scope.Resolve(Reader(), question_);
    unknown.insert(unknown.end(), rest.begin(), rest.end());
  }

  // SELECT

  RowShape Query(NameUses& unknown) {
    const Level level(*this);
    SqlScope scope;
    const Inside inside(*this, scope);
    Select();
    while (TakeUnion()) {
      SqlScope other;
      {
        const Inside inside_other(*this, other);
        Select();
      }
      Close(other, unknown);
    }
    scope.MindOutputs();
    if (Reader().TakeWord("order")) Order();
    if (Reader().TakeWord("limit")) {
      Reader().ExpectNumber();
      if (Reader().TakeWord("offset")) Reader().ExpectNumber();
    }
    Close(scope, unknown);
    return scope.Result();
  }

  void AddSource(SqlScope& scope, std::string_view name, RowShape shape) {
    if (scope.AddSource(name, std::move(shape))) return;
    Reader().Refuse("语句中的表太多：", Reader().At() - 1);
  }

  bool TakeUnion() {
    const std::string_view word = Reader().TakeOneOf({"union", "except", "intersect"});
    if (word == "union") Reader().TakeWord("all");
    return !word.empty();
  }

  void Select() {
    Reader().ExpectWord("select");
    if (!Reader().TakeWord("distinct")) Reader().TakeWord("all");
    if (Reader().TakeWord("top")) Reader().ExpectNumber();
    List([this] { Output(); });
    if (Reader().TakeWord("from")) List([this] { Source(); });
    Where();
    Scope().MindOutputs();
    if (Reader().TakeWord("group")) {
      Reader().ExpectWord("by");
      List([this] { Expression(); });
    }
    if (Reader().TakeWord("having")) Expression();
  }

  void Order() {
    Reader().ExpectWord("by");
    List([this] {
      Expression();
      (void)Reader().TakeOneOf({"asc", "desc"});
    });
  }

  void Where() {
    if (Reader().TakeWord("where")) Expression();
  }

  void Output() {
    NameUse output;
    const std::size_t at = Reader().At();
    if (Reader().TakeSymbol("*")) {
      output = {.qualifier = {}, .name = "*", .at = at};
      Scope().Use(output);
    } else if (Reader().IsName() && Reader().IsSymbol(".", 1) && Reader().IsSymbol("*", 2)) {
      output = {.qualifier = Reader().ExpectName(), .name = "*", .at = at};
      Reader().ExpectSymbol(".");
      Reader().ExpectSymbol("*");
      Scope().Use(output);
    } else {
      output.name = OutputValue();
    }
    const std::string_view alias = output.name == "*" ? std::string_view() : ColumnAlias();
    if (!alias.empty()) output.name = alias;
    if (!output.name.empty()) Scope().AddOutput(output);
  }

  /// The column's name when the value is nothing but a column.
  std::string_view OutputValue() {
    const std::size_t first = Reader().At();
    Expression();
    const NameUse& name = LastName();
    const std::size_t tokens = name.qualifier.empty() ? 1 : 3;
    const bool plain = name.at == first && Reader().At() == first + tokens;
    return plain ? name.name : std::string_view();
  }

  void Source() {
    const Level level(*this);
    JoinedSource();
    while (true) {
      const bool cross = Reader().IsWord("cross");
      if (!TakeJoin()) return;
      JoinedSource();
      if (cross) continue;
      Reader().ExpectWord("on");
      Expression();
    }
  }

  bool TakeJoin() {
    const std::string_view kind = Reader().TakeOneOf({"inner", "left", "right", "full", "cross"});
    if (kind == "left" || kind == "right" || kind == "full") Reader().TakeWord("outer");
    if (kind.empty()) return Reader().TakeWord("join");
    Reader().ExpectWord("join");
    return true;
  }

  void JoinedSource() {
    if (!Reader().TakeSymbol("(")) {
      const std::string_view name = Reader().NextText();
      const Table& table = ExpectTable();
      RowShape shape;
      shape.Add(table);
      const std::string_view alias = Alias();
      return AddSource(Scope(), alias.empty() ? name : alias, std::move(shape));
    }
    if (!Reader().IsWord("select")) {
      Source();
      return Reader().ExpectSymbol(")");
    }
    NameUses unknown;
    RowShape shape = Query(unknown);
    RefuseUnknown(unknown, Reader());  // it cannot see what stands beside it
    Reader().ExpectSymbol(")");
    const std::string_view alias = Alias();
    if (alias.empty()) Reader().RefuseNext();
    AddSource(Scope(), alias, std::move(shape));
  }

  /// Without "as", PostgreSQL takes the parts of a date for a type.
  std::string_view ColumnAlias() {
    for (const std::string_view part : {"year", "month", "day", "hour", "minute", "second"}) {
      if (Reader().IsWord(part)) return {};
    }
    return Alias();
  }

  std::string_view Alias() {
    if (Reader().TakeWord("as")) return ExpectAlias();
    if (!Reader().IsName() || IsSqlWord(Reader().NextText())) return {};
    return Reader().ExpectName();
  }

  std::string_view ExpectAlias() {
    const std::size_t at = Reader().At();
    const std::string_view name = Reader().ExpectName();
    if (IsSqlWord(name)) Reader().Refuse("别名不能是 SQL 的词：", at);
    return name;
  }

  // INSERT, UPDATE, DELETE

  void Insert(NameUses& unknown) {
    Reader().ExpectWord("into");
    RowShape shape;
    shape.Add(ExpectTable());
    if (Reader().TakeSymbol("(")) {
      List([&] { ExpectColumn(shape); });
      Reader().ExpectSymbol(")");
    }
    if (!Reader().TakeWord("values")) return (void)Query(unknown);
    SqlScope nothing;
    {
      const Inside inside(*this, nothing);
      List([this] {
        Reader().ExpectSymbol("(");
        List([this] { Expression(); });
        Reader().ExpectSymbol(")");
      });
    }
    Close(nothing, unknown);
  }

  void Change(NameUses& unknown) {
    const bool update = Reader().TakeWord("update");
    if (!update) {
      Reader().ExpectWord("delete");
      Reader().ExpectWord("from");
    }
    std::string_view name = Reader().NextText();
    RowShape shape;
    shape.Add(ExpectTable());
    if (update && Reader().TakeWord("as")) name = ExpectAlias();
    SqlScope scope;
    AddSource(scope, name, shape);
    {
      const Inside inside(*this, scope);
      if (update) Set(shape);
      Where();
    }
    Close(scope, unknown);
  }

  void Set(const RowShape& shape) {
    Reader().ExpectWord("set");
    List([&] {
      ExpectColumn(shape);
      Reader().ExpectSymbol("=");
      Expression();
    });
  }

  void ExpectColumn(const RowShape& shape) {
    const std::size_t at = Reader().At();
    const std::string_view name = Reader().ExpectName();
    if (!shape.Has(name, question_))
      RefuseUnknown({{.qualifier = {}, .name = name, .at = at}}, Reader());
  }

  const Table& ExpectTable() {
    const std::size_t at = Reader().At();
    const Table* table = FindSchemaTable(Reader().ExpectName());
    if (table == nullptr) Reader().Refuse("不允许访问表：", at);
    return *table;
  }

  /// Its names may come from what stands around it.
  void Subselect() override {
    NameUses unknown;
    (void)Query(unknown);
    for (const NameUse& use : unknown) Scope().Use(use);
  }

  const ColumnQuestion& question_;
};

}  // namespace

StatementKind CheckCallerStatement(std::string_view sql, const ColumnQuestion& question) {
  return Grammar(sql, question).Statement();
}

StatementKind StatementGuard::Check(std::string_view sql) {
  // Nobody knows what an unknown server makes of a backslash in a text.
  if (connection_.Dialect() == SqlDialect::kOther && sql.find('\\') != std::string_view::npos) {
    throw DatabaseError(ErrorKind::kRefused, "语句中有不允许的写法：\\");
  }
  unknown_.clear();
  return CheckCallerStatement(sql, [this](std::string_view table, std::string_view column) {
    return HasColumn(table, column);
  });
}

bool StatementGuard::HasColumn(std::string_view table, std::string_view column) {
  std::string name(table);
  name.append(".").append(column);
  if (known_.contains(name)) return true;
  // Each question may be one to a server: a statement that needs so many means nothing.
  constexpr std::size_t kMaxUnknown = 256;
  if (unknown_.contains(name) || unknown_.size() >= kMaxUnknown) return false;
  const bool known = connection_.HasColumn(table, column);
  (known ? known_ : unknown_).insert(std::move(name));
  return known;
}

}  // namespace desk::book
