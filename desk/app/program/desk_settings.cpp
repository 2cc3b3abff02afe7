#include "app/program/desk_settings.h"

#include <shlobj.h>

#include <algorithm>
#include <array>
#include <exception>
#include <memory>

#include "app/frame/account_pane.h"
#include "app/frame/commands.h"
#include "app/program/book_place.h"
#include "host/text.h"
#include "host/utf.h"
#include "viewkit/win32/window.h"

namespace desk::app {
namespace {

namespace fs = std::filesystem;
using tavrix::host::Narrow;
using tavrix::host::Wide;

constexpr wchar_t kProgramFolder[] = L"Tavrix";
constexpr char kPrint[] = "Print";

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

DeskSettings::DeskSettings(const DeskFolders& folders)
    : path_(Narrow((folders.user / L"desk.txt").wstring())),
      branches_(Narrow((folders.user / L"branches.txt").wstring())),
      recent_(file_, path_) {}

std::vector<std::wstring> DeskSettings::RecentNames() const {
  std::vector<std::wstring> names;
  for (const auto& [place, pinned] : recent_.Entries()) {
    const std::wstring wide = Wide(place);
    names.push_back((pinned ? L"★ " : L"") + (IsOnServer(wide) ? NameOf(wide) : wide));
  }
  return names;
}

void DeskSettings::Write(const char* section, const std::string& key, const std::string& value) {
  try {
    file_.WriteValue(section, key, value);
  } catch (const std::exception&) {  // a user without a writable folder works all the same
  }
}

long DeskSettings::Number(const char* section, const char* key, long fallback) {
  const std::string text = file_.ReadValue(section, key, "");
  return text.empty() ? fallback : tavrix::host::LeadingLong(text);
}

void DeskSettings::Restore(HWND window, const char* name, int show) {
  WINDOWPLACEMENT placement{};
  placement.length = sizeof placement;
  GetWindowPlacement(window, &placement);
  const RECT saved{Number(name, "Left", 0), Number(name, "Top", 0), Number(name, "Right", 0),
                   Number(name, "Bottom", 0)};
  if (saved.right > saved.left && saved.bottom > saved.top && OnScreen(saved)) {
    placement.rcNormalPosition = saved;
  }
  const bool maximized = Number(name, "Maximized", 0) != 0 && show != SW_SHOWMINNOACTIVE;
  placement.showCmd = maximized ? static_cast<UINT>(SW_SHOWMAXIMIZED) : static_cast<UINT>(show);
  SetWindowPlacement(window, &placement);
}

void DeskSettings::Save(HWND window, const char* name) {
  WINDOWPLACEMENT placement{};
  placement.length = sizeof placement;
  if (!GetWindowPlacement(window, &placement)) return;
  Reread();
  const RECT& place = placement.rcNormalPosition;
  Write(name, "Left", std::to_string(place.left));
  Write(name, "Top", std::to_string(place.top));
  Write(name, "Right", std::to_string(place.right));
  Write(name, "Bottom", std::to_string(place.bottom));
  Write(name, "Maximized", placement.showCmd == SW_SHOWMAXIMIZED ? "1" : "0");
}

int DeskSettings::ReportHeight() {
  constexpr long kDefault = 150;
  return static_cast<int>(Number(kFrame, "ReportHeight", kDefault));
}

void DeskSettings::SaveReportHeight(int height) {
  Write(kFrame, "ReportHeight", std::to_string(height));
}

int DeskSettings::AccountWidth() {
  return static_cast<int>(Number(kFrame, "AccountWidth", AccountPane::kDesignWidth));
}

std::optional<views::PrintSetup> DeskSettings::Paper() {
  const views::PrintSetup paper{.width = static_cast<int>(Number(kPrint, "PaperWidth", 0)),
                                .height = static_cast<int>(Number(kPrint, "PaperHeight", 0))};
  constexpr int kMin = 4000;  // twips
  constexpr int kMax = 60000;
  const bool usable = paper.width >= kMin && paper.height >= paper.width && paper.height < kMax;
  return usable ? std::optional(paper) : std::nullopt;
}

void DeskSettings::SavePaper(const views::PrintSetup& setup) {
  Write(kPrint, "PaperWidth", std::to_string(setup.width));
  Write(kPrint, "PaperHeight", std::to_string(setup.height));
}

bool DeskSettings::AccountShown() {
  return Number(kFrame, "AccountShown", 1) != 0;
}

void DeskSettings::SaveAccountPane(int width, bool shown) {
  Write(kFrame, "AccountWidth", std::to_string(width));
  Write(kFrame, "AccountShown", shown ? "1" : "0");
}

}  // namespace desk::app
