#pragma once

#include <windows.h>

#include <chrono>
#include <filesystem>
#include <string>

#include "app/frame/report_pane.h"
#include "book/book.h"
#include "book/files/log_file.h"
#include "viewkit/ports.h"
#include "views/commands.h"

namespace desk::app {

/// What the desk writes down of itself: docs/debugging.md has the words. No passwords.
class DeskLog {
 public:
  explicit DeskLog(const std::filesystem::path& folder);

  void Started() const;
  void Ended() const { file_.Write("end", ""); }
  void Opened(const book::Book& book, const std::wstring& place) const;
  void Closed(const std::wstring& place) const;
  void Reported(const Report& report) const;
  /// What others have changed could not be read.
  void Unread(const std::wstring& why) const;
  void Done(views::Command command, std::chrono::milliseconds taken) const;
  [[nodiscard]] std::wstring Path() const { return file_.Path().wstring(); }

 private:
  book::LogFile file_;
};

/// Shows the folder in the system's file manager.
void OpenFolder(const std::filesystem::path& folder);

/// The dialog about program and book; `book` is null without an open one.
void ShowAbout(tavrix::viewkit::UserPort& user, const DeskLog& log, const book::Book* book,
               const std::wstring& place);

}  // namespace desk::app
