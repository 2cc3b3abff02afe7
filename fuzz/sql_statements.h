#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "book/database/tables.h"
#include "sql_values.h"

namespace tavrix::fuzz {

/// Makes statements that callers may send, as an input says, token by token.
class StatementMaker final : private ValueMaker {
 public:
  explicit StatementMaker(Input& input) : ValueMaker(input) {}

  [[nodiscard]] Tokens Make() {
    switch (input_.Number(5)) {
      case 0:
        Insert();
        break;
      case 1:
        Update();
        break;
      case 2:
        Put({"delete", "from"});
        sources_.push_back(PutTable());
        Where();
        break;
      default:
        Query();
    }
    return tokens_;
  }

 private:
  [[nodiscard]] static Kind KindOf(const desk::book::Column& column) {
    using enum desk::book::ColumnKind;
    const bool text = column.kind == kText || column.kind == kCode || column.kind == kKeyText;
    return text ? Kind::kText : Kind::kNumber;
  }
  Source PutTable() {
    const auto tables = desk::book::SchemaTables();
    const auto& table = tables[static_cast<std::size_t>(input_.Number(7)) % tables.size()];
    Source source{.name = std::string(table.name), .columns = {}};
    for (const auto& column : table.columns) {
      source.columns.push_back({std::string(column.name), KindOf(column)});
    }
    Put(source.name);
    return source;
  }

  std::string NewName() {
    static constexpr std::array<std::string_view, 6> kNames = {"t",    "x",    "name",
                                                               "科目", "date", "total"};
    return Pick(kNames) + std::to_string(++names_);
  }

  void Query() override {
    ++depth_;
    const std::vector<Source> outer = sources_;
    const bool ordered = Select();
    const std::vector<Column> outputs = outputs_;
    if (ordered) Order([this] { Value(AnyKind()); });
    Finish(outer);
    outputs_ = outputs;
  }

  /// A select of one column of a kind.
  void Subselect(Kind kind) override {
    ++depth_;
    const std::vector<Source> outer = sources_;
    SelectOne(kind);
    while (Deeper() && Chance(6)) {
      static constexpr std::array<std::string_view, 3> kUnions = {"union", "except", "intersect"};
      Put(Pick(kUnions));
      sources_ = outer;
      SelectOne(kind);
    }
    Order([this] { Put("1"); });
    Finish(outer);
  }

  template <class Item>
  void Order(const Item& item) {
    if (!Chance(4)) return;
    Put({"order", "by"});
    item();
    if (Chance(2)) Put(Chance(1) ? "desc" : "asc");
  }

  void Finish(const std::vector<Source>& outer) {
    if (Chance(6)) Put({"limit", "3"});
    sources_ = outer;
    --depth_;
  }

  /// Makes what stands behind "from" first, since the values before it speak of that.
  Tokens From() {
    Tokens before;
    before.swap(tokens_);
    Put("from");
    List(2, [this] { Joined(); });
    before.swap(tokens_);
    return before;
  }
  void Append(const Tokens& tokens) { tokens_.insert(tokens_.end(), tokens.begin(), tokens.end()); }

  void SelectOne(Kind kind) {
    Put("select");
    if (Chance(6)) Put("distinct");
    const Tokens from = From();
    Value(kind);
    Append(from);
    Where();
  }

  /// Whether the rows may be put in the order of anything.
  bool Select() {
    Put("select");
    if (Chance(4)) {
      Aggregated();
      return false;
    }
    const bool distinct = Chance(6);
    if (distinct) Put("distinct");
    const Tokens from = From();
    std::vector<Column> outputs;
    if (Chance(3)) {
      Put("*");
    } else {
      List(3, [&] {
        const Kind kind = AnyKind();
        Value(kind);
        if (Chance(1)) outputs.push_back({PutAlias(), kind});
      });
    }
    Append(from);
    Where();
    outputs_ = outputs;
    return !distinct;
  }

  void Aggregated() {
    const Tokens from = From();
    std::vector<Column> outputs;
    List(2, [&] {
      Aggregate();
      if (Chance(1)) outputs.push_back({PutAlias(), Kind::kNumber});
    });
    Append(from);
    Where();
    if (Chance(1)) {
      Put({"group", "by"});
      PutColumn(AnyKind());
    }
    if (Chance(2)) {
      Put("having");
      Aggregate();
      Put({">", "1"});
    }
    outputs_ = outputs;
  }

  void Aggregate() {
    static constexpr std::array<std::string_view, 5> kAggregates = {"count", "max", "min", "sum",
                                                                    "avg"};
    Put(Pick(kAggregates));
    Put("(");
    if (Chance(5)) Put("distinct");
    Value(Kind::kNumber);
    Put(")");
  }

  std::string PutAlias() {
    Put("as");
    Put(NewName());
    return tokens_.back();
  }

  void Joined() {
    PutSource();
    while (Deeper() && Chance(3)) {
      static constexpr std::array<std::string_view, 4> kJoins = {"join", "left join", "inner join",
                                                                 "cross join"};
      const std::string join = Pick(kJoins);
      for (std::size_t at = 0; at <= join.size();) {
        const std::size_t end = std::min(join.find(' ', at), join.size());
        Put(join.substr(at, end - at));
        at = end + 1;
      }
      PutSource();
      if (join == "cross join") continue;
      Put("on");
      Condition();
    }
  }

  void PutSource() {
    Source source;
    if (Deeper() && Chance(4)) {
      std::vector<Source> around;
      around.swap(sources_);
      Put("(");
      Query();
      Put(")");
      around.swap(sources_);
      source.columns = outputs_;
    } else {
      source = PutTable();
      if (Chance(1)) return sources_.push_back(source);
    }
    if (Chance(1)) Put("as");
    source.name = NewName();
    Put(source.name);
    sources_.push_back(source);
  }

  void Insert() {
    Put({"insert", "into"});
    const Source table = PutTable();
    const std::size_t columns =
        std::min(table.columns.size(), 1 + static_cast<std::size_t>(input_.Number(2)));
    Put("(");
    for (std::size_t i = 0; i < columns; ++i) {
      if (i > 0) Put(",");
      Put(table.columns[i].name);
    }
    Put(")");
    if (columns == 1 && Chance(1)) return Subselect(table.columns[0].kind);
    Put("values");
    List(2, [&] {
      Put("(");
      for (std::size_t i = 0; i < columns; ++i) {
        if (i > 0) Put(",");
        Value(table.columns[i].kind);
      }
      Put(")");
    });
  }

  void Update() {
    Put("update");
    sources_.push_back(PutTable());
    Put("set");
    const std::vector<Column> columns = sources_.front().columns;
    const auto first = static_cast<std::size_t>(input_.Number(255)) % columns.size();
    const auto count = 1 + static_cast<std::size_t>(input_.Number(2));
    for (std::size_t i = first; i < std::min(columns.size(), first + count); ++i) {
      if (i > first) Put(",");
      Put(columns[i].name);
      Put("=");
      Value(columns[i].kind);
    }
    Where();
  }

  void Where() {
    if (!Chance(1)) return;
    Put("where");
    Condition();
  }

  std::vector<Column> outputs_;  ///< names in the result of the select that was made last
  int names_ = 0;
};

}  // namespace tavrix::fuzz
