#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "book/schema.h"
#include "input.h"

namespace tavrix::fuzz {

using Tokens = std::vector<std::string>;

/// Makes statements that callers may send, as an input says, token by token.
class StatementMaker {
 public:
  explicit StatementMaker(Input& input) : input_(input) {}

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
        Query(false);
    }
    return tokens_;
  }

 private:
  struct Source {
    std::string name;
    std::vector<std::string> columns;
  };

  template <std::size_t size>
  std::string Pick(const std::array<std::string_view, size>& list) {
    return std::string(list[static_cast<std::size_t>(input_.Number(static_cast<int>(size) - 1))]);
  }
  [[nodiscard]] bool Chance(int of) { return !input_.Ended() && input_.Number(of) == 0; }
  /// Whether a rule may go on into others: what is left of the input, and depth, bound it.
  [[nodiscard]] bool Deeper() const { return !input_.Ended() && depth_ < 8; }
  void Put(std::string token) { tokens_.push_back(std::move(token)); }
  void Put(std::initializer_list<const char*> tokens) {
    tokens_.insert(tokens_.end(), tokens.begin(), tokens.end());
  }
  template <class Item>
  void List(int most, const Item& item) {
    item();
    for (int more = input_.Number(most - 1); more > 0; --more) {
      Put(",");
      item();
    }
  }

  Source PutTable() {
    const auto tables = desk::book::SchemaTables();
    const auto& table = tables[static_cast<std::size_t>(input_.Number(7)) % tables.size()];
    Source source{.name = std::string(table.name), .columns = {}};
    for (const auto& column : table.columns) source.columns.emplace_back(column.name);
    Put(source.name);
    return source;
  }

  std::string NewName() {
    static constexpr std::array<std::string_view, 6> kNames = {"t",    "x",    "name",
                                                               "科目", "date", "total"};
    return Pick(kNames) + std::to_string(++names_);
  }

  void Query(bool one_column) {
    ++depth_;
    const std::vector<Source> outer = sources_;
    Select(one_column);
    const std::vector<std::string> outputs = outputs_;
    bool joined = false;
    while (one_column && Deeper() && Chance(6)) {
      joined = true;
      static constexpr std::array<std::string_view, 3> kUnions = {"union", "except", "intersect"};
      Put(Pick(kUnions));
      sources_ = outer;
      Select(true);
    }
    if (Chance(4)) {
      Put({"order", "by"});
      List(2, [&] {
        joined ? Put("1") : Value();
        if (Chance(2)) Put(Chance(1) ? "desc" : "asc");
      });
    }
    if (Chance(6)) Put({"limit", "3"});
    sources_ = outer;
    outputs_ = outputs;
    --depth_;
  }

  void Select(bool one_column) {
    Put("select");
    if (Chance(6)) Put("distinct");
    Tokens before;
    before.swap(tokens_);
    const bool from = one_column || !Chance(8);
    if (from) {
      Put("from");
      List(2, [this] { Joined(); });
    }
    before.swap(tokens_);
    outputs_.clear();
    std::vector<std::string> outputs;
    if (!one_column && from && Chance(3)) {
      Put("*");
    } else {
      for (int column = one_column ? 0 : input_.Number(2); column >= 0; --column) {
        Value();
        if (Chance(1)) {
          outputs.push_back(NewName());
          Put("as");
          Put(outputs.back());
        }
        if (column > 0) Put(",");
      }
    }
    tokens_.insert(tokens_.end(), before.begin(), before.end());
    Where();
    if (from && Chance(5)) {
      Put({"group", "by"});
      List(2, [this] { Value(); });
      if (Chance(2)) {
        Put("having");
        Condition();
      }
    }
    outputs_ = outputs;
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
      Query(false);
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
    Put("(");
    const int columns = 1 + input_.Number(2);
    for (int i = 0; i < columns; ++i) {
      if (i > 0) Put(",");
      Put(table.columns[static_cast<std::size_t>(i) % table.columns.size()]);
    }
    Put(")");
    if (columns == 1 && Chance(1)) return Query(true);
    Put("values");
    List(2, [&] {
      Put("(");
      for (int i = 0; i < columns; ++i) {
        if (i > 0) Put(",");
        Value();
      }
      Put(")");
    });
  }

  void Update() {
    Put("update");
    sources_.push_back(PutTable());
    Put("set");
    List(3, [this] {
      Put(AnyOf(sources_.front().columns));
      Put("=");
      Value();
    });
    Where();
  }

  void Where() {
    if (!Chance(1)) return;
    Put("where");
    Condition();
  }

  const std::string& AnyOf(const std::vector<std::string>& list) {
    return list[static_cast<std::size_t>(input_.Number(static_cast<int>(list.size()) - 1))];
  }

  void Condition() {
    ++depth_;
    if (Chance(6)) Put("not");
    if (Deeper() && Chance(4)) {
      Put({"exists", "("});
      Query(false);
      Put(")");
    } else {
      Value();
      Comparison();
    }
    while (Deeper() && Chance(3)) {
      Put(Chance(1) ? "or" : "and");
      Value();
      Comparison();
    }
    --depth_;
  }

  void Comparison() {
    static constexpr std::array<std::string_view, 6> kSigns = {"=", "<>", "<", ">", "<=", ">="};
    switch (input_.Number(5)) {
      case 0:
        if (Chance(1)) Put("not");
        Put("like");
        return Text();
      case 1:
        Put("between");
        Value();
        Put("and");
        return Value();
      case 2:
        Put("is");
        if (Chance(1)) Put("not");
        return Put("null");
      case 3:
        Put({"in", "("});
        if (Deeper() && Chance(1)) {
          Query(true);
        } else {
          List(3, [this] { Value(); });
        }
        return Put(")");
      default:
        Put(Pick(kSigns));
        Value();
    }
  }

  void Value() {
    ++depth_;
    static constexpr std::array<std::string_view, 5> kOperators = {"+", "-", "*", "/", "||"};
    Simple();
    while (Deeper() && Chance(5)) {
      Put(Pick(kOperators));
      Simple();
    }
    --depth_;
  }

  void Simple() {
    const int kind = Deeper() ? input_.Number(9) : 3 + input_.Number(3);
    if (kind == 0) return Call();
    if (kind == 1) {
      Put({"case", "when"});
      Condition();
      Put("then");
      Value();
      Put({"else", "0", "end"});
      return;
    }
    if (kind == 2) {
      Put("(");
      if (Chance(1)) {
        Query(true);
      } else {
        Value();
      }
      return Put(")");
    }
    if (kind == 3) return Text();
    if (kind == 4) return Put(Chance(2) ? "null" : "1.5");
    Column();
  }

  void Column() {
    if (sources_.empty()) return Put("7");
    const Source& source =
        sources_[static_cast<std::size_t>(input_.Number(static_cast<int>(sources_.size()) - 1))];
    if (source.columns.empty()) return Put("8");
    if (Chance(1)) {
      Put(source.name);
      Put(".");
    }
    Put(AnyOf(source.columns));
  }

  void Text() {
    static constexpr std::array<std::string_view, 5> kTexts = {"''", "'1002%'", "'it''s; -- x'",
                                                               "'科目'", "'\\'"};
    Put(Pick(kTexts));
  }

  void Call() {
    static constexpr std::array<std::string_view, 9> kOfOne = {
        "count", "max", "min", "sum", "avg", "len", "abs", "upper", "lower"};
    static constexpr std::array<std::string_view, 3> kOfTwo = {"left", "coalesce", "round"};
    const bool two = Chance(3);
    Put(two ? Pick(kOfTwo) : Pick(kOfOne));
    Put("(");
    Value();
    if (two) {
      Put(",");
      Value();
    }
    Put(")");
  }

  Input& input_;
  Tokens tokens_;
  std::vector<Source> sources_;
  std::vector<std::string> outputs_;  ///< names in the result of the select that was made last
  int depth_ = 0;
  int names_ = 0;
};

}  // namespace tavrix::fuzz
