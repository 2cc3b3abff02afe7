#pragma once

#include "book/sql/sql_names.h"
#include "book/sql/sql_reader.h"
#include "host/non_copyable.h"

namespace desk::book {

/// Reads the values and conditions of a caller's statement by recursive descent, one routine for
/// each rule. What a rule does not expect is refused where it stands; the names go to the scope
/// that is being read.
class SqlExpressions : private tavrix::host::NonCopyable {
 protected:
  explicit SqlExpressions(std::string_view sql) : reader_(sql) {}
  ~SqlExpressions() = default;

  /// Reads a select that stands in parentheses, without them.
  virtual void Subselect() = 0;

  void Expression();

  template <class Item>
  int List(const Item& item) {
    int count = 0;
    do {
      item();
      ++count;
    } while (reader_.TakeSymbol(","));
    return count;
  }

  /// Counts how deep rules stand in one another, for the sake of the stack: ours and the server's.
  class Level : private tavrix::host::NonCopyable {
   public:
    explicit Level(SqlExpressions& rules);
    ~Level() { --depth_; }

   private:
    int& depth_;
  };

  /// Makes `scope` the one that the names being read belong to.
  class Inside : private tavrix::host::NonCopyable {
   public:
    Inside(SqlExpressions& rules, SqlScope& scope) : rules_(rules), outer_(rules.scope_) {
      rules_.scope_ = &scope;
    }
    ~Inside() { rules_.scope_ = outer_; }

   private:
    SqlExpressions& rules_;
    SqlScope* outer_;
  };

  [[nodiscard]] SqlReader& Reader() { return reader_; }
  [[nodiscard]] const SqlReader& Reader() const { return reader_; }
  [[nodiscard]] SqlScope& Scope() { return *scope_; }
  /// The column that was read last, in whatever expression.
  [[nodiscard]] const NameUse& LastName() const { return last_name_; }

 private:
  void Condition();
  void Comparison();
  void In();
  void Sum();
  void Value();
  void Case();
  void Call();
  void Name();

  SqlReader reader_;
  SqlScope* scope_ = nullptr;
  NameUse last_name_;
  int depth_ = 0;
};

}  // namespace desk::book
