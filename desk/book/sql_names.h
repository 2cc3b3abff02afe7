#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string_view>
#include <vector>

#include "book/schema.h"
#include "book/sql_reader.h"

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

/// The columns of a table, or of a subselect.
class RowShape {
 public:
  void Add(std::string_view column) { names_.push_back(column); }
  void Add(const Table& table) { tables_.push_back(&table); }
  void Add(const RowShape& other);
  [[nodiscard]] bool Knows(std::string_view column) const;
  [[nodiscard]] bool Has(std::string_view column, const ColumnQuestion& question) const;

 private:
  std::vector<std::string_view> names_;
  std::vector<const Table*> tables_;
};

/// What one select, or one change of a table, reads from, and the names that it uses.
class SqlScope {
 public:
  void AddSource(std::string_view name, RowShape shape);
  /// A column of the result: a name of its own, a column, or all columns of one or every source.
  void AddOutput(const NameUse& output) { outputs_.push_back(output); }
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
  NameUses outputs_;
  NameUses uses_;
  std::size_t first_minding_ = static_cast<std::size_t>(-1);
};

/// Refuses the first of `uses`, when there is one, as a name that means nothing.
void RefuseUnknown(const NameUses& uses, const SqlReader& reader);

}  // namespace desk::book
