#include <windows.h>

#include <commctrl.h>
#include <ole2.h>
#include <shellapi.h>

#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "accessible/accessible_object.h"
#include "app/program/copy_command.h"
#include "app/program/desk.h"
#include "app/program/new_window.h"
#include "host/non_copyable.h"

namespace {

struct LocalMemory {
  void operator()(wchar_t** memory) const noexcept { LocalFree(memory); }
};

/// What the command line says behind the program's name.
std::vector<std::wstring> Arguments() {
  int count = 0;
  const std::unique_ptr<wchar_t*, LocalMemory> arguments(
      CommandLineToArgvW(GetCommandLineW(), &count));
  if (!arguments || count < 2) return {};
  return {arguments.get() + 1, arguments.get() + count};
}

/// COM and OLE on this thread, from before the first object to after the last.
class OleScope : private tavrix::host::NonCopyable {
 public:
  OleScope() : entered_(SUCCEEDED(OleInitialize(nullptr))) {}
  ~OleScope() {
    if (entered_) OleUninitialize();
  }

 private:
  bool entered_;
};

int RunDesk(int show) {
  const std::vector<std::wstring> arguments = Arguments();
  const OleScope ole;
  INITCOMMONCONTROLSEX controls{};
  controls.dwSize = sizeof controls;
  controls.dwICC = ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES;
  InitCommonControlsEx(&controls);
  if (arguments.size() == 3 && arguments[0] == L"--copy") {
    return desk::app::CopyByCommand(arguments[1], arguments[2]);
  }
  tavrix::accessible::OfferAccessibility();
  desk::app::Desk desk;
  const std::wstring book = desk::app::BookOfNewWindow();
  desk.Start(arguments.empty() ? book : arguments[0], show);
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
