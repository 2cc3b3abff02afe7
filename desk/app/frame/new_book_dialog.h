#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace desk::app {

/// The accounts that a new book starts with.
enum class NewChart { kEnterprise, kSmallEnterprise, kEmpty };

/// What the user wants a new book to be.
struct NewBookChoice {
  NewChart chart = NewChart::kEnterprise;
  std::wstring code_rule;
  std::wstring currency;
  std::wstring company;
  std::wstring file;
};

/// What the dialog offers and how it judges.
struct NewBookPlan {
  std::wstring folder = {};                   ///< where books are kept
  std::wstring code_rule = {};                ///< the usual one
  std::vector<std::wstring> currencies = {};  ///< the usual one first
  /// Why a book of this chart cannot have this rule; empty when it can.
  std::function<std::wstring(NewChart chart, const std::wstring& rule)> why_no_rule = {};
};

/// Asks for a new book; nothing when the user gives up.
[[nodiscard]] std::optional<NewBookChoice> AskNewBook(HWND owner, NewBookPlan plan);

/// Asks for an existing book.
[[nodiscard]] std::optional<std::wstring> AskOpenBook(HWND owner, const std::wstring& folder);

/// The ending of book files, with its point.
inline constexpr wchar_t kBookEnding[] = L".book";

}  // namespace desk::app
