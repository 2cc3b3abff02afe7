#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace desk::app {

/// What the user wants a new book to be.
struct NewBookChoice {
  bool small_enterprise = false;  ///< which of the two accounting standards
  std::wstring company;
  std::wstring file;
};

/// Asks for a new book; nothing when the user gives up. `folder`: where books are kept.
[[nodiscard]] std::optional<NewBookChoice> AskNewBook(HWND owner, const std::wstring& folder);

/// Asks for an existing book.
[[nodiscard]] std::optional<std::wstring> AskOpenBook(HWND owner, const std::wstring& folder);

/// The ending of book files, with its point.
inline constexpr wchar_t kBookEnding[] = L".book";

}  // namespace desk::app
