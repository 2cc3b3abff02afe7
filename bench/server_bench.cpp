#include "server_bench.h"

#include <chrono>
#include <stdexcept>
#include <vector>

#include "bare_connection.h"
#include "book/copy.h"
#include "book/database/connection_string.h"
#include "chart.h"
#include "host/account.h"
#include "support/temp_folder.h"
#include "view.h"

namespace tavrix::bench {

namespace {

constexpr int kAccounts = 100000;
constexpr double kLimit = 1.2;

int FetchPages(const BareConnection& connection) {
  const std::string start = "select ccode,ccode_name,cexch_name,'',i_id,igrade,cclass from gl_code";
  std::u16string buffer;
  int rows = connection.FetchAndCopy(start + " order by ccode", buffer);
  for (const std::string_view category : host::kCategories) {
    buffer.clear();
    rows += connection.FetchAndCopy(
        start + " where cclass='" + std::string(category) + "' order by ccode", buffer);
  }
  return rows;
}

}  // namespace

void MeasureServer(Figures& figures, const std::string& place) {
  const auto started = std::chrono::steady_clock::now();
  const test::TempFolder folder;
  const std::string file = folder.File("chart.book");
  (void)desk::book::Book::Create(file);
  FillChart(file, kAccounts);
  (void)desk::book::CopyBook(file, place);
  const std::chrono::duration<double> filled = std::chrono::steady_clock::now() - started;
  Figures::Tell("server: copying a book", kAccounts, filled.count(), "s");
  View view(place);
  const BareConnection connection(desk::book::DriverText(place));
  view.Refresh();
  const int rows = FetchPages(connection);
  int shown = 0;
  for (int page = 0; page < maintenance::Kjkm::kPages; ++page) shown += view.Page(page).Rows() - 1;
  if (rows != shown) throw std::runtime_error("the pages do not hold the rows of the server");
  const Pair pair = InTurn(
      7, [&] { (void)FetchPages(connection); }, [&] { view.Refresh(); });
  Figures::Tell("server: bare fetch", kAccounts, pair.floor, "ms");
  Figures::Tell("server: refresh", kAccounts, pair.measured, "ms");
  figures.Print("server: refresh over bare fetch", kAccounts, pair.Ratio(), kLimit);
}

}  // namespace tavrix::bench
