#include "app/program/desk_settings.h"

#include <shlobj.h>

#include <algorithm>
#include <array>
#include <exception>
#include <memory>

#include "app/frame/commands.h"
#include "host/text.h"
#include "viewkit/win32/wide.h"
#include "viewkit/win32/window.h"

namespace desk::app {
namespace {

namespace fs = std::filesystem;
using tavrix::viewkit::win32::Narrow;
using tavrix::viewkit::win32::Wide;

constexpr char kSection[] = "Desk";
constexpr wchar_t kProgramFolder[] = L"Tavrix";

struct TaskMemory {
  void operator()(wchar_t* text) const noexcept { CoTaskMemFree(text); }
};

fs::path ProgramFolder() {
  std::array<wchar_t, 32768> path{};
  GetModuleFileNameW(tavrix::viewkit::win32::ThisModule(), path.data(),
                     static_cast<DWORD>(path.size()));
  return fs::path(path.data()).parent_path();
}

/// `kProgramFolder` in one of the user's folders, else `fallback` beside the program.
fs::path FolderIn(REFKNOWNFOLDERID id, const wchar_t* fallback) {
  wchar_t* found = nullptr;
  const HRESULT result = SHGetKnownFolderPath(id, KF_FLAG_CREATE, nullptr, &found);
  const std::unique_ptr<wchar_t, TaskMemory> owned(found);
  std::error_code error;
  if (SUCCEEDED(result)) {
    fs::path folder = fs::path(owned.get()) / kProgramFolder;
    fs::create_directories(folder, error);
    if (!error) return folder;
  }
  fs::path beside = ProgramFolder() / fallback;
  fs::create_directories(beside, error);
  return beside;
}

/// A window must not come up where no screen is any more.
bool OnScreen(const RECT& place) {
  return MonitorFromRect(&place, MONITOR_DEFAULTTONULL) != nullptr;
}

}  // namespace

DeskFolders DeskFolders::Find() {
  return {.user = FolderIn(FOLDERID_RoamingAppData, L"user"),
          .books = FolderIn(FOLDERID_Documents, L"books")};
}

DeskSettings::DeskSettings(const DeskFolders& folders) {
  file_.SetFileName(Narrow((folders.user / L"desk.txt").wstring()));
  for (std::size_t i = 0; i < kRecentBooks; ++i) {
    const std::string path = file_.ReadValue(kSection, "Recent" + std::to_string(i), "");
    if (!path.empty()) recent_.push_back(Wide(path));
  }
}

void DeskSettings::Write(const std::string& key, const std::string& value) {
  try {
    file_.WriteValue(kSection, key, value);
  } catch (const std::exception&) {  // a user without a writable folder works all the same
  }
}

void DeskSettings::WriteRecent() {
  for (std::size_t i = 0; i < kRecentBooks; ++i) {
    Write("Recent" + std::to_string(i), i < recent_.size() ? Narrow(recent_[i]) : std::string());
  }
}

void DeskSettings::Remember(const std::wstring& book) {
  std::erase(recent_, book);
  recent_.insert(recent_.begin(), book);
  if (recent_.size() > kRecentBooks) recent_.resize(kRecentBooks);
  WriteRecent();
}

void DeskSettings::Forget(const std::wstring& book) {
  std::erase(recent_, book);
  WriteRecent();
}

long DeskSettings::Number(const char* key, long fallback) {
  const std::string text = file_.ReadValue(kSection, key, "");
  return text.empty() ? fallback : tavrix::host::LeadingLong(text);
}

void DeskSettings::Restore(HWND window, int show) {
  WINDOWPLACEMENT placement{};
  placement.length = sizeof placement;
  GetWindowPlacement(window, &placement);
  const RECT saved{Number("Left", 0), Number("Top", 0), Number("Right", 0), Number("Bottom", 0)};
  if (saved.right > saved.left && saved.bottom > saved.top && OnScreen(saved)) {
    placement.rcNormalPosition = saved;
  }
  const bool maximized = Number("Maximized", 0) != 0 && show != SW_SHOWMINNOACTIVE;
  placement.showCmd = maximized ? static_cast<UINT>(SW_SHOWMAXIMIZED) : static_cast<UINT>(show);
  SetWindowPlacement(window, &placement);
}

void DeskSettings::Save(HWND window) {
  WINDOWPLACEMENT placement{};
  placement.length = sizeof placement;
  if (!GetWindowPlacement(window, &placement)) return;
  const RECT& place = placement.rcNormalPosition;
  Write("Left", std::to_string(place.left));
  Write("Top", std::to_string(place.top));
  Write("Right", std::to_string(place.right));
  Write("Bottom", std::to_string(place.bottom));
  Write("Maximized", placement.showCmd == SW_SHOWMAXIMIZED ? "1" : "0");
}

int DeskSettings::ReportHeight() {
  constexpr long kDefault = 150;
  return static_cast<int>(Number("ReportHeight", kDefault));
}

void DeskSettings::SaveReportHeight(int height) {
  Write("ReportHeight", std::to_string(height));
}

}  // namespace desk::app
