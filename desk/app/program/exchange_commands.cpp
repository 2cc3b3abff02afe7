#include "app/program/exchange_commands.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>

#include "app/frame/file_dialog.h"
#include "app/frame/today.h"
#include "app/program/book_place.h"
#include "app/program/book_settings.h"
#include "app/progress/long_work.h"
#include "book/exchange/export_file.h"
#include "book/exchange/import_chart.h"
#include "book/files/files.h"
#include "book/files/paths.h"
#include "book/ledger/mnemonics.h"
#include "host/utf.h"
#include "views/date_text.h"
#include "views/import_dialog.h"
#include "views/mnemonic_dialog.h"

namespace desk::app {
namespace {

namespace fs = std::filesystem;
using tavrix::host::Narrow;
using tavrix::host::Wide;

constexpr wchar_t kSources[] = L"科目表 (*.xlsx;*.csv;*.txt)\0*.xlsx;*.csv;*.txt\0所有文件\0*.*\0";

/// In the order of the endings.
constexpr wchar_t kTargets[] =
    L"Excel 工作簿 (*.xlsx)\0*.xlsx\0CSV 文本 (*.csv)\0*.csv\0网页，可打印 (*.html)\0*.html\0";

/// The company, or else the book.
std::string SubjectOf(const Workplace& place) {
  const std::string company = CompanyOf(place.book);
  return company.empty() ? Narrow(NameOf(place.file)) : company;
}

/// The file that the user has named, with an ending; nothing when one that is there is to stay.
std::optional<fs::path> TargetOf(const Workplace& place, const ChosenFile& chosen) {
  fs::path path = chosen.path;
  if (book::HasExportEnding(path)) return path;
  constexpr std::size_t kForms = std::size(book::kExportEndings);
  path += book::kExportEndings[std::clamp<std::size_t>(chosen.type, 1, kForms) - 1];
  if (!fs::exists(path)) return path;
  using User = tavrix::viewkit::UserPort;
  const auto answer =
      place.user.Ask("文件“" + book::PathText(path.filename()) + "”已存在，是否替换？", "导出科目",
                     User::Icon::kQuestion, User::Buttons::kYesNoDefaultNo);
  if (answer != User::Answer::kYes) return std::nullopt;
  return path;
}

}  // namespace

void ImportAccounts(const Workplace& place) {
  const auto chosen = AskFile(place.frame.Hwnd(), {.title = L"导入科目", .types = kSources});
  if (!chosen) return;
  const fs::path path = chosen->path;
  book::Session& session = place.book.GetSession();
  views::ImportDialog dialog(
      {.file = book::PathText(path.filename()),
       .session = session,
       .run =
           [&](const book::SourceTable& table, const book::ImportOptions& options,
               const book::ImportPlan& plan) {
             RunLong(place.frame.Hwnd(), L"导入科目", [&](const book::Progress& progress) {
               book::ImportChart(session, table, options, plan, progress);
             });
           }},
      book::ImportSource(book::ReadFile(path)), place.user);
  place.user.ShowModal(dialog);
  if (!dialog.Done()) return;
  place.frame.SetMessage(L"已导入：" + Wide(views::ImportDialog::SummaryOf(dialog.Shown())));
}

void ExportAccounts(const Workplace& place) {
  const std::string subject = SubjectOf(place);
  const auto chosen =
      AskFile(place.frame.Hwnd(), {.open = false,
                                   .title = L"导出科目",
                                   .types = kTargets,
                                   .proposed = FileNameOf(Wide(subject)) + L"科目表"});
  if (!chosen) return;
  const auto path = TargetOf(place, *chosen);
  if (!path) return;
  const std::size_t count = book::ExportChart(
      place.book.GetSession(), *path,
      {.title = "会计科目表", .subtitle = subject + "　" + views::DateText(Today())});
  place.frame.SetMessage(L"已导出 " + std::to_wstring(count) + L" 个科目：" + path->wstring());
}

void FillMnemonics(const Workplace& place) {
  book::Session& session = place.book.GetSession();
  std::size_t written = 0;
  views::MnemonicDialog dialog(book::ReadMnemonics(session), place.user,
                               [&](const std::vector<book::NewMnemonic>& wanted) {
                                 written = book::WriteMnemonics(session, wanted);
                               });
  place.user.ShowModal(dialog);
  if (dialog.Written() == 0) return;
  place.frame.SetMessage(L"已写入 " + std::to_wstring(written) + L" 个科目的助记码");
}

}  // namespace desk::app
