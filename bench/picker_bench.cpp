#include "picker_bench.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

#include "book/book.h"
#include "chart.h"
#include "host/calls.h"
#include "host/text.h"
#include "picker_view.h"

namespace tavrix::bench {

namespace {

constexpr int kAccounts = 100000;
constexpr double kListLimit = 1.5;
constexpr double kSearchLimit = 2;
constexpr double kValidateLimit = 1.2;
constexpr double kGrowthLimit = 1.5;  // linear, with larger sets fitting the caches less well

std::string Chart(const std::string& folder, int accounts) {
  std::string path = folder + "/picker" + std::to_string(accounts) + ".book";
  (void)desk::book::Book::Create(path);
  FillChart(path, accounts);
  return path;
}

void MeasureLoad(Figures& figures, Picker& picker, const Connection& connection) {
  const std::string sql =
      "SELECT i_id,ccode,ccode_name,chelp,case when bproperty=1 then '借' else '贷' end "
      ",cclass,bclose,bend FROM gl_code  WHERE ccode<>'' and bsup=0 AND bclose=0 order by ccode";
  const int rows = connection.StepAndRead(sql);
  picker.Refresh();
  if (rows != picker.List().Rows() - 1) throw std::runtime_error("the list misses rows");
  const Pair pair = InTurn(
      9, [&] { (void)connection.StepAndRead(sql); }, [&] { picker.Refresh(); });
  Figures::Tell("picker list", rows, pair.measured, "ms");
  figures.Print("picker: list load over stepping and reading", rows, pair.Ratio(), kListLimit);
}

/// All texts of the list, joined as the search joins them.
std::string AllText(const viewkit::FlexGrid& list) {
  std::string text;
  for (int row = list.FixedRows(); row < list.Rows(); ++row) {
    for (int col = 0; col < list.Cols(); ++col) text.append(list.TextMatrix(row, col)).append("%");
  }
  return host::LowerCase(text);
}

/// The plain pass: every place at which `wanted` stands.
std::size_t CountMatches(const std::string& text, const std::string& wanted) {
  std::size_t count = 0;
  for (std::size_t at = text.find(wanted); at != std::string::npos;
       at = text.find(wanted, at + 1)) {
    ++count;
  }
  return count;
}

/// The first step after a load takes the texts over from the list.
void TellFirstStep(Picker& picker) {
  auto& box = picker.Get<viewkit::SearchBox>("SearchBox1");
  std::vector<double> times;
  for (int round = 0; round < 5; ++round) {
    picker.Refresh();
    times.push_back(Median(1, [&] { box.SetText(box.Text() + "x"); }));
  }
  box.SetText("");
  std::sort(times.begin(), times.end());
  Figures::Tell("picker: first search step after a load", kAccounts, times[2], "ms");
}

void MeasureSearch(Figures& figures, Picker& picker, bool filter) {
  const std::string text = AllText(picker.List());
  auto& box = picker.Get<viewkit::SearchBox>("SearchBox1");
  auto& mode = picker.Get<viewkit::CheckBox>("Check");
  if ((mode.Value() == viewkit::CheckBox::kChecked) != filter) mode.Click();
  std::size_t found = 0;
  // Typed character by character: many matches first, then few, then none.
  const std::string steps[] = {"1", "10", "100", "1001", "1001x", "科", "科目", "科目x", "zz"};
  const Pair pair = InTurn(
      9,
      [&] {
        for (const std::string& wanted : steps) found += CountMatches(text, wanted);
      },
      [&] {
        for (const std::string& wanted : steps) box.SetText(wanted);
      });
  if (found == 0) throw std::runtime_error("nothing to find");
  const std::string name = filter ? "picker: filter step" : "picker: locate step";
  Figures::Tell(name, kAccounts, pair.measured / 9, "ms");
  figures.Print(name + " over a pass through the text", kAccounts, pair.Ratio(), kSearchLimit);
  box.SetText("");
}

/// The floor is the statement as the host runs it, its row fetched whole.
void MeasureValidate(Figures& figures, Picker& picker) {
  picker.Parameters().Set("bsup", 0);
  const std::string texts[] = {"no such account", "1001", "1001001"};
  const auto run = [&](auto&& resolve) {
    for (int round = 0; round < 100; ++round) {
      for (const std::string& typed : texts) resolve(typed);
    }
  };
  std::size_t rows = 0;
  const Pair pair = InTurn(
      15,
      [&] {
        run([&](const std::string& typed) {
          const auto account =
              host::QueryRows(picker.System(), "select * FROM gl_code where (ccode='" + typed +
                                                   "' OR ccode_name='" + typed + "' or chelp='" +
                                                   typed + "') and bsup=0");
          if (!account->EndOfFile()) rows += account->GetRows().Rows();
        });
      },
      [&] {
        run([&](const std::string& typed) {
          std::string code;
          std::string name;
          (void)picker.View().Validate("", "", "", typed, code, name);
        });
      });
  if (rows == 0) throw std::runtime_error("no text was found");
  Figures::Tell("picker: typed text", kAccounts, pair.measured * 1000 / 300, "us");
  figures.Print("picker: typed text over its statement", kAccounts, pair.Ratio(), kValidateLimit);
}

double TreeTime(const std::string& path, int nodes) {
  Picker picker(path);
  picker.Parameters().Set("科目编码", "");  // a node for each account
  picker.Refresh();
  if (picker.Get<viewkit::TreeView>("TV").Nodes().Count() != nodes + 1) {
    throw std::runtime_error("the tree misses nodes");
  }
  return Median(9, [&] { picker.Refresh(); });
}

}  // namespace

void MeasurePicker(Figures& figures, const std::string& folder) {
  {
    const std::string path = Chart(folder, kAccounts);
    Picker picker(path);
    const Connection connection(path);
    MeasureLoad(figures, picker, connection);
    TellFirstStep(picker);
    MeasureSearch(figures, picker, false);
    MeasureSearch(figures, picker, true);
    MeasureValidate(figures, picker);
  }
  const double small = TreeTime(Chart(folder, 1000), 1000);
  const double large = TreeTime(Chart(folder, 10000), 10000);
  Figures::Tell("picker: tree of accounts", 10000, large, "ms");
  figures.Print("picker: growth of the tree's time per node", 10000, large / small / 10,
                kGrowthLimit);
}

}  // namespace tavrix::bench
