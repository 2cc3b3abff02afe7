#pragma once

#include <string>

#include "book/book.h"
#include "book/exchange/column_match.h"
#include "book/exchange/csv.h"
#include "book/exchange/import_chart.h"
#include "book/exchange/text_encoding.h"

/// Imports of texts in tests.
namespace desk::book {

/// A file as it is read when nobody says otherwise.
struct Source {
  SourceTable table;
  ImportOptions options;
};

[[nodiscard]] inline Source Read(const std::string& bytes) {
  const std::string text = Decoded(bytes, FindEncoding(bytes));
  Source source{.table = ReadCsv(text, FindSeparator(text)), .options = {}};
  source.options.header = FindHeader(source.table);
  source.options.columns = source.options.header
                               ? MatchHeader(HeaderAt(source.table, *source.options.header))
                               : GuessColumns(source.table);
  return source;
}

[[nodiscard]] inline ImportPlan PlanOf(const Book& book, const Source& source) {
  return PlanImport(book.GetSession(), source.table, source.options);
}

inline ImportPlan Import(const Book& book, const Source& source, const Progress& progress = {}) {
  ImportPlan plan = PlanOf(book, source);
  ImportChart(book.GetSession(), source.table, source.options, plan, progress);
  return plan;
}

}  // namespace desk::book
