#include "book/odbc/odbc_parameters.h"

#include <algorithm>
#include <limits>

#include "host/utf.h"

namespace desk::book {

OdbcParameters::OdbcParameters(OdbcLink& link, const OdbcHandle& statement, Values values)
    : link_(link), statement_(statement), cells_(values.size()) {
  for (std::size_t i = 0; i < values.size(); ++i) Bind(i, values[i]);
}

void OdbcParameters::Bind(std::size_t at, const host::Value& value) {
  Cell& cell = cells_[at];
  if (const auto* flag = std::get_if<bool>(&value.Raw())) return BindInteger(at, *flag ? 1 : 0);
  if (const auto* integer = std::get_if<std::int64_t>(&value.Raw()))
    return BindInteger(at, *integer);
  if (const auto* real = std::get_if<double>(&value.Raw())) return BindReal(at, *real);
  cell.indicator = SQL_NULL_DATA;
  if (!value.IsNull()) {
    cell.text = host::ToUtf16(value.ToText());
    cell.indicator = static_cast<SQLLEN>(cell.text.size() * sizeof(char16_t));
  }
  const SQLULEN length = std::max<SQLULEN>(cell.text.size(), 1);
  Pass(at, SQL_C_WCHAR, SQL_WVARCHAR, length, cell.text.data());
}

/// Access knows no whole numbers of 64 bits.
void OdbcParameters::BindInteger(std::size_t at, std::int64_t number) {
  Cell& cell = cells_[at];
  if (link_.Server() != SqlDialect::kAccess) {
    cell.integer = number;
    return Pass(at, SQL_C_SBIGINT, SQL_BIGINT, 0, &cell.integer);
  }
  using Small = std::numeric_limits<SQLINTEGER>;
  if (number < Small::min() || number > Small::max()) {
    return BindReal(at, static_cast<double>(number));
  }
  cell.small_whole = static_cast<SQLINTEGER>(number);
  Pass(at, SQL_C_SLONG, SQL_INTEGER, 0, &cell.small_whole);
}

void OdbcParameters::BindReal(std::size_t at, double number) {
  cells_[at].real = number;
  Pass(at, SQL_C_DOUBLE, SQL_DOUBLE, 0, &cells_[at].real);
}

void OdbcParameters::Pass(std::size_t at, SQLSMALLINT from, SQLSMALLINT to, SQLULEN length,
                          SQLPOINTER data) {
  link_.Check(SQLBindParameter(statement_.Get(), static_cast<SQLUSMALLINT>(at + 1), SQL_PARAM_INPUT,
                               from, to, length, 0, data, 0, &cells_[at].indicator),
              statement_);
}

}  // namespace desk::book
