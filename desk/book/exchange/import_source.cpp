#include "book/exchange/import_source.h"

#include <utility>

#include "book/exchange/csv.h"
#include "book/exchange/xlsx_reader.h"

namespace desk::book {

ImportSource::ImportSource(std::string bytes) : bytes_(std::move(bytes)) {
  if (bytes_.empty()) throw SourceError("文件是空的，或者不能读取");
  if (bytes_.size() > kMaxSourceBytes) throw SourceError("文件太大");
  if (IsOldWorkbook(bytes_)) {
    throw SourceError("这是旧格式（.xls）或有密码的工作簿，请先另存为没有密码的 .xlsx 文件");
  }
  if (!IsWorkbook(bytes_)) {
    const Encoding encoding = FindEncoding(bytes_);
    ReadText(encoding, FindSeparator(Decoded(bytes_, encoding)));
    return;
  }
  sheets_ = SheetNames(bytes_);
  // The first sheet that looks like a chart.
  for (std::size_t i = 0; i < sheets_.size() && !header_; ++i) ReadSheet(i);
  if (!header_) ReadSheet(0);
}

void ImportSource::ReadSheet(std::size_t sheet) {
  Take(book::ReadSheet(bytes_, sheet));
  sheet_ = sheet;
}

void ImportSource::ReadText(Encoding encoding, char separator) {
  Take(ReadCsv(Decoded(bytes_, encoding), separator));
  encoding_ = encoding;
  separator_ = separator;
}

void ImportSource::Take(SourceTable table) {
  table_ = std::move(table);
  header_ = FindHeader(table_);
}

ImportOptions ImportSource::Proposed() const {
  return ProposedWith(header_.has_value());
}

ImportOptions ImportSource::ProposedWith(bool header) const {
  ImportOptions options;
  if (header && !table_.rows.empty()) {
    options.header = HeaderPlace();
    options.columns = MatchHeader(table_.rows[HeaderPlace()]);
  }
  if (!options.columns.ColumnOf(AccountField::kCode)) options.columns = GuessColumns(table_);
  options.code_rule = ProposeCodeRule(table_, options);
  return options;
}

}  // namespace desk::book
