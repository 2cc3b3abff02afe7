#include <windows.h>

#include <commctrl.h>
#include <ole2.h>
#include <shellapi.h>

#include <exception>
#include <memory>
#include <string>

#include "app/program/desk.h"

namespace {

struct LocalMemory {
  void operator()(wchar_t** memory) const noexcept { LocalFree(memory); }
};

/// The book that the command line names; empty for none.
std::wstring BookArgument() {
  int count = 0;
  const std::unique_ptr<wchar_t*, LocalMemory> arguments(
      CommandLineToArgvW(GetCommandLineW(), &count));
  return arguments && count > 1 ? std::wstring(arguments.get()[1]) : std::wstring();
}

/// COM and OLE on this thread, from before the first object to after the last.
class OleScope {
 public:
  OleScope() : entered_(SUCCEEDED(OleInitialize(nullptr))) {}
  OleScope(const OleScope&) = delete;
  OleScope& operator=(const OleScope&) = delete;
  ~OleScope() {
    if (entered_) OleUninitialize();
  }

 private:
  bool entered_;
};

int RunDesk(int show) {
  const OleScope ole;
  INITCOMMONCONTROLSEX controls{};
  controls.dwSize = sizeof controls;
  controls.dwICC = ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES;
  InitCommonControlsEx(&controls);
  desk::app::Desk desk;
  desk.Start(BookArgument(), show);
  return desk.Run();
}

}  // namespace

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int show) {
  try {
    return RunDesk(show);
  } catch (const std::exception&) {
    MessageBoxW(nullptr, L"程序不能启动：系统资源不足。", L"会计科目", MB_OK | MB_ICONERROR);
    return 1;
  }
}
