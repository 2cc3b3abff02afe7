#include "editing_bench.h"

#include <array>
#include <stdexcept>
#include <vector>

#include "chart.h"
#include "host/calls.h"
#include "view.h"

namespace tavrix::bench {

namespace {

constexpr double kLimit = 1.2;
constexpr long kPostings = 1000000;
constexpr long kSubtree = 10000;

/// Statements as the library sends them, without the library.
void Send(host::SystemObject& system, const std::string& sql) {
  if (const std::string error = host::ExecuteSql(system, sql); !error.empty()) {
    throw std::runtime_error(error);
  }
}

double Count(host::SystemObject& system, const std::string& sql) {
  return host::QueryCount(system, sql);
}

void MeasureNextCode(Figures& figures, View& view) {
  constexpr int kTimes = 300;
  view.Edit(1, [&](editing::FmBkmAdd& dialog) {
    std::size_t made = 0;
    const Pair pair = InTurn(
        15,
        [&] {
          for (int time = 0; time < kTimes; ++time) {
            (void)host::DialectOf(view.System());
            const auto highest = host::QueryRows(
                view.System(),
                "Select Max(ccode) as ccode From gl_code Where len(ccode)=7 And cclass='负债' and "
                "ccode Like '1001%'");
            made += highest->EndOfFile() ? 0 : highest->Field("ccode").ToText().size();
          }
        },
        [&] {
          for (int time = 0; time < kTimes; ++time) {
            made += dialog.NextBm("1001", "负债", true).value().size();
          }
        });
    if (made == 0) throw std::runtime_error("no next code");
    Figures::Tell("next code", 100000, pair.measured * 1000 / kTimes, "us");
    figures.Print("next code over its statement", 100000, pair.Ratio(), kLimit);
  });
}

/// The code of an account without sub-accounts goes to and fro: there by the dialog, back by the
/// bare statements.
void MeasureSave(Figures& figures, View& view) {
  const int row = view.Page(0).FindRow("1001001001", 1, 0);
  const auto bare = [&](const std::string& from, const std::string& to) {
    host::SystemObject& system = view.System();
    Send(system, "update gl_code set ccode='" + to + "' where ccode='" + from + "'");
    for (const char* ledger : {"gl_accvouch", "gl_accass", "gl_accsum"}) {
      Send(system,
           std::string("update ") + ledger + " set ccode='" + to + "' where ccode='" + from + "'");
    }
  };
  std::vector<double> floors;
  std::vector<double> saves;
  for (int round = 0; round < 5; ++round) {
    view.Edit(row, [&](editing::FmBkmAdd& dialog) {
      dialog.Txt(0).SetText("1001001999");
      bool saved = false;
      saves.push_back(Median(1, [&] { saved = dialog.FileSave(); }));
      if (!saved) throw std::runtime_error("not saved");
    });
    if (Count(view.System(),
              "select count(i_id) from gl_accvouch where ccode like '1001001999%'") != kPostings) {
      throw std::runtime_error("the postings have not moved");
    }
    floors.push_back(Median(1, [&] { bare("1001001999", "1001001001"); }));
    view.Refresh();
  }
  const Pair pair{MedianOf(floors), MedianOf(saves)};
  Figures::Tell("save with propagation", kPostings, pair.measured, "ms");
  figures.Print("save with propagation over its statements", kPostings, pair.Ratio(), kLimit);
}

void MeasureDelete(Figures& figures, View& view, const Connection& connection) {
  const auto restore = [&] {
    connection.Run("insert into gl_code select * from subtree_copy order by ccode");
  };
  connection.Run("create table subtree_copy as select * from gl_code where ccode like '9000%'");
  std::vector<double> floors;
  std::vector<double> deletes;
  for (int round = 0; round < 5; ++round) {
    view.Refresh();
    view.Page(0).SetRow(view.Page(0).FindRow("9000", 1, 0));
    bool deleted = false;
    deletes.push_back(Median(1, [&] { deleted = view.Control().FileDelete(); }));
    if (!deleted) throw std::runtime_error("not deleted");
    restore();
    floors.push_back(Median(1, [&] {
      for (const char* ledger : {"gl_accvouch", "gl_accass", "gl_accsum"}) {
        (void)Count(view.System(),
                    std::string("select count(i_id) from ") + ledger + " where ccode like '9000%'");
      }
      Send(view.System(), "delete from gl_code where ccode like '9000%'");
    }));
    restore();
  }
  const Pair pair{MedianOf(floors), MedianOf(deletes)};
  Figures::Tell("delete of a subtree", kSubtree, pair.measured, "ms");
  figures.Print("delete of a subtree over its statements", kSubtree, pair.Ratio(), kLimit);
}

}  // namespace

void MeasureEditing(Figures& figures, const std::string& folder) {
  const std::string path = folder + "/editing.book";
  (void)desk::book::Book::Create(path, {.code_rule = "4333"});
  FillChart(path, 100000);
  const Connection connection(path);
  FillPostings(connection, "1001001001", kPostings);
  FillSubtree(connection, "9000", kSubtree);
  View view(path);
  view.Refresh();
  MeasureNextCode(figures, view);
  MeasureSave(figures, view);
  MeasureDelete(figures, view, connection);
}

}  // namespace tavrix::bench
