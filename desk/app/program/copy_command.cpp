#include "app/program/copy_command.h"

#include <windows.h>

#include <cstdint>
#include <exception>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "app/progress/long_work.h"
#include "book/copy.h"
#include "host/report.h"
#include "host/utf.h"

namespace desk::app {

namespace {

using tavrix::host::Narrow;
using tavrix::host::Wide;

constexpr const wchar_t* kTitle = L"会计科目";

bool Write(DWORD where, const std::string& text) {
  const HANDLE out = GetStdHandle(where);
  DWORD written = 0;
  return out != nullptr && out != INVALID_HANDLE_VALUE &&
         WriteFile(out, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

/// `printed` goes to standard output; where there is none, a box shows `shown`.
void Tell(const std::string& printed, const std::string& shown, UINT icon) {
  if (!Write(STD_OUTPUT_HANDLE, printed))
    MessageBoxW(nullptr, Wide(shown).c_str(), kTitle, MB_OK | icon);
}

/// What users call the contents of a table. Those without a name are copied in no time.
std::string ContentsOf(std::string_view table) {
  if (table == "gl_code") return "科目";
  if (table == "gl_accvouch") return "凭证";
  if (table == "gl_accass") return "辅助账";
  if (table == "gl_accsum") return "总账";
  return "其他资料";
}

/// How far the copy has come: lines on standard error for a script, which cancels by ending the
/// program; the window of long work where there is no standard output.
class ShownProgress {
 public:
  ShownProgress() {
    if (!Write(STD_OUTPUT_HANDLE, {})) window_.emplace(nullptr, kTitle);
  }

  /// False when the user has cancelled.
  bool Show(const book::CopyState& state) {
    if (window_) return window_->Show(ShownState(state));
    Print(state);
    return true;
  }

 private:
  static book::WorkState ShownState(const book::CopyState& state) {
    const std::string step = state.compares ? "正在逐行核对复制的账簿：" : "正在复制账簿：";
    return {.step = step + ContentsOf(state.table), .done = state.done, .all = state.all};
  }

  void Print(const book::CopyState& state) {
    constexpr int kStep = 5;
    const int percent = state.all == 0 ? 0 : static_cast<int>(state.done * 100 / state.all);
    if (percent < next_) return;
    next_ = percent - percent % kStep + kStep;
    Write(STD_ERROR_HANDLE, std::string(state.table) + "\t" + std::to_string(percent) + " %\n");
  }

  std::optional<LongWork> window_;
  int next_ = 0;
};

/// A line for each table.
std::string PrintedRows(const std::vector<book::CopiedTable>& tables) {
  std::string text = "账簿已复制，逐行核对一致：\n";
  for (const book::CopiedTable& table : tables) {
    text += table.name + "\t" + std::to_string(table.rows) + "\n";
  }
  return text;
}

/// A line for each kind of contents.
std::string ShownRows(const std::vector<book::CopiedTable>& tables) {
  std::vector<std::pair<std::string, std::int64_t>> kinds;
  for (const book::CopiedTable& table : tables) {
    const std::string kind = ContentsOf(table.name);
    if (kinds.empty() || kinds.back().first != kind) kinds.emplace_back(kind, 0);
    kinds.back().second += table.rows;
  }
  std::string text = "账簿已复制，逐行核对一致。\n";
  for (const auto& [kind, rows] : kinds) text += "\n" + kind + "：" + std::to_string(rows) + " 行";
  return text;
}

}  // namespace

int CopyByCommand(const std::wstring& from, const std::wstring& to) {
  bool cancelled = false;
  try {
    std::vector<book::CopiedTable> tables;
    {
      ShownProgress progress;
      tables = book::CopyBook(Narrow(from), Narrow(to), [&](const book::CopyState& state) {
        cancelled = !progress.Show(state);
        return !cancelled;
      });
    }
    Tell(PrintedRows(tables), ShownRows(tables), MB_ICONINFORMATION);
    return 0;
  } catch (const std::exception& error) {
    const std::string text = cancelled ? "复制已取消，没有留下任何内容。"
                                       : "不能复制账簿：" + tavrix::host::ErrorText(error);
    Tell(text + "\n", text, cancelled ? MB_ICONINFORMATION : MB_ICONERROR);
    return 1;
  }
}

}  // namespace desk::app
