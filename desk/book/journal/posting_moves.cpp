#include "book/journal/posting_moves.h"

#include <algorithm>
#include <map>
#include <span>
#include <string_view>
#include <utility>

#include "book/database/row_loader.h"
#include "book/session/journal_rules.h"
#include "book/session/ledger_portions.h"
#include "book/session/trigger_script.h"

namespace desk::book {

namespace {

/// All notes of one account's postings in one ledger that went to another account.
struct Move {
  std::string ledger;
  std::string to;
  std::string notes;  ///< the condition for them, as `m`
  std::string there;  ///< and for their postings, as the ledger
  std::int64_t postings = 0;
};

class Return {
 public:
  Return(Session& session, std::int64_t of, std::int64_t command)
      : connection_(session.Own()),
        server_(connection_.Dialect() == SqlDialect::kPostgres),
        of_(std::to_string(of)),
        command_(std::to_string(command)) {}

  [[nodiscard]] std::string Run() {
    const std::vector<Move> moves = Moves();
    LetServerJoinByCode(false);
    for (const Move& move : moves) {
      if (HasChanged(move) || !GoBack(move)) return move.to;
    }
    LetServerJoinByCode(true);
    return {};
  }

 private:
  /// All notes of a move have one code: each posting would be compared with each of them.
  void LetServerJoinByCode(bool on) {
    if (!server_) return;
    for (const std::string join : {"hash", "merge"}) {
      connection_.Execute("set local enable_" + join + "join=" + (on ? "on" : "off"),
                          Origin::kDesk);
    }
  }

  [[nodiscard]] std::vector<Move> Moves() {
    std::vector<Move> moves;
    const auto rows = connection_.Query(
        "select ledger,to_code,min(id),max(id),sum(row_count),count(*)from desk_moved where "
        "follows=0 and command_id=" +
            of_ + " group by ledger,from_code,to_code order by max(id) desc",
        Origin::kDesk);
    while (rows->Next()) {
      const std::string ledger = rows->Get(0).ToText();
      // Of many ranges each is read by its identifiers, of few by the account's index.
      const bool many = rows->Get(5).ToNumber() > 4;
      const std::string code =
          (many && !server_ ? "+" : "") + ledger + ".ccode" + (many && server_ ? "||''" : "");
      moves.push_back(
          {.ledger = ledger,
           .to = rows->Get(1).ToText(),
           .notes = "m.command_id=" + of_ + " and m.ledger='" + ledger +
                    "' and m.follows=0 and m.id between " + rows->Get(2).ToText() + " and " +
                    rows->Get(3).ToText(),
           .there = code + "=m.to_code and " + ledger + ".i_id between m.first_id and m.last_id",
           .postings = IntegerAt(*rows, 4)});
    }
    return moves;
  }

  /// Whether postings are missing, have come, or have had amounts added to them.
  [[nodiscard]] bool HasChanged(const Move& move) {
    const auto sum = [&](const std::string& column) {
      return "coalesce(sum(" + move.ledger + "." + column + "),0)";
    };
    const auto rows = connection_.Query(
        "select 1 from desk_moved m left join " + move.ledger + " on " + move.there + " where " +
            move.notes +
            " group by m.id,m.row_count,m.id_sum,m.debit_sum,m.credit_sum having count(" +
            move.ledger + ".i_id)<>m.row_count or " + sum("i_id") + "<>m.id_sum or " +
            sum("debit") + "<>m.debit_sum or " + sum("credit") + "<>m.credit_sum limit 1",
        Origin::kDesk);
    return rows->Next();
  }

  [[nodiscard]] bool GoBack(const Move& move) {
    connection_.Execute(
        "insert into desk_moved(command_id,ledger,from_code,to_code,first_id,last_id,row_count,"
        "id_sum,debit_sum,credit_sum,follows)select " +
            command_ +
            ",ledger,to_code,from_code,first_id,last_id,row_count,id_sum,debit_sum,credit_sum,0 "
            "from desk_moved m where " +
            move.notes + " order by m.id",
        Origin::kDesk);
    return connection_.Execute("update " + move.ledger +
                                   " set ccode=m.from_code from desk_moved m where " + move.there +
                                   " and " + move.notes,
                               Origin::kDesk) == move.postings;
  }

  Connection& connection_;
  bool server_;
  std::string of_;
  std::string command_;
};

class Following {
 public:
  Following(Session& session, const std::vector<CodeChange>& codes, bool meet,
            const Progress& progress)
      : connection_(session.Own()),
        server_(connection_.Dialect() == SqlDialect::kPostgres),
        codes_(codes),
        meet_(meet),
        progress_(progress) {}

  void Run(std::int64_t of, JournalCommand& command) {
    const std::map<std::string, std::int64_t> noted = RowsThatWent(of);
    for (const auto& [ledger, rows] : noted) state_.all += rows;
    LetServerSort(false);
    for (const std::string_view name : kLedgerTables) {
      const std::string ledger(name);
      const auto rows = noted.find(ledger);
      Tell(progress_, state_);
      command.NoteFollowed(ledger, Move(ledger, rows == noted.end() ? 0 : rows->second));
    }
    LetServerSort(true);
  }

 private:
  /// What the server knows of the codes is older than the command: it would compare each posting
  /// with each code, or change postings in the order of their codes, which are scattered.
  void LetServerSort(bool on) {
    if (!server_) return;
    for (const std::string join : {"nestloop", "mergejoin"}) {
      connection_.Execute("set local enable_" + join + (on ? "=on" : "=off"), Origin::kDesk);
    }
  }

  /// By their ledgers.
  [[nodiscard]] std::map<std::string, std::int64_t> RowsThatWent(std::int64_t of) {
    std::map<std::string, std::int64_t> noted;
    const auto rows = connection_.Query(
        "select ledger,sum(row_count)from desk_moved where follows=1 and command_id=" +
            std::to_string(of) + " group by ledger",
        Origin::kDesk);
    while (rows->Next()) noted[rows->Get(0).ToText()] = IntegerAt(*rows, 1);
    return noted;
  }

  [[nodiscard]] std::int64_t Move(const std::string& ledger, std::int64_t rows) {
    if (!server_) return MoveByCodes(ledger);
    const LedgerRange range = RangeOfLedger(connection_, ledger);
    return range.IsReadFor(rows, connection_.Dialect()) ? MoveByRows(ledger, range)
                                                        : MoveByCodes(ledger);
  }

  std::int64_t Add(std::int64_t moved) {
    state_.done = std::min(state_.done + moved, state_.all);
    Tell(progress_, state_);
    return moved;
  }

  /// The codes go to the server as two arrays: it reads these faster than a list.
  [[nodiscard]] std::int64_t MoveByRows(const std::string& ledger, const LedgerRange& range) {
    std::string from;
    std::string to;
    for (const CodeChange& code : codes_) {
      AppendToArray(from, code.from);
      AppendToArray(to, code.to);
    }
    std::int64_t moved = 0;
    range.InParts([&](std::int64_t first, std::int64_t end) {
      const host::Value values[] = {"{" + from + "}", "{" + to + "}", first, end};
      moved += Add(connection_.Execute(
          "update " + ledger +
              " set ccode=c.new_code from(select unnest(cast(? as text[]))as old_code,"
              "unnest(cast(? as text[]))as new_code)c" +
              LedgerRange::kPart + "ccode=c.old_code",
          Origin::kDesk, values));
    });
    return moved;
  }

  [[nodiscard]] std::int64_t MoveByCodes(const std::string& ledger) {
    // So many accounts' postings move with each statement. Where codes meet, postings that have
    // moved must not move again with the next.
    constexpr std::size_t kAtOnce = 500;
    const std::size_t at_once = meet_ ? codes_.size() : kAtOnce;
    std::int64_t moved = 0;
    for (std::size_t i = 0; i < codes_.size(); i += at_once) {
      const std::size_t size = std::min(at_once, codes_.size() - i);
      moved += Add(MoveSome(ledger, std::span(codes_).subspan(i, size)));
    }
    return moved;
  }

  [[nodiscard]] std::int64_t MoveSome(const std::string& ledger,
                                      std::span<const CodeChange> codes) {
    std::string list;
    for (const CodeChange& code : codes) {
      list += (list.empty() ? "(" : ",(") + Literal(code.from) + "," + Literal(code.to) + ")";
    }
    // A server would read the whole ledger for each portion. Of a file the index is read, where
    // codes stand in another order.
    const std::string range = server_ ? " and " + ledger + ".ccode between " +
                                            Literal(codes.front().from) + " and " +
                                            Literal(codes.back().from)
                                      : std::string();
    return connection_.Execute("update " + ledger +
                                   " set ccode=c.column2 from(select column1,column2 from(values" +
                                   list + ")v)c where " + ledger + ".ccode=c.column1" + range,
                               Origin::kDesk);
  }

  Connection& connection_;
  bool server_;
  const std::vector<CodeChange>& codes_;
  bool meet_;
  const Progress& progress_;
  WorkState state_{.step = "正在移动分录"};
};

}  // namespace

std::string ReturnPostings(Session& session, std::int64_t of, std::int64_t command) {
  return Return(session, of, command).Run();
}

void FollowCodes(Session& session, std::int64_t of, const std::vector<CodeChange>& codes, bool meet,
                 JournalCommand& command, const Progress& progress) {
  if (codes.empty()) return;
  Following(session, codes, meet, progress).Run(of, command);
}

}  // namespace desk::book
