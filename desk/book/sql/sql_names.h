#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <set>
#include <string_view>
#include <vector>

#include "book/database/tables.h"
#include "book/sql/sql_reader.h"

/// Which names of a caller's statement mean something that callers may use.
namespace desk::book {

/// Whether the connected database has a column in a table of the schema that the schema does not
/// know; asked for such columns alone.
using ColumnQuestion = std::function<bool(std::string_view table, std::string_view column)>;

/// A column's name as a statement uses it.
struct NameUse {
  std::string_view qualifier;  ///< empty when none is written
  std::string_view name;       ///< "*" for all columns
  std::size_t at = 0;          ///< the token that a refusal names
};
using NameUses = std::vector<NameUse>;

/// Names without regard to case.
struct NameOrder {
  [[nodiscard]] bool operator()(std::string_view left, std::string_view right) const;
};
using NameSet = std::set<std::string_view, NameOrder>;

/// The columns of a table, or of a subselect; however often it names them, each is kept once.
class RowShape {
 public:
  void Add(std::string_view column) { names_.insert(column); }
  void Add(const Table& table) { tables_.insert(&table); }
  void Add(const RowShape& other);
  [[nodiscard]] bool Knows(std::string_view column) const;
  [[nodiscard]] bool Has(std::string_view column, const ColumnQuestion& question) const;

 private:
  NameSet names_;
  std::set<const Table*> tables_;
};

/// What one select, or one change of a table, reads from, and the names that it uses.
class SqlScope {
 public:
  /// Gives whether there is room for another one.
  [[nodiscard]] bool AddSource(std::string_view name, RowShape shape);
  /// A column of the result: a name of its own, a column, or all columns of one or every source.
  void AddOutput(const NameUse& output);
  void Use(const NameUse& use) { uses_.push_back(use); }

  /// What is used from here on may also be a column of the result, by its name.
  void MindOutputs() { first_minding_ = std::min(first_minding_, uses_.size()); }

  /// Judges all names used. What no source of this scope can explain comes back: an enclosing scope
  /// may. A column that its table does not have is refused.
  [[nodiscard]] NameUses Resolve(const SqlReader& reader, const ColumnQuestion& question) const;
  [[nodiscard]] RowShape Result() const;

 private:
  struct Source {
    std::string_view name;
    RowShape shape;
  };
  [[nodiscard]] const Source* Find(std::string_view name) const;
  [[nodiscard]] bool Explains(const NameUse& use, bool outputs, const SqlReader& reader,
                              const ColumnQuestion& question) const;

  std::vector<Source> sources_;
  RowShape all_;  ///< of all of them
  NameSet outputs_;
  NameSet whole_;  ///< sources all of whose columns are in the result; "": those of every one
  NameUses uses_;
  std::size_t first_minding_ = static_cast<std::size_t>(-1);
};

/// Refuses the first of `uses`, when there is one, as a name that means nothing.
void RefuseUnknown(const NameUses& uses, const SqlReader& reader);

}  // namespace desk::book
