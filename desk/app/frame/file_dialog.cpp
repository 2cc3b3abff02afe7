#include "app/frame/file_dialog.h"

#include <commdlg.h>

#include <array>

namespace desk::app {

std::wstring FileNameOf(std::wstring name) {
  for (wchar_t& unit : name) {
    if (std::wstring_view(L"\\/:*?\"<>|").find(unit) != std::wstring_view::npos) unit = L'_';
  }
  return name;
}

std::optional<ChosenFile> AskFile(HWND owner, const FileQuery& query) {
  std::array<wchar_t, 32768> path{};
  query.proposed.copy(path.data(), path.size() - 1);
  OPENFILENAMEW asked{};
  asked.lStructSize = sizeof asked;
  asked.hwndOwner = owner;
  asked.lpstrFilter = query.types;
  asked.nFilterIndex = 1;
  asked.lpstrFile = path.data();
  asked.nMaxFile = static_cast<DWORD>(path.size());
  asked.lpstrInitialDir = query.folder.empty() ? nullptr : query.folder.c_str();
  asked.lpstrDefExt = query.ending;
  asked.lpstrTitle = query.title;
  asked.Flags = OFN_NOCHANGEDIR | OFN_HIDEREADONLY |
                (query.open ? OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST : OFN_OVERWRITEPROMPT);
  const BOOL chosen = query.open ? GetOpenFileNameW(&asked) : GetSaveFileNameW(&asked);
  if (!chosen) return std::nullopt;
  return ChosenFile{.path = path.data(), .type = asked.nFilterIndex};
}

}  // namespace desk::app
