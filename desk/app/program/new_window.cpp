#include "app/program/new_window.h"

#include <array>
#include <memory>

#include "host/error.h"
#include "viewkit/win32/window.h"

namespace desk::app {
namespace {

// Others can read a command line, and the place of a book may hold a password.
constexpr wchar_t kBook[] = L"TAVRIX_DESK_BOOK";
constexpr std::size_t kMaxUnits = 32767;

struct HandleCloser {
  void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};
using OwnedHandle = std::unique_ptr<void, HandleCloser>;

struct Search {
  HWND window;
  RECT place;
  bool taken;
};

BOOL CALLBACK Compare(HWND other, LPARAM parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  std::array<wchar_t, 64> own{};
  std::array<wchar_t, 64> name{};
  GetClassNameW(search.window, own.data(), static_cast<int>(own.size()));
  GetClassNameW(other, name.data(), static_cast<int>(name.size()));
  RECT place{};
  if (other == search.window || name != own || !IsWindowVisible(other) || IsZoomed(other) ||
      !GetWindowRect(other, &place)) {
    return TRUE;
  }
  search.taken = place.left == search.place.left && place.top == search.place.top;
  return search.taken ? FALSE : TRUE;
}

}  // namespace

void OpenNewWindow(const std::wstring& book) {
  std::array<wchar_t, kMaxUnits> program{};
  GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size()));
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION process{};
  SetEnvironmentVariableW(kBook, book.c_str());
  const BOOL started = CreateProcessW(program.data(), nullptr, nullptr, nullptr, FALSE, 0, nullptr,
                                      nullptr, &start, &process);
  SetEnvironmentVariableW(kBook, nullptr);
  if (!started) throw tavrix::host::HostError("系统不能打开新窗口");
  const OwnedHandle thread(process.hThread);
  const OwnedHandle owned(process.hProcess);
  AllowSetForegroundWindow(process.dwProcessId);
}

std::wstring BookOfNewWindow() {
  std::array<wchar_t, kMaxUnits> book{};
  const DWORD length = GetEnvironmentVariableW(kBook, book.data(), static_cast<DWORD>(book.size()));
  SetEnvironmentVariableW(kBook, nullptr);
  return length < book.size() ? std::wstring(book.data(), length) : std::wstring();
}

void StepAside(HWND window) {
  constexpr int kMaxSteps = 10;
  const int step = GetSystemMetrics(SM_CYCAPTION) + GetSystemMetrics(SM_CYSIZEFRAME);
  const RECT work = tavrix::viewkit::win32::WorkArea(window);
  Search search{window, {}, false};
  for (int i = 0; i < kMaxSteps && !IsZoomed(window); ++i) {
    GetWindowRect(window, &search.place);
    search.taken = false;
    EnumWindows(&Compare, reinterpret_cast<LPARAM>(&search));
    if (!search.taken) return;
    const LONG left = search.place.left + step;
    const LONG top = search.place.top + step;
    // At the edge of the screen the next one begins in the corner.
    const bool fits = top + step < work.bottom && left + step < work.right;
    SetWindowPos(window, nullptr, fits ? left : work.left, fits ? top : work.top, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  }
}

}  // namespace desk::app
