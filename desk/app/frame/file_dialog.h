#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace desk::app {

/// What the system's dialogs for files are asked with.
struct FileQuery {
  bool open = true;  ///< an existing file; otherwise one to write
  const wchar_t* title = L"";
  /// Pairs of a name and its pattern, each with a zero behind it, and one more.
  const wchar_t* types = L"\0";
  const wchar_t* ending = nullptr;  ///< added to a name without one; null for none
  std::wstring folder = {};         ///< empty: where the user was last
  std::wstring proposed = {};
};

struct ChosenFile {
  std::wstring path;
  unsigned type = 1;  ///< which of the types, from 1
};

/// `name` without what a file's name cannot hold.
[[nodiscard]] std::wstring FileNameOf(std::wstring name);

/// Nothing when the user gives up.
[[nodiscard]] std::optional<ChosenFile> AskFile(HWND owner, const FileQuery& query);

}  // namespace desk::app
