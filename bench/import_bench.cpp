#include "import_bench.h"

#include <functional>
#include <stdexcept>
#include <vector>

#include "bare_connection.h"
#include "book/book.h"
#include "book/copy.h"
#include "book/database/connection_string.h"
#include "book/exchange/csv.h"
#include "book/exchange/export_chart.h"
#include "book/exchange/import_chart.h"
#include "chart.h"

namespace tavrix::bench {

namespace {

using desk::book::AccountField;
using desk::book::Book;
using Run = std::function<void(const std::string&)>;

constexpr int kAccounts = 100000;
constexpr int kRounds = 3;
constexpr double kFileLimit = 6;
constexpr double kServerLimit = 3;

/// The book's own chart as a file, each account with another name and every second one sealed or
/// not as well.
struct Source {
  desk::book::SourceTable table;
  desk::book::ImportOptions options;

  Source(Book& book, int round) {
    auto chart = desk::book::ReadAccounts(book.GetSession());
    bool odd = false;
    for (auto& kept : chart) {
      kept.account.Text(AccountField::kName) += std::to_string(round);
      odd = !odd;
      if (odd)
        kept.account.SetFlag(AccountField::kSealed, !kept.account.Flag(AccountField::kSealed));
    }
    const std::string text = desk::book::ChartAsCsv(chart);
    table = desk::book::ReadCsv(text.substr(3), ',');
    options.header = 0;
    options.columns = desk::book::MatchHeader(table.rows.front());
  }
};

void Measure(Figures& figures, Book& book, bool server, const Run& run) {
  const std::string engine = server ? "server" : "sqlite";
  std::vector<double> bare;
  std::vector<double> planned;
  std::vector<double> imported;
  for (int round = 0; round < kRounds; ++round) {
    bare.push_back(PassedTime([&] {
      run("update gl_code set ccode_name=ccode_name||'x',bclose=case when i_id%2=0 then 1-bclose "
          "else bclose end");
    }));
    const Source source(book, round);
    desk::book::ImportPlan plan;
    planned.push_back(
        PassedTime([&] { plan = PlanImport(book.GetSession(), source.table, source.options); }));
    if (plan.Count(desk::book::ImportState::kChange) != static_cast<std::size_t>(kAccounts)) {
      throw std::runtime_error("the import does not change every account");
    }
    imported.push_back(
        PassedTime([&] { ImportChart(book.GetSession(), source.table, source.options, plan); }));
    if (server) run("vacuum analyze");  // what one leaves behind is not the other's
  }
  const double floor = MedianOf(bare);
  Figures::Tell(engine + ": bare update of all accounts", kAccounts, floor, "ms");
  Figures::Tell(engine + ": plan of the import", kAccounts, MedianOf(planned), "ms");
  Figures::Tell(engine + ": import", kAccounts, MedianOf(imported), "ms");
  figures.Print(engine + ": import that changes all over a bare update", kAccounts,
                MedianOf(imported) / floor, server ? kServerLimit : kFileLimit);
}

}  // namespace

void MeasureImport(Figures& figures, const std::string& folder, const std::string& server) {
  const std::string file = folder + "/imported.book";
  (void)Book::Create(file);
  FillChart(file, kAccounts);
  if (!server.empty()) (void)desk::book::CopyBook(file, server);
  {
    Book book = Book::Open(file);
    const Connection connection(file);
    Measure(figures, book, false, [&](const std::string& sql) { connection.Run(sql); });
  }
  if (server.empty()) return;
  Book book = Book::Open(server);
  const BareConnection connection(desk::book::DriverText(server));
  Measure(figures, book, true, [&](const std::string& sql) { connection.Run(sql); });
}

}  // namespace tavrix::bench
