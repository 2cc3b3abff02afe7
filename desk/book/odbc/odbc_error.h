#pragma once

#include "book/database/database.h"
#include "book/odbc/odbc_api.h"

namespace desk::book {

/// Who answers behind ODBC, as far as its words differ.
[[nodiscard]] SqlDialect FlavorOf(const std::string& server_name);

/// The first diagnosis of a handle as users shall read it; the driver's own words stand behind.
[[nodiscard]] DatabaseError OdbcError(SQLSMALLINT kind, SQLHANDLE handle, SqlDialect dialect);

}  // namespace desk::book
