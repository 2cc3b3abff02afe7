#pragma once

#include <string>
#include <string_view>

namespace desk::book {

/// Whether a book's place is a connection string and not a file: of ODBC ("Driver=...", "DSN=...",
/// "FileDSN=...", also behind "ODBC;", or anything with a password), or as PostgreSQL's own
/// programs take it ("host=... dbname=...", "postgresql://...").
[[nodiscard]] bool IsConnectionString(std::string_view place);

/// The connection string as the driver manager takes it. Where PostgreSQL's driver is named and
/// nothing is said of encryption it is asked for (SSLmode=prefer).
/// `DatabaseError` for a text that cannot be understood, or a word for the encryption that does not
/// exist, which the driver would take for none.
[[nodiscard]] std::string DriverText(std::string_view place);

/// A book's place for a message or a title: passwords are hidden.
[[nodiscard]] std::string ShownPlace(std::string_view place);

/// Whether something in it is hidden there.
[[nodiscard]] bool HoldsSecret(std::string_view place);

/// What is enough to tell books apart in a title: a connection's database with its server, or the
/// data source; all of `ShownPlace` where it names none.
[[nodiscard]] std::string ShortPlace(std::string_view place);

/// The name of the server, as the connection string gives it; empty where it gives none.
[[nodiscard]] std::string ServerName(std::string_view place);

/// Whether a server's name means this machine. Several names, with commas between, all must.
[[nodiscard]] bool IsThisMachine(std::string_view server);

}  // namespace desk::book
