#pragma once

#include <string>

#include "book/book.h"

/// Where books are, as users know it: a file, or a database on a server.
namespace desk::app {

[[nodiscard]] bool IsOnServer(const std::wstring& place);

/// Whether the place may be written down: no connection with a password in it.
[[nodiscard]] bool MayBeKept(const std::wstring& place);

/// Whether the book may be there; a server tells only when it is asked to open it.
[[nodiscard]] bool MayBeThere(const std::wstring& place);

/// The book's name as it is shown: the file's, or that of the database and its server.
[[nodiscard]] std::wstring NameOf(const std::wstring& place);

/// The name with what a line with little room says of the open book: read only, encrypted or not.
[[nodiscard]] std::wstring MarkedName(const book::Book& book, const std::wstring& place);

}  // namespace desk::app
