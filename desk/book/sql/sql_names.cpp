#include "book/sql/sql_names.h"

#include <algorithm>
#include <utility>

#include "book/sql/sql_words.h"

namespace desk::book {

namespace {

constexpr std::string_view kAll = "*";

bool IsColumn(const Table& table, std::string_view name) {
  return std::ranges::any_of(table.columns,
                             [&](const Column& column) { return IsSameName(column.name, name); });
}

}  // namespace

bool NameOrder::operator()(std::string_view left, std::string_view right) const {
  return IsNameBefore(left, right);
}

void RowShape::Add(const RowShape& other) {
  names_.insert(other.names_.begin(), other.names_.end());
  tables_.insert(other.tables_.begin(), other.tables_.end());
}

bool RowShape::Knows(std::string_view column) const {
  return names_.contains(column) ||
         std::ranges::any_of(tables_, [&](auto* table) { return IsColumn(*table, column); });
}

bool RowShape::Has(std::string_view column, const ColumnQuestion& question) const {
  if (Knows(column)) return true;
  // A word of the language would not be read as a column.
  if (IsSqlWord(column) || !question) return false;
  return std::ranges::any_of(tables_, [&](auto* table) { return question(table->name, column); });
}

bool SqlScope::AddSource(std::string_view name, RowShape shape) {
  constexpr std::size_t kMax = 64;  // SQLite joins no more
  if (sources_.size() >= kMax) return false;
  all_.Add(shape);
  sources_.push_back({name, std::move(shape)});
  return true;
}

void SqlScope::AddOutput(const NameUse& output) {
  if (output.name == kAll) {
    whole_.insert(output.qualifier);
  } else {
    outputs_.insert(output.name);
  }
}

const SqlScope::Source* SqlScope::Find(std::string_view name) const {
  const auto found = std::ranges::find_if(
      sources_, [&](const Source& source) { return IsSameName(source.name, name); });
  return found == sources_.end() ? nullptr : &*found;
}

bool SqlScope::Explains(const NameUse& use, bool outputs, const SqlReader& reader,
                        const ColumnQuestion& question) const {
  if (!use.qualifier.empty()) {
    const Source* source = Find(use.qualifier);
    if (source == nullptr) return false;
    if (use.name != kAll && !source->shape.Has(use.name, question)) RefuseUnknown({use}, reader);
    return true;
  }
  if (use.name == kAll) return !sources_.empty();
  if (outputs && outputs_.contains(use.name)) return true;
  return all_.Has(use.name, question);
}

NameUses SqlScope::Resolve(const SqlReader& reader, const ColumnQuestion& question) const {
  NameUses unknown;
  for (std::size_t i = 0; i < uses_.size(); ++i) {
    if (!Explains(uses_[i], i >= first_minding_, reader, question)) unknown.push_back(uses_[i]);
  }
  return unknown;
}

RowShape SqlScope::Result() const {
  RowShape result;
  for (const std::string_view name : outputs_) result.Add(name);
  for (const Source& source : sources_) {
    const bool wanted = whole_.contains("") || whole_.contains(source.name);
    if (wanted) result.Add(source.shape);
  }
  return result;
}

void RefuseUnknown(const NameUses& uses, const SqlReader& reader) {
  if (uses.empty()) return;
  const NameUse& use = uses.front();
  if (use.qualifier.empty()) reader.Refuse("没有这个列：", use.at);
  reader.Refuse("没有这个列，或没有它前面的表：", use.at);
}

}  // namespace desk::book
