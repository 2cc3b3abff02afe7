#pragma once

#include <string>

#include "book/host/recent_books.h"
#include "viewkit/ports.h"

/// The list of the books that were opened last.
namespace desk::app {

/// Shows the list; gives the place of the book to open, or an empty text.
[[nodiscard]] std::wstring AskRecentBook(tavrix::viewkit::UserPort& user, book::RecentBooks& books);

/// Asks whether a book that has gone may leave the list.
[[nodiscard]] bool MayForgetBook(tavrix::viewkit::UserPort& user, const std::string& place);

}  // namespace desk::app
