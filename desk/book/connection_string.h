#pragma once

#include <string>
#include <string_view>

namespace desk::book {

/// Whether a book's place is an ODBC connection string ("Driver=...", "DSN=...", "FileDSN=...",
/// also behind "ODBC;", or anything with a password) and not a file.
[[nodiscard]] bool IsConnectionString(std::string_view place);

/// The connection string as the driver manager takes it: without a leading "ODBC;".
[[nodiscard]] std::string_view DriverManagerText(std::string_view place);

/// A book's place for a message or a title: passwords are hidden.
[[nodiscard]] std::string ShownPlace(std::string_view place);

/// What is enough to tell books apart in a title: a connection's database with its server, or the
/// data source; all of `ShownPlace` where it names none.
[[nodiscard]] std::string ShortPlace(std::string_view place);

}  // namespace desk::book
