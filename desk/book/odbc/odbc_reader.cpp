#include "book/odbc/odbc_reader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <utility>

#include "book/odbc/odbc_text.h"
#include "host/text.h"

namespace desk::book {

namespace {

/// A decimal that is a whole number of 64 bits is one; every other goes as a number.
void AddDecimal(const std::string& text, OdbcPortion& portion) {
  std::int64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, failure] = std::from_chars(text.data(), end, number);
  if (failure == std::errc() && stop == end) return portion.AddInteger(number);
  portion.AddNumber(host::LeadingNumber(text));
}

}  // namespace

void OdbcPortion::AddText(const SQLWCHAR* units, std::size_t length) {
  const std::size_t start = texts_.size();
  AppendWide(texts_, units, length);
  cells_.push_back({.kind = Kind::kText, .start = start, .length = texts_.size() - start});
}

host::Value OdbcPortion::Get(std::size_t at) const {
  const Cell& cell = cells_[at];
  switch (cell.kind) {
    case Kind::kInteger:
      return cell.integer;
    case Kind::kNumber:
      return cell.number;
    case Kind::kText:
      return TextOf(cell);
    case Kind::kNull:
      break;
  }
  return {};
}

void OdbcPortion::Pass(std::size_t first, CellSink& sink) const {
  for (std::size_t i = first; i < cells_.size(); ++i) {
    const Cell& cell = cells_[i];
    switch (cell.kind) {
      case Kind::kNull:
        sink.OnNull();
        break;
      case Kind::kInteger:
        sink.OnInteger(cell.integer);
        break;
      case Kind::kNumber:
        sink.OnNumber(cell.number);
        break;
      case Kind::kText:
        sink.OnText(TextOf(cell));
        break;
    }
  }
}

OdbcReader::OdbcReader(OdbcLink& link, OdbcHandle statement) : statement_(std::move(statement)) {
  SQLSMALLINT columns = 0;
  link.Check(SQLNumResultCols(statement_.Get(), &columns), statement_);
  for (SQLSMALLINT i = 1; i <= columns; ++i) Describe(link, static_cast<SQLUSMALLINT>(i));
}

void OdbcReader::Describe(OdbcLink& link, SQLUSMALLINT position) {
  std::array<SQLWCHAR, 256> name{};
  SQLSMALLINT length = 0;
  SQLSMALLINT type = 0;
  link.Check(SQLDescribeColW(statement_.Get(), position, name.data(),
                             static_cast<SQLSMALLINT>(name.size()), &length, &type, nullptr,
                             nullptr, nullptr),
             statement_);
  const auto most = static_cast<SQLSMALLINT>(name.size() - 1);
  names_.push_back(FromWide(name.data(), static_cast<std::size_t>(std::min(length, most))));
  switch (type) {
    case SQL_BIT:
    case SQL_TINYINT:
    case SQL_SMALLINT:
    case SQL_INTEGER:
    case SQL_BIGINT:
      return kinds_.push_back(Kind::kInteger);
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
      return kinds_.push_back(Kind::kNumber);
    case SQL_DECIMAL:
    case SQL_NUMERIC:
      return kinds_.push_back(Kind::kDecimal);
    default:
      return kinds_.push_back(Kind::kText);
  }
}

OdbcPortion OdbcReader::Read(OdbcLink& link, int most) {
  OdbcPortion portion;
  portion.last = kinds_.empty();  // it gave no rows at all
  for (int row = 0; row < most && !portion.last; ++row) {
    const SQLRETURN result = SQLFetch(statement_.Get());
    portion.last = result == SQL_NO_DATA;
    if (portion.last) break;
    link.Check(result, statement_);
    for (std::size_t i = 0; i < kinds_.size(); ++i) {
      ReadCell(link, static_cast<SQLUSMALLINT>(i + 1), kinds_[i], portion);
    }
  }
  return portion;
}

void OdbcReader::ReadCell(OdbcLink& link, SQLUSMALLINT position, Kind kind, OdbcPortion& portion) {
  SQLLEN indicator = 0;
  if (kind == Kind::kInteger) {
    SQLBIGINT number = 0;
    link.Check(SQLGetData(statement_.Get(), position, SQL_C_SBIGINT, &number, 0, &indicator),
               statement_);
    return indicator == SQL_NULL_DATA ? portion.AddNull() : portion.AddInteger(number);
  }
  if (kind == Kind::kNumber) {
    double number = 0;
    link.Check(SQLGetData(statement_.Get(), position, SQL_C_DOUBLE, &number, 0, &indicator),
               statement_);
    return indicator == SQL_NULL_DATA ? portion.AddNull() : portion.AddNumber(number);
  }
  ReadText(link, position, kind == Kind::kDecimal, portion);
}

void OdbcReader::ReadText(OdbcLink& link, SQLUSMALLINT position, bool decimal,
                          OdbcPortion& portion) {
  std::array<SQLWCHAR, 512> part;  // NOLINT(cppcoreguidelines-pro-type-member-init): the driver's
  constexpr std::size_t kMax = part.size() - 1;  // the last unit is a NUL
  const auto add = [&](const SQLWCHAR* units, std::size_t length) {
    if (decimal) return AddDecimal(FromWide(units, length), portion);
    portion.AddText(units, length);
  };
  long_text_.clear();
  SQLRETURN result = SQL_SUCCESS;
  do {
    SQLLEN bytes = 0;
    result = SQLGetData(statement_.Get(), position, SQL_C_WCHAR, part.data(),
                        static_cast<SQLLEN>(sizeof part), &bytes);
    if (result == SQL_NO_DATA) break;
    link.Check(result, statement_);
    if (bytes == SQL_NULL_DATA) return portion.AddNull();
    const std::size_t all = static_cast<std::size_t>(bytes) / sizeof(SQLWCHAR);
    const bool last = bytes != SQL_NO_TOTAL && all <= kMax;
    if (last && long_text_.empty()) return add(part.data(), all);
    long_text_.append(part.data(), part.data() + (last ? all : kMax));
    if (last) break;
  } while (result == SQL_SUCCESS_WITH_INFO);
  add(reinterpret_cast<const SQLWCHAR*>(long_text_.data()), long_text_.size());
}

}  // namespace desk::book
