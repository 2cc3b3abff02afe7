#include "rearrange_bench.h"

#include <functional>
#include <stdexcept>
#include <vector>

#include "bare_connection.h"
#include "book/book.h"
#include "book/chart/move_accounts.h"
#include "book/copy.h"
#include "book/database/connection_string.h"
#include "book/journal/history.h"
#include "book/journal/undo.h"
#include "chart.h"

namespace tavrix::bench {

namespace {

using desk::book::Book;
using desk::book::Origin;
using Run = std::function<void(const std::string&)>;

constexpr int kAround = 100;
constexpr long kAccounts = 10000;
constexpr long kEntries = 1000000;
constexpr int kRounds = 3;
constexpr double kLimit = 1.5;
constexpr const char* kOld = "9000";
constexpr const char* kNew = "9100";

void MakeBook(const std::string& file) {
  (void)Book::Create(file);
  FillChart(file, kAround);
  const Connection connection(file);
  FillSubtree(connection, kOld, kAccounts);
  FillVouchers(connection, kEntries);
  for (const std::string ledger : {"gl_accsum", "gl_accass"}) {
    connection.Run("insert into " + ledger +
                   "(i_id,ccode,fiscal_year,fiscal_period,debit,credit)select row_number()over(),"
                   "ccode,fiscal_year,fiscal_period,sum(debit),sum(credit)from gl_accvouch group "
                   "by ccode,fiscal_year,fiscal_period");
  }
}

/// One statement for each table, in one transaction, while the rules pause.
void SendBareUpdates(const Run& run, bool server) {
  run("begin");
  run(server ? "select set_config('desk.rules_pause','on',true)"
             : "insert into desk_identifier(table_name,last_id)values('rules_pause',1)");
  for (const std::string table : {"gl_accvouch", "gl_accass", "gl_accsum", "gl_code"}) {
    run("update " + table +
        " set ccode='9100'||substr(ccode,5)where ccode>='9000' and ccode<'9001'");
  }
  if (!server) run("delete from desk_identifier where table_name='rules_pause'");
  run("commit");
}

void Renumber(Book& book, const char* from, const char* to) {
  const auto subtree = desk::book::ReadMovedSubtree(book.GetSession(), from);
  const auto plan = PlanMove(book.GetSession(), subtree, to);
  (void)MoveAccounts(book.GetSession(), plan, desk::book::CommandKind::kRenumber);
}

void Undo(Book& book) {
  const auto last = NextToUndo(desk::book::ReadHistory(book.GetSession()));
  if (!last) throw std::runtime_error("nothing to undo");
  (void)UndoCommand(book.GetSession(), last->id);
}

/// The sums of every ledger by account, each code as it was before it changed.
std::string SumsOf(Book& book) {
  std::string sums;
  for (const std::string ledger : {"gl_accvouch", "gl_accass", "gl_accsum"}) {
    const auto rows = book.GetSession().Own().Query(
        "select ccode,count(*),sum(debit),sum(credit)from(select replace(ccode,'9100','9000')as "
        "ccode,debit,credit from " +
            ledger + ")x group by ccode order by ccode",
        Origin::kDesk);
    while (rows->Next()) {
      for (int column = 0; column < 4; ++column) sums += rows->Get(column).ToText() + "|";
    }
  }
  return sums;
}

double Spent(const std::function<void()>& work) {
  return Median(1, work);
}

struct Engine {
  std::string name;
  Run run;  ///< a bare statement
  bool server;
  std::function<double(const std::function<void()>&)> time;
};

void Measure(Figures& figures, Book& book, const Engine& engine) {
  std::vector<double> bare;
  std::vector<double> moved;
  std::vector<double> undone;
  const std::string before = SumsOf(book);
  const auto check = [&](const char* step) {
    if (SumsOf(book) != before) throw std::runtime_error(step);
    if (engine.server) engine.run("vacuum analyze");  // what one leaves behind is not the other's
  };
  for (int round = 0; round < kRounds; ++round) {
    bare.push_back(engine.time([&] { SendBareUpdates(engine.run, engine.server); }));
    check("bare statements");
    moved.push_back(engine.time([&] { Renumber(book, kNew, kOld); }));
    check("renumbering");
    undone.push_back(engine.time([&] { Undo(book); }));
    check("undo");
    Renumber(book, kNew, kOld);
    check("renumbering again");
  }
  const double floor = MedianOf(bare);
  Figures::Tell(engine.name + ": bare updates of 10,000 accounts", kEntries, floor, "ms");
  Figures::Tell(engine.name + ": renumbering", kEntries, MedianOf(moved), "ms");
  Figures::Tell(engine.name + ": undo", kEntries, MedianOf(undone), "ms");
  figures.Print(engine.name + ": renumbering over bare updates", kEntries, MedianOf(moved) / floor,
                kLimit);
  figures.Print(engine.name + ": undo of it over bare updates", kEntries, MedianOf(undone) / floor,
                kLimit);
}

}  // namespace

void MeasureRearranging(Figures& figures, const std::string& folder, const std::string& server) {
  const std::string file = folder + "/rearranged.book";
  MakeBook(file);
  if (!server.empty()) (void)desk::book::CopyBook(file, server);
  {
    Book book = Book::Open(file);
    const Connection connection(file);
    Measure(figures, book,
            {.name = "sqlite",
             .run = [&](const std::string& sql) { connection.Run(sql); },
             .server = false,
             .time = Spent});
  }
  if (server.empty()) return;
  Book book = Book::Open(server);
  const BareConnection connection(desk::book::DriverText(server));
  Measure(figures, book,
          {.name = "server",
           .run = [&](const std::string& sql) { connection.Run(sql); },
           .server = true,
           .time = PassedTime});
}

}  // namespace tavrix::bench
