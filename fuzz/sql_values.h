#pragma once

#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/non_copyable.h"
#include "input.h"

namespace tavrix::fuzz {

using Tokens = std::vector<std::string>;

/// Makes the values and conditions of statements, token by token. Texts and numbers are kept apart,
/// since a strict server plans nothing else.
class ValueMaker : private host::NonCopyable {
 protected:
  explicit ValueMaker(Input& input) : input_(input) {}
  ~ValueMaker() = default;

  enum class Kind { kNumber, kText };
  struct Column {
    std::string name;
    Kind kind = Kind::kNumber;
  };
  struct Source {
    std::string name;
    std::vector<Column> columns;
  };

  /// Any select.
  virtual void Query() = 0;
  /// One of a single column.
  virtual void Subselect(Kind kind) = 0;

  [[nodiscard]] Kind AnyKind() { return Chance(1) ? Kind::kText : Kind::kNumber; }

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

  void Condition() {
    ++depth_;
    if (Chance(6)) Put("not");
    if (Deeper() && Chance(4)) {
      Put({"exists", "("});
      Query();
      Put(")");
    } else {
      Comparison(AnyKind());
    }
    while (Deeper() && Chance(3)) {
      Put(Chance(1) ? "or" : "and");
      Comparison(AnyKind());
    }
    --depth_;
  }

  void Comparison(Kind kind) {
    static constexpr std::array<std::string_view, 6> kSigns = {"=", "<>", "<", ">", "<=", ">="};
    Value(kind);
    switch (input_.Number(5)) {
      case 0:
        if (kind != Kind::kText) return Put({"is", "not", "null"});
        if (Chance(1)) Put("not");
        Put("like");
        return Text();
      case 1:
        Put("between");
        Value(kind);
        Put("and");
        return Value(kind);
      case 2:
        return Put({"is", "null"});
      case 3:
        Put({"in", "("});
        if (Deeper() && Chance(1)) {
          Subselect(kind);
        } else {
          List(3, [&] { Value(kind); });
        }
        return Put(")");
      default:
        Put(Pick(kSigns));
        Value(kind);
    }
  }

  void Value(Kind kind) {
    ++depth_;
    static constexpr std::array<std::string_view, 4> kOperators = {"+", "-", "*", "/"};
    Simple(kind);
    while (Deeper() && Chance(5)) {
      Put(kind == Kind::kText ? "||" : Pick(kOperators));
      Simple(kind);
    }
    --depth_;
  }

  void Simple(Kind kind) {
    switch (Deeper() ? input_.Number(9) : 3 + input_.Number(2)) {
      case 0:
        return Call(kind);
      case 1:
        Put({"case", "when"});
        Condition();
        Put("then");
        Value(kind);
        Put("else");
        Literal(kind);
        return Put("end");
      case 2:
        Put("(");
        if (Chance(1)) {
          Subselect(kind);
        } else {
          Value(kind);
        }
        return Put(")");
      case 3:
        return Literal(kind);
      default:
        PutColumn(kind);
    }
  }

  /// A column of the kind, from some source on; a literal where there is none.
  void PutColumn(Kind kind) {
    const auto start = static_cast<std::size_t>(input_.Number(255));
    for (std::size_t step = 0; step < sources_.size(); ++step) {
      const Source& source = sources_[(start + step) % sources_.size()];
      std::vector<std::string> names;
      for (const Column& column : source.columns) {
        if (column.kind == kind) names.push_back(column.name);
      }
      if (names.empty()) continue;
      // Unqualified names may be those of several sources.
      if (sources_.size() > 1 || Chance(1)) {
        Put(source.name);
        Put(".");
      }
      return Put(names[static_cast<std::size_t>(input_.Number(255)) % names.size()]);
    }
    Literal(kind);
  }

  void Literal(Kind kind) { kind == Kind::kText ? Text() : Put(Chance(3) ? "null" : "2"); }

  void Text() {
    static constexpr std::array<std::string_view, 5> kTexts = {"''", "'1002%'", "'it''s; -- x'",
                                                               "'科目'", "'\\'"};
    Put(Pick(kTexts));
  }

  void Call(Kind kind) {
    static constexpr std::array<std::string_view, 4> kOfText = {"upper", "lower", "left",
                                                                "coalesce"};
    static constexpr std::array<std::string_view, 4> kOfNumber = {"abs", "round", "len",
                                                                  "coalesce"};
    const std::string name = kind == Kind::kText ? Pick(kOfText) : Pick(kOfNumber);
    Put(name);
    Put("(");
    Value(name == "len" ? Kind::kText : kind);
    if (name == "left" || name == "coalesce") {
      Put(",");
      Value(name == "left" ? Kind::kNumber : kind);
    }
    Put(")");
  }

  Input& input_;
  Tokens tokens_;
  std::vector<Source> sources_;  ///< what values may speak of
  int depth_ = 0;
};

}  // namespace tavrix::fuzz
