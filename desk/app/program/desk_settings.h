#pragma once

#include <windows.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "book/host/kept_branches.h"
#include "book/host/recent_books.h"
#include "book/host/settings_file.h"
#include "views/print_preview.h"

namespace desk::app {

/// The user's folders that the desk keeps its files in; they exist.
struct DeskFolders {
  std::filesystem::path user;   ///< layouts and the desk's own settings
  std::filesystem::path books;  ///< where books are proposed to be kept

  [[nodiscard]] static DeskFolders Find();
};

/// What the desk remembers of a user from one start to the next. Nothing here fails: what cannot be
/// read or written is as if it had never been there.
class DeskSettings {
 public:
  explicit DeskSettings(const DeskFolders& folders);

  [[nodiscard]] book::RecentBooks& Recent() { return recent_; }
  /// As users know them, those that are pinned with a star: a server's by database and server.
  [[nodiscard]] std::vector<std::wstring> RecentNames() const;

  /// The desk's windows, each with a section of its own.
  static constexpr char kFrame[] = "Desk";
  static constexpr char kTrialBalance[] = "TrialBalance";
  static constexpr char kHistory[] = "History";
  static constexpr char kAccountLedger[] = "AccountLedger";
  static constexpr char kVouchers[] = "Vouchers";
  static constexpr char kVoucher[] = "Voucher";
  static constexpr char kOpeningBalances[] = "OpeningBalances";
  /// Puts the window where it was, as far as that place is on a screen; shows it.
  void Restore(HWND window, const char* name, int show);
  void Save(HWND window, const char* name);

  [[nodiscard]] int ReportHeight();
  void SaveReportHeight(int height);

  /// The pane of the chosen account: how wide it was, at 96 dots per inch, and whether it was
  /// there.
  [[nodiscard]] int AccountWidth();
  [[nodiscard]] bool AccountShown();
  void SaveAccountPane(int width, bool shown);

  /// The paper that was used last; nothing before that. Which way it lay is not remembered.
  [[nodiscard]] std::optional<views::PrintSetup> Paper();
  void SavePaper(const views::PrintSetup& setup);

  /// The branches that the user leaves open in each book.
  [[nodiscard]] book::KeptBranches& Branches() { return branches_; }

 private:
  [[nodiscard]] long Number(const char* section, const char* key, long fallback);
  void Write(const char* section, const std::string& key, const std::string& value);
  /// Writes what has been changed here, and takes over what other windows have written.
  void Reread() { file_.SetFileName(path_); }

  std::string path_;
  book::SharedSettingsFile file_;
  book::KeptBranches branches_;
  book::RecentBooks recent_;
};

}  // namespace desk::app
