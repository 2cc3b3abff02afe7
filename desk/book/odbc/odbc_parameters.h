#pragma once

#include <string>
#include <vector>

#include "book/odbc/odbc_link.h"
#include "host/non_copyable.h"

namespace desk::book {

/// The parameters of one run; drivers read them while the statement runs.
class OdbcParameters : private tavrix::host::NonCopyable {
 public:
  /// Binds `values` to the question marks of `statement` in order.
  OdbcParameters(OdbcLink& link, const OdbcHandle& statement, Values values);
  ~OdbcParameters() = default;

 private:
  struct Cell {
    SQLBIGINT integer = 0;
    SQLINTEGER small_whole = 0;
    double real = 0;
    std::u16string text;
    SQLLEN indicator = 0;
  };

  void Bind(std::size_t at, const host::Value& value);
  void BindInteger(std::size_t at, std::int64_t number);
  void BindReal(std::size_t at, double number);
  void Pass(std::size_t at, SQLSMALLINT from, SQLSMALLINT to, SQLULEN length, SQLPOINTER data);

  OdbcLink& link_;
  const OdbcHandle& statement_;
  std::vector<Cell> cells_;
};

}  // namespace desk::book
