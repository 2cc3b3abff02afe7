#include "book/exchange/import_source.h"

#include <algorithm>
#include <utility>

#include "book/exchange/csv.h"

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
  workbook_ = std::make_unique<Workbook>(std::move(bytes_));
  // The first sheet that looks like a chart.
  constexpr std::size_t kTried = 8;
  const std::size_t tried = std::min(workbook_->Sheets().size(), kTried);
  for (sheet_ = 0; sheet_ < tried; ++sheet_) {
    Take(workbook_->Read(sheet_));
    if (header_) return;
  }
  ReadSheet(0);
}

void ImportSource::ReadSheet(std::size_t sheet) {
  workbook_->Renew();
  Take(workbook_->Read(sheet));
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
    options.columns = MatchHeader(HeaderAt(table_, HeaderPlace()));
  }
  if (!options.columns.ColumnOf(AccountField::kCode)) options.columns = GuessColumns(table_);
  options.code_rule = ProposeCodeRule(table_, options);
  return options;
}

}  // namespace desk::book
