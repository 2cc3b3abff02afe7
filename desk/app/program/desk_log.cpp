#include "app/program/desk_log.h"

#include <shellapi.h>

#include <array>
#include <utility>

#include "app/program/book_place.h"
#include "app/program/book_settings.h"
#include "book/database/connection_string.h"
#include "book/odbc/wire_text.h"
#include "book/session/engine_text.h"
#include "host/report.h"
#include "host/utf.h"
#include "tavrix_version.h"
#include "viewkit/win32/clipboard.h"
#include "views/about_dialog.h"

namespace desk::app {
namespace {

using tavrix::host::Narrow;

constexpr wchar_t kFile[] = L"desk.log";

std::string Now() {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  std::array<wchar_t, 32> text{};
  swprintf(text.data(), text.size(), L"%04d-%02d-%02d %02d:%02d:%02d.%03d", now.wYear, now.wMonth,
           now.wDay, now.wHour, now.wMinute, now.wSecond, now.wMilliseconds);
  return Narrow(text.data());
}

std::string VersionOf(book::Connection& connection) {
  const int version = connection.SchemaVersion();
  return version == 0 ? "其他程序建立" : std::to_string(version);
}

std::string PlaceText(const std::wstring& place) {
  return book::ShownPlace(Narrow(place));
}

/// Without the mark of the mnemonic and what shows it.
std::string CommandName(views::Command command) {
  if (const views::CommandInfo* info = views::FindCommand(command)) {
    std::string name = info->menu_text;
    return name.substr(0, name.find('('));
  }
  return "最近的账簿";
}

}  // namespace

DeskLog::DeskLog(const std::filesystem::path& folder)
    : file_({.path = folder / kFile,
             .writer = "[" + std::to_string(GetCurrentProcessId()) + "]",
             .now = &Now}) {}

void DeskLog::Started() const {
  file_.Write("start", TAVRIX_VERSION);
}

void DeskLog::Opened(const book::Book& book, const std::wstring& place) const {
  tavrix::host::IgnoreErrors([&] {
    book::Connection& connection = book.GetSession().Own();
    file_.Write("open", PlaceText(place) + ", " + book::EngineText(connection) + ", schema " +
                            std::to_string(connection.SchemaVersion()) +
                            (book.ReadOnly() ? ", read only" : ""));
  });
}

void DeskLog::Closed(const std::wstring& place) const {
  tavrix::host::IgnoreErrors([&] { file_.Write("close", PlaceText(place)); });
}

void DeskLog::Reported(const Report& report) const {
  tavrix::host::IgnoreErrors([&] {
    file_.Write("report", "level " + std::to_string(report.level) + " " + Narrow(report.title) +
                              ": " + Narrow(report.text));
  });
}

void DeskLog::Unread(const std::wstring& why) const {
  tavrix::host::IgnoreErrors([&] { file_.Write("unread", Narrow(why)); });
}

void DeskLog::Done(views::Command command, std::chrono::milliseconds taken) const {
  tavrix::host::IgnoreErrors([&] {
    file_.Write("command", CommandName(command) + " " + std::to_string(taken.count()) + " ms");
  });
}

void OpenFolder(const std::filesystem::path& folder) {
  ShellExecuteW(nullptr, L"open", folder.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
}

void ShowAbout(tavrix::viewkit::UserPort& user, const DeskLog& log, const book::Book* book,
               const std::wstring& place) {
  std::vector<views::AboutDialog::Fact> facts;
  if (book != nullptr) {
    book::Connection& connection = book->GetSession().Own();
    facts = {{"账簿", Narrow(NameOf(place))},
             {"单位", CompanyOf(*book)},
             {"位置", PlaceText(place)},
             {"数据库", book::EngineText(connection)},
             {"账簿格式", VersionOf(connection)},
             {"使用方式", book->ReadOnly() ? "只读" : "读写"},
             {"传输", book::WireSentence(connection.Encryption())}};
  }
  facts.push_back({"日志文件", Narrow(log.Path())});
  views::AboutDialog dialog(
      "会计科目 " TAVRIX_VERSION "，维护会计科目表的示例程序，使用 Tavrix 控件", facts,
      {.copy =
           [](const std::string& text) {
             tavrix::viewkit::win32::CopyText(GetActiveWindow(), text);
           },
       .open_log = [&log] { OpenFolder(std::filesystem::path(log.Path()).parent_path()); }});
  user.ShowModal(dialog);
}

}  // namespace desk::app
