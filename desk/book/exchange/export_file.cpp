#include "book/exchange/export_file.h"

#include <algorithm>

#include "book/files/files.h"
#include "book/files/paths.h"
#include "host/text.h"

namespace desk::book {

namespace {

std::string EndingOf(const std::filesystem::path& path) {
  return tavrix::host::LowerCase(PathText(path.extension()));
}

}  // namespace

bool HasExportEnding(const std::filesystem::path& path) {
  return std::ranges::find(kExportEndings, EndingOf(path)) != std::end(kExportEndings);
}

std::size_t ExportChart(Session& session, const std::filesystem::path& path,
                        const PageTitle& page) {
  const std::vector<KeptAccount> chart = ReadAccounts(session);
  const std::string ending = EndingOf(path);
  ReplaceFile(path, ending == ".csv"    ? ChartAsCsv(chart)
                    : ending == ".html" ? ChartAsHtml(chart, page)
                                        : ChartAsXlsx(chart));
  return chart.size();
}

}  // namespace desk::book
