#include "app/program/copy_command.h"

#include <windows.h>

#include <exception>

#include "book/copy.h"
#include "host/report.h"
#include "viewkit/win32/wide.h"

namespace desk::app {

namespace {

using tavrix::viewkit::win32::Narrow;
using tavrix::viewkit::win32::Wide;

void Tell(const std::string& text, UINT icon) {
  const HANDLE out = GetStdHandle(STD_OUTPUT_HANDLE);
  DWORD written = 0;
  const bool told = out != nullptr && out != INVALID_HANDLE_VALUE &&
                    WriteFile(out, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
  if (!told) MessageBoxW(nullptr, Wide(text).c_str(), L"会计科目", MB_OK | icon);
}

}  // namespace

int CopyByCommand(const std::wstring& from, const std::wstring& to) {
  try {
    std::string text = "账簿已复制，逐行核对一致：\n";
    for (const book::CopiedTable& table : book::CopyBook(Narrow(from), Narrow(to))) {
      text += table.name + "\t" + std::to_string(table.rows) + "\n";
    }
    Tell(text, MB_ICONINFORMATION);
    return 0;
  } catch (const std::exception& error) {
    Tell("不能复制账簿：" + tavrix::host::ErrorText(error) + "\n", MB_ICONERROR);
    return 1;
  }
}

}  // namespace desk::app
