#include "list_bench.h"

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>

#include "book/copy.h"
#include "book/host/grid_navigator.h"
#include "chart.h"
#include "host/account.h"
#include "view.h"

namespace tavrix::bench {

namespace {

/// Another text each time: what was found is kept for the next search.
void FindAnother(desk::book::GridSearch& search, viewkit::FlexGrid& grid) {
  static int searches = 0;
  (void)search.Find(grid, host::Value("no such account " + std::to_string(++searches)));
}

constexpr double kRefreshLimit = 1.15;
constexpr double kUpdateLimit = 1.0 / 15;
constexpr double kRowsLimit = 1.0 / 2;
constexpr double kLoopLimit = 1;     // 200,000 calls
constexpr double kMemoryLimit = 64;  // MiB

constexpr const char* kColumns = "select ccode,ccode_name,cexch_name,'',i_id,igrade,cclass";

/// The least that a refresh can do: step through the rows of the seven pages and read their cells.
int ReadPages(const Connection& connection) {
  int rows = connection.StepAndRead(std::string(kColumns) + " from gl_code order by ccode");
  for (const std::string_view category : host::kCategories) {
    std::string sql = kColumns;
    sql.append(" from gl_code where cclass='").append(category).append("' order by ccode");
    rows += connection.StepAndRead(sql);
  }
  return rows;
}

Pair MeasureRefresh(const std::string& path, int rounds) {
  View view(path);
  const Connection connection(path);
  view.Refresh();
  const int rows = ReadPages(connection);
  int shown = 0;
  for (int page = 0; page < maintenance::Kjkm::kPages; ++page) shown += view.Page(page).Rows() - 1;
  if (rows != shown) throw std::runtime_error("the pages do not hold the rows of the book");
  return InTurn(
      rounds, [&] { (void)ReadPages(connection); }, [&] { view.Refresh(); });
}

void MeasureUpdate(Figures& figures, const std::string& path, long size) {
  View view(path);
  view.Refresh();
  const int middle = view.Page(0).Rows() / 2;
  std::vector<double> updates;
  const double refresh = Median(7, [&] { view.Refresh(); });
  for (int round = 0; round < 7; ++round) {
    const int id = std::stoi(std::string(view.Page(0).TextMatrix(middle, 4)));
    view.Edit(middle, [&](editing::FmBkmAdd& dialog) {
      updates.push_back(Median(1, [&] { dialog.EvHasLoad.Raise(false, id); }));
    });
  }
  std::sort(updates.begin(), updates.end());
  Figures::Tell("update", size, updates[3], "ms");
  figures.Print("one row brought up to date over a refresh", size, updates[3] / refresh,
                kUpdateLimit);
}

/// What goes through all rows of the first page, beside the refresh that brings them.
void MeasureRows(Figures& figures, const std::string& path, long size) {
  View view(path);
  view.Refresh();
  const double refresh = Median(7, [&] { view.Refresh(); });
  viewkit::FlexGrid& grid = view.Page(0);
  desk::book::GridSearch search;
  const auto measure = [&](const char* name, double limit, auto&& work) {
    const double time = Median(7, work);
    Figures::Tell(name, size, time, "ms");
    figures.Print(std::string(name) + " over a refresh", size, time / refresh, limit);
  };
  const auto set_all = [&](bool collapsed) {
    for (int row = 1; row < grid.Rows(); ++row) grid.SetCollapsed(row, collapsed);
  };
  measure("find", kRowsLimit, [&] { FindAnother(search, grid); });
  measure("filter", kRowsLimit, [&] { (void)search.Filter(grid, host::Value("99")); });
  measure("clear", kRowsLimit, [&] { (void)search.Filter(grid, host::Value("")); });
  // Row by row and with the grid scrolled, so that each change asks what is shown now.
  grid.SetBounds({0, 0, 9000, 6000});
  set_all(false);
  grid.SetTopRow(grid.Rows() / 2);
  measure("collapse and expand", kLoopLimit, [&] {
    set_all(true);
    set_all(false);
  });
}

std::string Chart(const std::string& folder, int accounts) {
  std::string path = folder + "/chart" + std::to_string(accounts) + ".book";
  (void)desk::book::Book::Create(path);
  FillChart(path, accounts);
  return path;
}

double PeakMiB() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    if (word != "VmHWM:") continue;
    double kilobytes = 0;
    status >> kilobytes;
    return kilobytes / 1024;
  }
  throw std::runtime_error("no VmHWM");
}

/// What a process of its own, which has seen nothing else, reports as its peak.
double PeakOfRefresh(const std::string& path) {
  const std::string program = std::filesystem::read_symlink("/proc/self/exe").string();
  const std::string command = "'" + program + "' --peak '" + path + "'";
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) throw std::runtime_error("popen");
  double peak = NAN;
  const bool told = std::fscanf(pipe, "%lf", &peak) == 1;
  if (pclose(pipe) != 0 || !told) throw std::runtime_error("the measured process failed");
  return peak;
}

}  // namespace

void MeasureList(Figures& figures, const std::string& folder) {
  struct Size {
    int accounts;
    int rounds;
  };
  double before = 0;
  for (const Size size : {Size{1000, 25}, Size{10000, 11}, Size{100000, 7}}) {
    const std::string path = Chart(folder, size.accounts);
    const Pair pair = MeasureRefresh(path, size.rounds);
    Figures::Tell("refresh", size.accounts, pair.measured, "ms");
    // Fixed costs weigh at the small sizes; the limit that counts is the one at 100,000.
    const double limit = size.accounts == 100000 ? kRefreshLimit : 2 * kRefreshLimit;
    figures.Print("refresh over stepping and reading", size.accounts, pair.Ratio(), limit);
    // The queries sort, which is n log n; the view's share must not grow beyond that.
    if (before > 0) {
      figures.Print("refresh: growth of the ratio from a tenth", size.accounts,
                    pair.Ratio() / before, 1.25);
    }
    before = pair.Ratio();
    if (size.accounts == 100000) {
      MeasureUpdate(figures, path, size.accounts);
      MeasureRows(figures, path, size.accounts);
    }
  }
}

void MeasureBook(Figures& figures, const std::string& path) {
  const std::string faults = desk::book::Book::Open(path).Faults();
  if (!faults.empty()) throw std::runtime_error("this book cannot be measured:\n" + faults);
  const Pair pair = MeasureRefresh(path, 7);
  const int accounts = Connection(path).StepAndRead("select i_ID from gl_code");
  if (accounts == 0) throw std::runtime_error("this book has no accounts");
  Figures::Tell("refresh", accounts, pair.measured, "ms");
  figures.Print("refresh over stepping and reading", accounts, pair.Ratio(), kRefreshLimit);
  MeasureUpdate(figures, path, accounts);
}

void MakeBooks(const std::string& folder, const std::vector<int>& sizes) {
  for (const int size : sizes) (void)Chart(folder, size);
}

void MakeLedger(const std::string& path, int accounts, long entries) {
  (void)desk::book::Book::Create(path);
  FillChart(path, accounts);
  FillVouchers(Connection(path), entries);
}

void PrintCopy(const std::string& from, const std::string& to) {
  const auto start = std::chrono::steady_clock::now();
  std::int64_t rows = 0;
  for (const desk::book::CopiedTable& table : desk::book::CopyBook(from, to)) rows += table.rows;
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  std::printf("%.2f %.1f %lld\n", taken.count(), PeakMiB(), static_cast<long long>(rows));
}

namespace {

struct Step {
  const char* name;
  double time;  ///< milliseconds
};

/// What a bookkeeper waits for in a chart of `size` accounts.
std::vector<Step> StepsOf(const std::string& path, int size) {
  std::vector<Step> steps;
  const auto measure = [&](const char* name, int rounds, auto&& work) {
    steps.push_back({name, Median(rounds, work)});
    Figures::Tell(name, size, steps.back().time, "ms");
  };
  measure("opening and the first refresh", 3, [&] { View(path).Refresh(); });
  View view(path);
  measure("refresh", 5, [&] { view.Refresh(); });
  desk::book::GridSearch search;
  viewkit::FlexGrid& grid = view.Page(0);
  measure("find", 5, [&] { FindAnother(search, grid); });
  measure("filter", 5, [&] { (void)search.Filter(grid, host::Value("99")); });
  measure("clear", 5, [&] { (void)search.Filter(grid, host::Value("")); });
  int leaf = size / 2;
  measure("deleting an account", 5, [&] {
    while (grid.HasRowsBelow(leaf)) ++leaf;
    grid.SetRow(leaf);
    if (!view.Control().FileDelete()) throw std::runtime_error("not deleted");
  });
  measure("copying into another file", 1,
          [&] { (void)desk::book::CopyBook(path, path + ".copy"); });
  return steps;
}

}  // namespace

void MeasureLarge(Figures& figures, const std::string& folder) {
  constexpr int kLarge = 1000000;
  constexpr double kGrowthLimit = 1.5;
  const std::vector<Step> tenth = StepsOf(Chart(folder, kLarge / 10), kLarge / 10);
  const std::vector<Step> large = StepsOf(Chart(folder, kLarge), kLarge);
  for (std::size_t i = 0; i < large.size(); ++i) {
    figures.Print(std::string(large[i].name) + ": ten times the accounts, over ten times the time",
                  kLarge, large[i].time / tenth[i].time / 10, kGrowthLimit);
  }
}

void PrintPeak(const std::string& path) {
  View view(path);
  view.Refresh();
  view.Refresh();
  std::printf("%.3f\n", PeakMiB());
}

void MeasureMemory(Figures& figures, const std::string& folder) {
  const std::string empty = Chart(folder, 0);
  const std::string path = folder + "/chart100000.book";
  const Connection connection(path);
  (void)ReadPages(connection);
  const double cache = static_cast<double>(connection.CacheUsed()) / (1024 * 1024);
  const double peak = PeakOfRefresh(path) - PeakOfRefresh(empty);
  Figures::Tell("page cache left out", 100000, cache, "MiB");
  figures.Print("peak memory of seven pages, MiB", 100000, peak - cache, kMemoryLimit);
}

}  // namespace tavrix::bench
