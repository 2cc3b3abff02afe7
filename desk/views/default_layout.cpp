#include "views/default_layout.h"

#include <filesystem>
#include <span>
#include <string_view>
#include <system_error>

#include "book/files/files.h"
#include "book/files/paths.h"
#include "embedded/kPickerLayout.h"
#include "embedded/kTrialBalanceLayout.h"
#include "host/report.h"

namespace desk::views {

namespace {

std::span<const std::string_view> LinesOf(DefaultLayout layout) {
  if (layout == DefaultLayout::kPicker) return embedded::kPickerLayout;
  return embedded::kTrialBalanceLayout;
}

}  // namespace

void WriteDefaultLayout(DefaultLayout layout, const std::string& path) {
  std::string text;
  for (const std::string_view line : LinesOf(layout)) text.append(line).append("\r\n");
  book::ReplaceFile(book::PathOf(path), text);
}

void EnsureLayout(DefaultLayout layout, const std::string& path) {
  std::error_code error;
  if (std::filesystem::exists(book::PathOf(path), error)) return;
  tavrix::host::IgnoreErrors([&] { WriteDefaultLayout(layout, path); });
}

}  // namespace desk::views
