#include "book/odbc_rows.h"

#include <array>
#include <charconv>
#include <cstddef>

#include "book/odbc_text.h"
#include "host/text.h"

namespace desk::book {

namespace {

/// A decimal that is a whole number of 64 bits is one; every other goes as a number.
bool ParseWhole(const std::string& text, std::int64_t& number) {
  const char* const end = text.data() + text.size();
  const auto [stop, failure] = std::from_chars(text.data(), end, number);
  return failure == std::errc() && stop == end;
}

}  // namespace

OdbcRows::OdbcRows(std::shared_ptr<OdbcLink> link, OdbcHandle statement)
    : link_(std::move(link)), statement_(std::move(statement)) {
  SQLSMALLINT columns = 0;
  link_->Check(SQLNumResultCols(statement_.Get(), &columns), statement_);
  cells_.resize(static_cast<std::size_t>(columns));
  for (int column = 0; column < columns; ++column) Describe(column);
}

void OdbcRows::Describe(int column) {
  Cell& cell = cells_[static_cast<std::size_t>(column)];
  std::array<SQLWCHAR, 256> name{};
  SQLSMALLINT length = 0;
  SQLSMALLINT type = 0;
  link_->Check(SQLDescribeColW(statement_.Get(), static_cast<SQLUSMALLINT>(column + 1), name.data(),
                               static_cast<SQLSMALLINT>(name.size()), &length, &type, nullptr,
                               nullptr, nullptr),
               statement_);
  const auto most = static_cast<SQLSMALLINT>(name.size() - 1);
  cell.name = FromWide(name.data(), static_cast<std::size_t>(std::min(length, most)));
  switch (type) {
    case SQL_BIT:
    case SQL_TINYINT:
    case SQL_SMALLINT:
    case SQL_INTEGER:
    case SQL_BIGINT:
      cell.kind = Kind::kWhole;
      break;
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
      cell.kind = Kind::kNumber;
      break;
    case SQL_DECIMAL:
    case SQL_NUMERIC:
      cell.kind = Kind::kDecimal;
      break;
    default:
      break;
  }
}

bool OdbcRows::Next() {
  if (cells_.empty()) return false;  // it gave no rows at all
  const SQLRETURN result = SQLFetch(statement_.Get());
  if (result == SQL_NO_DATA) return false;
  link_->Check(result, statement_);
  for (int column = 0; column < Columns(); ++column) {
    Read(column, cells_[static_cast<std::size_t>(column)]);
  }
  return true;
}

void OdbcRows::Read(int column, Cell& cell) {
  cell.whole = false;
  const auto position = static_cast<SQLUSMALLINT>(column + 1);
  SQLLEN indicator = 0;
  switch (cell.kind) {
    case Kind::kWhole: {
      SQLBIGINT number = 0;
      link_->Check(SQLGetData(statement_.Get(), position, SQL_C_SBIGINT, &number, 0, &indicator),
                   statement_);
      cell.number = number;
      cell.whole = true;
      cell.null = indicator == SQL_NULL_DATA;
      return;
    }
    case Kind::kNumber:
      link_->Check(SQLGetData(statement_.Get(), position, SQL_C_DOUBLE, &cell.real, 0, &indicator),
                   statement_);
      cell.null = indicator == SQL_NULL_DATA;
      return;
    case Kind::kDecimal:
      ReadText(column, cell);
      cell.whole = !cell.null && ParseWhole(cell.text, cell.number);
      if (!cell.whole) cell.real = host::LeadingNumber(cell.text);
      return;
    case Kind::kText:
      return ReadText(column, cell);
  }
}

void OdbcRows::ReadText(int column, Cell& cell) {
  std::array<SQLWCHAR, 512> part;  // NOLINT(cppcoreguidelines-pro-type-member-init): the driver's
  constexpr std::size_t kMost = part.size() - 1;  // the last unit is a NUL
  cell.text.clear();
  long_text_.clear();
  SQLRETURN result = SQL_SUCCESS;
  do {
    SQLLEN bytes = 0;
    result = SQLGetData(statement_.Get(), static_cast<SQLUSMALLINT>(column + 1), SQL_C_WCHAR,
                        part.data(), static_cast<SQLLEN>(sizeof part), &bytes);
    if (result == SQL_NO_DATA) break;
    link_->Check(result, statement_);
    cell.null = bytes == SQL_NULL_DATA;
    if (cell.null) return;
    const std::size_t all = static_cast<std::size_t>(bytes) / sizeof(SQLWCHAR);
    const bool last = bytes != SQL_NO_TOTAL && all <= kMost;
    if (last && long_text_.empty()) return AppendWide(cell.text, part.data(), all);
    long_text_.append(part.data(), part.data() + (last ? all : kMost));
    if (last) break;
  } while (result == SQL_SUCCESS_WITH_INFO);
  cell.text = host::ToUtf8(long_text_);
}

host::Value OdbcRows::Get(int column) const {
  const Cell& cell = CellAt(column);
  if (cell.null) return {};
  if (cell.whole) return cell.number;
  if (cell.kind == Kind::kText) return cell.text;
  return cell.real;
}

void OdbcRows::PassRest(CellSink& sink) {
  do {
    for (const Cell& cell : cells_) {
      if (cell.null) {
        sink.OnNull();
      } else if (cell.whole) {
        sink.OnWhole(cell.number);
      } else if (cell.kind == Kind::kText) {
        sink.OnText(cell.text);
      } else {
        sink.OnNumber(cell.real);
      }
    }
  } while (Next());
}

}  // namespace desk::book
