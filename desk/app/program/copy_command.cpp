#include "app/program/copy_command.h"

#include <windows.h>

#include <shlobj.h>

#include <exception>

#include "app/com/object.h"
#include "book/copy.h"
#include "host/report.h"
#include "viewkit/win32/wide.h"

namespace desk::app {

namespace {

using tavrix::viewkit::win32::Narrow;
using tavrix::viewkit::win32::Wide;

constexpr const wchar_t* kTitle = L"会计科目";

bool Write(DWORD where, const std::string& text) {
  const HANDLE out = GetStdHandle(where);
  DWORD written = 0;
  return out != nullptr && out != INVALID_HANDLE_VALUE &&
         WriteFile(out, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

void Tell(const std::string& text, UINT icon) {
  if (!Write(STD_OUTPUT_HANDLE, text))
    MessageBoxW(nullptr, Wide(text).c_str(), kTitle, MB_OK | icon);
}

/// How far the copy has come: lines on standard error for a script, which cancels by ending the
/// program; the system's own dialog with its button where there is no standard output.
class ShownProgress {
 public:
  ShownProgress() {
    if (Write(STD_OUTPUT_HANDLE, {})) return;
    if (FAILED(CoCreateInstance(CLSID_ProgressDialog, nullptr, CLSCTX_INPROC_SERVER,
                                IID_IProgressDialog, dialog_.PutVoid()))) {
      return;
    }
    dialog_->SetTitle(kTitle);
    dialog_->SetLine(1, L"正在复制账簿", FALSE, nullptr);
    dialog_->SetCancelMsg(L"正在取消复制", nullptr);
    dialog_->StartProgressDialog(nullptr, nullptr, PROGDLG_NORMAL | PROGDLG_AUTOTIME, nullptr);
  }
  ShownProgress(const ShownProgress&) = delete;
  ShownProgress& operator=(const ShownProgress&) = delete;
  ~ShownProgress() {
    if (dialog_) dialog_->StopProgressDialog();
  }

  /// False when the user has cancelled.
  bool Show(const book::CopyState& state) {
    if (!dialog_) {
      Print(state);
      return true;
    }
    dialog_->SetLine(2, Wide(std::string(state.table)).c_str(), FALSE, nullptr);
    dialog_->SetProgress64(static_cast<ULONGLONG>(state.done), static_cast<ULONGLONG>(state.all));
    return dialog_->HasUserCancelled() == FALSE;
  }

 private:
  void Print(const book::CopyState& state) {
    constexpr int kStep = 5;
    const int percent = state.all == 0 ? 0 : static_cast<int>(state.done * 100 / state.all);
    if (percent < next_) return;
    next_ = percent - percent % kStep + kStep;
    Write(STD_ERROR_HANDLE, std::string(state.table) + "\t" + std::to_string(percent) + " %\n");
  }

  ComPtr<IProgressDialog> dialog_;
  int next_ = 0;
};

}  // namespace

int CopyByCommand(const std::wstring& from, const std::wstring& to) {
  try {
    std::vector<book::CopiedTable> tables;
    {
      ShownProgress progress;
      tables = book::CopyBook(Narrow(from), Narrow(to),
                              [&](const book::CopyState& state) { return progress.Show(state); });
    }
    std::string text = "账簿已复制，逐行核对一致：\n";
    for (const book::CopiedTable& table : tables) {
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
