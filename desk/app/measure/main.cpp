// Measures the view in the desk's own container, through COM: a refresh beside stepping through the
// same rows and reading their cells in the same process, painting while scrolling, searching and
// filtering. The books come from the bench program (--make).

#include <windows.h>

#include <commctrl.h>
#include <ole2.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "app/automation/com_system.h"
#include "app/automation/row_array.h"
#include "app/automation/row_texts.h"
#include "app/automation/view_grid.h"
#include "app/automation/window_wheel.h"
#include "app/com.h"
#include "app/controls/kjkm_view.h"
#include "bench/chart.h"
#include "bench/figures.h"
#include "book/book.h"
#include "book/host/grid_navigator.h"
#include "com/abi.h"
#include "com/failure.h"
#include "component/adapters/row_sets.h"
#include "host/account.h"
#include "host/grid_update.h"
#include "viewkit/grid/flex_grid.h"
#include "viewkit/win32/handles.h"
#include "viewkit/win32/window.h"

namespace desk::app {
namespace {

namespace bench = tavrix::bench;
namespace host = tavrix::host;
namespace win32 = tavrix::viewkit::win32;

constexpr double kRefreshLimit = 3;
constexpr double kRepaintLimit = 2;
constexpr double kRowsLimit = 1;
constexpr int kFew = 100;
constexpr int kMany = 100000;

/// The least that a refresh can do: step through the rows of the seven pages and read their cells.
void ReadPages(const bench::Connection& connection) {
  const std::string columns =
      "select ccode,ccode_name,cexch_name,'',i_id,igrade,cclass from gl_code";
  (void)connection.StepAndRead(columns + " order by ccode");
  for (const std::string_view category : host::kCategories) {
    (void)connection.StepAndRead(columns + " where cclass='" + std::string(category) +
                                 "' order by ccode");
  }
}

HWND MakeFrame() {
  constexpr int kWidth = 1000;
  constexpr int kHeight = 700;
  return CreateWindowExW(0, WC_STATICW, L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, kWidth,
                         kHeight, nullptr, nullptr, win32::ThisModule(), nullptr);
}

/// A chart of accounts on disk, and the view on it in a window.
class Stage {
 public:
  explicit Stage(const std::string& path) : book_(book::Book::Open(path)), frame_(MakeFrame()) {
    book_.Environment().user_folder = std::filesystem::temp_directory_path().string();
    book_.Environment().make_mouse_event = [] { return WindowWheel::Make(); };
    ViewEvents events;
    events.message = [](const std::wstring&) {};
    events.report = [](const std::wstring& text, long, const std::wstring&) {
      std::printf("# report: %ls\n", text.c_str());
    };
    view_ = std::make_unique<KjkmView>(
        ContainerPlan{.area = frame_.Get(), .frame = frame_.Get(), .display_name = L"Kjkm1"},
        std::move(events));
    const auto system = Make<ComSystem>(book_.System());
    view_->Start(system.Get(), book_.System()->CreateGridNavigator());
  }

  [[nodiscard]] KjkmView& View() { return *view_; }
  void Refresh() {
    if (!view_->Call(&IFormUI::Refresh)) throw std::runtime_error("the view does not refresh");
  }
  /// Brings `row` to the top and paints the window at once.
  void ScrollTo(int row) {
    IFlexGrid& grid = view_->CurrentGrid();
    long window = 0;
    grid.put_TopRow(row);
    grid.get_hWnd(&window);
    const HWND hwnd = reinterpret_cast<HWND>(static_cast<INT_PTR>(window));
    RedrawWindow(hwnd, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
  }
  void ExpandAll() { SetEachCollapsed(false); }
  /// One row after the other, as a host does that has no more than the grid's members.
  void SetEachCollapsed(bool collapsed) {
    IFlexGrid& grid = view_->CurrentGrid();
    long rows = 0;
    grid.get_Rows(&rows);
    for (long row = 1; row < rows; ++row) grid.put_IsCollapsed(row, tavrix::com::Flag(collapsed));
  }
  /// As the desk does, through `IGridRows`.
  void SetAllCollapsed(bool collapsed) {
    ViewGrid grid{tavrix::com::ComPtr<IFlexGrid>(&view_->CurrentGrid())};
    const tavrix::host::GridUpdate update(grid);
    for (int row = 1; row < grid.Rows(); ++row) grid.SetCollapsed(row, collapsed);
  }

 private:
  book::Book book_;
  win32::OwnedWindow frame_;
  std::unique_ptr<KjkmView> view_;
};

/// Gives the milliseconds of a refresh.
double MeasureRefresh(bench::Figures& figures, Stage& stage, const std::string& path, int accounts,
                      int rounds) {
  const bench::Connection connection(path);
  ReadPages(connection);
  const bench::Pair pair = bench::InTurn(
      rounds, [&] { ReadPages(connection); }, [&] { stage.Refresh(); });
  bench::Figures::Tell("refresh through COM", accounts, pair.measured, "ms");
  figures.Print("refresh through COM over stepping and reading", accounts, pair.Ratio(),
                kRefreshLimit);
  return pair.measured;
}

/// What the desk does after each save: beside a plain refresh it puts back what the user had open.
void MeasureReload(Stage& stage, int accounts) {
  const double closed = bench::Median(3, [&] { stage.View().Reload(); });
  bench::Figures::Tell("reload, all branches closed", accounts, closed, "ms");
  stage.ExpandAll();
  const double open = bench::Median(3, [&] { stage.View().Reload(); });
  bench::Figures::Tell("reload, all branches open", accounts, open, "ms");
  stage.Refresh();
}

/// The same number of jumps in every window, each to another row.
double RepaintTime(Stage& stage, int rows) {
  constexpr int kRepaints = 200;
  constexpr int kStep = 400;
  constexpr int kLastPage = 40;  // more than a window of this size shows
  stage.ExpandAll();
  return bench::Median(3, [&] {
    for (int i = 1; i <= kRepaints; ++i) stage.ScrollTo(1 + i * kStep % (rows - kLastPage));
  });
}

void MeasureRepaint(bench::Figures& figures, Stage& small, Stage& large) {
  const double few = RepaintTime(small, kFew);
  const double many = RepaintTime(large, kMany);
  figures.Print("one repaint while scrolling, over that of 100 rows", kMany, many / few,
                kRepaintLimit);
}

/// The first page as a model alone, with the navigator that the view reaches through COM.
class PlainPage {
 public:
  explicit PlainPage(const std::string& path) : book_(book::Book::Open(path)) {
    const auto rows = book_.System()->GetDatabase()->OpenSql(kPageSql, host::kStatementMode);
    grid_.SetCols(kColumns);
    for (int col = kLevelColumn - 1; col < kColumns; ++col) grid_.SetColHidden(col, true);
    grid_.LoadRows(rows->OpenRecordset()->GetRows());
    (void)grid_.SetOutlineFromColumn(kLevelColumn);
    grid_.Outline(0);
  }
  void Find(const std::string& text) { (void)search_.Find(grid_, host::Value(text)); }
  void Filter(const char* text) { (void)search_.Filter(grid_, host::Value(text)); }
  void SetAllCollapsed(bool collapsed) {
    for (int row = 1; row < grid_.Rows(); ++row) grid_.SetCollapsed(row, collapsed);
  }

  static constexpr const char* kPageSql =
      "select ccode,ccode_name,cexch_name,'',i_id,igrade,cclass from gl_code order by ccode";

 private:
  static constexpr int kColumns = 7;
  static constexpr int kLevelColumn = 5;

  book::Book book_;
  tavrix::viewkit::FlexGrid grid_{"Vs"};
  book::GridSearch search_;
};

/// What a host does with all rows, beside the refresh that brings them, and without COM between.
void MeasureRows(bench::Figures& figures, Stage& stage, const std::string& path, double refresh,
                 int accounts, int rounds) {
  PlainPage page(path);
  const auto measure = [&](const char* name, auto&& plain, auto&& through_com) {
    const bench::Pair pair = bench::InTurn(rounds, plain, through_com);
    bench::Figures::Tell(std::string(name) + " in the model", accounts, pair.floor, "ms");
    bench::Figures::Tell(std::string(name) + " through COM", accounts, pair.measured, "ms");
    figures.Print(std::string(name) + " through COM over a refresh", accounts,
                  pair.measured / refresh, kRowsLimit);
  };
  measure(
      "expand", [&] { page.SetAllCollapsed(false); }, [&] { stage.SetAllCollapsed(false); });
  measure(
      "collapse", [&] { page.SetAllCollapsed(true); }, [&] { stage.SetAllCollapsed(true); });
  for (const bool collapsed : {false, true}) {
    const double each = bench::Median(rounds, [&] { stage.SetEachCollapsed(collapsed); });
    bench::Figures::Tell(
        collapsed ? "collapse, a call for each row" : "expand, a call for each row", accounts, each,
        "ms");
  }
  // Another text each time: what was found is kept for the next search.
  int searches = 0;
  measure(
      "find", [&] { page.Find("no such account " + std::to_string(++searches)); },
      [&] { stage.View().Find(L"no such account " + std::to_wstring(++searches)); });
  measure(
      "filter", [&] { page.Filter("99"); }, [&] { stage.View().Filter(L"99"); });
  measure(
      "clear", [&] { page.Filter(""); }, [&] { stage.View().Filter(L""); });
}

/// Where the time between the two sides goes.
void MeasureCrossing(const std::string& path, int accounts) {
  book::Book book = book::Book::Open(path);
  const auto session = book.System()->GetDatabase();
  const auto rows = [&] {
    return std::dynamic_pointer_cast<book::SnapshotRecordset>(
        session->OpenSql(PlainPage::kPageSql, host::kStatementMode)->OpenRecordset());
  };
  const double texts = bench::Median(3, [&] {
    const RowTexts made = TextsOfRows(*rows());
    SafeArrayDestroy(made.ends);
    SysFreeString(made.text);
  });
  bench::Figures::Tell("rows into texts", accounts, texts, "ms");
  const auto array = [&] {
    VARIANT value{};
    value.vt = VT_ARRAY | VT_VARIANT;
    value.parray = ArrayOfRows(*rows());
    return value;
  };
  VARIANT made{};
  const double making = bench::Median(3, [&] { made = array(); });
  bench::Figures::Tell("rows into an array", accounts, making, "ms");
  const Variant owned(made);
  const double reading = bench::Median(3, [&] { (void)tavrix::component::ToRowSet(owned); });
  bench::Figures::Tell("array into a row set", accounts, reading, "ms");
  const double clearing = bench::Median(1, [&] { VariantClear(&made); });
  bench::Figures::Tell("array cleared", accounts, clearing, "ms");
}

std::string ChartIn(const std::filesystem::path& folder, int accounts) {
  return (folder / ("chart" + std::to_string(accounts) + ".book")).string();
}

int Measure(const std::filesystem::path& folder, int rounds) {
  bench::Figures figures;
  const std::string path = ChartIn(folder, kMany);
  Stage small(ChartIn(folder, kFew));
  Stage large(path);
  MeasureCrossing(path, kMany);
  const double refresh = MeasureRefresh(figures, large, path, kMany, rounds);
  MeasureReload(large, kMany);
  MeasureRepaint(figures, small, large);
  MeasureRows(figures, large, path, refresh, kMany, rounds);
  return figures.Within() ? 0 : 1;
}

}  // namespace
}  // namespace desk::app

/// The arguments: the folder with "chart100.book" and "chart100000.book", and how often to measure
/// what is measured in turn.
int main(int count, char** arguments) {
  if (count < 2) {
    std::fprintf(stderr, "usage: desk_measure FOLDER [ROUNDS]\n");
    return 2;
  }
  OleInitialize(nullptr);
  int result = 1;
  try {
    result = desk::app::Measure(arguments[1], count > 2 ? std::atoi(arguments[2]) : 7);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
  }
  OleUninitialize();
  return result;
}
