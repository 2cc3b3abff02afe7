#include "layout_bench.h"

#include <array>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "book/book.h"
#include "book/files/files.h"
#include "book/files/paths.h"
#include "book/host/settings_file.h"
#include "chart.h"
#include "picker_view.h"
#include "view.h"
#include "viewkit/grid/number_format.h"
#include "viewkit/layout/m_mode.h"

namespace tavrix::bench {

namespace {

using desk::book::PathOf;

constexpr int kRows = 100000;
constexpr int kFirstTotal = 4;
constexpr int kTotals = 4;
constexpr int kRounds = 21;
constexpr double kTotalsLimit = 3;
constexpr double kStatusLimit = 5;
constexpr double kGrowthLimit = 2;  // none, but for the noise of a clock that ticks slowly

/// Rows in order of three groups (6, 600 and 6,000 of them), a code, and four amounts.
host::RowSet Ledger() {
  host::RowSet rows(kFirstTotal + kTotals);
  for (int row = 0; row < kRows; ++row) {
    rows.AppendText("类别" + std::to_string(row * 6L / kRows));
    rows.AppendText("部门" + std::to_string(row * 600L / kRows));
    rows.AppendText("客户" + std::to_string(row * 6000L / kRows));
    rows.AppendText(std::to_string(100000 + row));
    for (int total = 0; total < kTotals; ++total) {
      const long cents = (row * 7919L + total * 104729L) % 100000000;
      const std::string part = std::to_string(100 + cents % 100);
      rows.AppendText(std::to_string(cents / 100) + "." + part.substr(1));
    }
  }
  return rows;
}

/// What the totals are made of, side by side in memory as the query left them.
double SumCells(const host::RowSet& rows) {
  std::array<double, kTotals> sums{};
  for (std::size_t row = 0; row < rows.Rows(); ++row) {
    for (std::size_t total = 0; total < kTotals; ++total) {
      sums[total] += viewkit::CellNumber(rows.Text(row, kFirstTotal + total));
    }
  }
  double sum = 0;
  for (const double each : sums) sum += each;
  return sum;
}

void MeasureTotals(Figures& figures, const std::string& folder) {
  const std::string path = folder + "/totals.txt";
  {
    desk::book::SharedSettingsFile file;
    file.SetFileName(path);
    for (int col = 0; col < 3; ++col)
      file.WriteValue("VsIsGroupOn", "VsCol" + std::to_string(col), "1");
    for (int total = 0; total < kTotals; ++total) {
      file.WriteValue("VsIsTotalOn", "VsCol" + std::to_string(kFirstTotal + total), "1");
    }
  }
  const auto book = desk::book::Book::Create(desk::book::Book::kInMemory);
  const auto system = book.System();
  const host::RowSet rows = Ledger();
  viewkit::FlexGrid grid("Vs");
  grid.SetCols(kFirstTotal + kTotals);
  // Sums of many rounds, since a clock may tick no finer than one of them takes.
  double sum = 0;
  double floor = 0;
  double measured = 0;
  for (int round = 0; round < kRounds; ++round) {
    grid.LoadRows(Ledger());
    floor += Median(1, [&] { sum = SumCells(rows); });
    measured += Median(1, [&] { viewkit::ApplyVsLayout(path, grid, false, *system); });
  }
  const int last = grid.Rows() - 1;
  double grand = 0;
  for (int total = 0; total < kTotals; ++total) {
    grand += grid.ValueMatrix(last, kFirstTotal + total);
  }
  if (grid.Rows() != 1 + kRows + 6606 + 1 || std::abs(sum - grand) > 1) {
    throw std::runtime_error("the totals are wrong");
  }
  Figures::Tell("layout: three groups, four totals", kRows, measured / kRounds, "ms");
  figures.Print("layout: groups and totals over a pass that sums", kRows, measured / floor,
                kTotalsLimit);
}

std::string Chart(const std::string& folder, int accounts) {
  std::string path = folder + "/layout" + std::to_string(accounts) + ".book";
  (void)desk::book::Book::Create(path);
  FillChart(path, accounts);
  return path;
}

/// Milliseconds that pass: a write that is safe waits for the disk, and so does the user.
template <class Work>
double Elapsed(Work&& work) {
  using Clock = std::chrono::steady_clock;
  const auto start = Clock::now();
  work();
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

/// A view whose status is saved and restored, with one column's width changed each time, so that
/// there is something to write.
class Kept {
 public:
  using Step = std::function<void()>;
  Kept(host::SystemObject& system, const std::string& name, viewkit::FlexGrid& grid, Step save,
       Step restore)
      : path_(PathOf(viewkit::GetSelfFilePath(name, system))),
        grid_(grid),
        save_(std::move(save)),
        restore_(std::move(restore)) {
    Keep();
    content_ = desk::book::ReadFile(path_);
    if (content_.find(std::to_string(width_)) == std::string::npos) {
      throw std::runtime_error("the status is not in its file");
    }
  }

  void Round() {
    floors_.push_back(Elapsed([&] {
      desk::book::ReplaceFile(path_, content_);
      if (desk::book::ReadFile(path_) != content_) throw std::runtime_error("a file is lost");
    }));
    used_ += Median(1, [&] { times_.push_back(Elapsed([&] { Keep(); })); });
    if (grid_.ColWidth(1) != width_) throw std::runtime_error("the status is lost");
  }
  [[nodiscard]] Pair Medians() const { return {MedianOf(floors_), MedianOf(times_)}; }
  /// Milliseconds of the processor that all rounds took, without their floors.
  [[nodiscard]] double Used() const { return used_; }

 private:
  void Keep() {
    grid_.SetColWidth(1, ++width_);
    save_();
    grid_.SetColWidth(1, 1);
    restore_();
  }

  std::filesystem::path path_;
  viewkit::FlexGrid& grid_;
  Step save_;
  Step restore_;
  std::string content_;
  int width_ = 1000;
  std::vector<double> floors_;
  std::vector<double> times_;
  double used_ = 0;
};

/// Few rows and many in turn, so that both see the same machine.
void MeasureStatus(Figures& figures, const std::string& name, Kept few, Kept many) {
  constexpr int kTimes = 201;
  for (int round = 0; round < kTimes; ++round) {
    few.Round();
    many.Round();
  }
  const Pair small = few.Medians();
  const Pair large = many.Medians();
  Figures::Tell(name + ": saved and restored", kRows, large.measured, "ms");
  Figures::Tell(name + ": of it the processor's", kRows, many.Used() / kTimes, "ms");
  const std::string figure = name + ": saved and restored over a write and a read";
  figures.Print(figure, 10, small.Ratio(), kStatusLimit);
  figures.Print(figure, kRows, large.Ratio(), kStatusLimit);
  figures.Print(name + ": growth of the processor's part from 10 rows", kRows,
                many.Used() / few.Used(), kGrowthLimit);
}

Kept KeptForm(const std::string& folder, View& view) {
  view.Book().Environment().user_folder = folder;
  view.Refresh();
  auto& form = view.Control();
  return {view.System(), "Kjkm", view.Page(0), [&form] { form.DoSaveFormStatus(); },
          [&form] { form.DoGetFormStatus(); }};
}

Kept KeptPicker(const std::string& folder, Picker& picker) {
  picker.Book().Environment().user_folder = folder;
  picker.Refresh();
  auto& view = picker.View();
  return {picker.System(), view.StatusName(), picker.List(), [&view] { view.DoSaveFormStatus(); },
          [&view] { view.DoGetFormStatus(); }};
}

}  // namespace

void MeasureLayout(Figures& figures, const std::string& folder) {
  MeasureTotals(figures, folder);
  const std::string small = Chart(folder, 10);
  const std::string large = Chart(folder, kRows);
  {
    View few(small);
    View many(large);
    MeasureStatus(figures, "status of the list", KeptForm(folder, few), KeptForm(folder, many));
  }
  Picker few(small);
  Picker many(large);
  MeasureStatus(figures, "status of the picker", KeptPicker(folder, few), KeptPicker(folder, many));
}

}  // namespace tavrix::bench
