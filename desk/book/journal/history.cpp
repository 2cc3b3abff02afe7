#include "book/journal/history.h"

#include <algorithm>
#include <map>
#include <utility>

#include "book/session/journal_rules.h"
#include "host/row_set.h"

namespace desk::book {

namespace {

constexpr int kUndo = 1;

/// All rows at once: a server's answer is not asked for cell by cell.
host::RowSet RowsOf(Session& session, const std::string& query) {
  const auto rows = session.Own().Query(query, Origin::kDesk);
  host::RowSet set(static_cast<std::size_t>(rows->Columns()));
  RowSetSink sink(set);
  if (rows->Next()) rows->ReadAll(sink);
  return set;
}

std::int64_t IntegerIn(const host::RowSet& rows, std::size_t row, std::size_t column) {
  return static_cast<std::int64_t>(host::Value(rows.Text(row, column)).ToNumber());
}

std::string TextIn(const host::RowSet& rows, std::size_t row, std::size_t column) {
  return std::string(rows.Text(row, column));
}

std::string SubjectOf(const RowImage& image) {
  static const std::size_t code = AccountColumn("ccode");
  static const std::size_t name = AccountColumn("ccode_name");
  return image.Text(code) + " " + image.Text(name);
}

/// What the other tables say of a command.
struct Numbers {
  std::int64_t accounts = 0;
  std::int64_t postings = 0;
  std::string subject;
};

/// Of the commands for which `which` is true.
std::map<std::int64_t, Numbers> NumbersOf(Session& session, const std::string& which) {
  std::map<std::int64_t, Numbers> numbers;
  // An account that has changed once is another now; else its first and its last image tell.
  const host::RowSet changes = RowsOf(
      session,
      "select g.command_id,g.n,coalesce(d.old_row,d.new_row)from(select command_id,count(*)as "
      "n,min(a)as first from(select command_id,row_id,min(id)as a,max(id)as b from desk_change "
      "where " +
          which +
          " group by command_id,row_id)k where a=b or coalesce((select old_row from desk_change "
          "where id=a),'')<>coalesce((select new_row from desk_change where id=b),'') group by "
          "command_id)g join desk_change d on d.id=g.first");
  for (std::size_t i = 0; i < changes.Rows(); ++i) {
    numbers[IntegerIn(changes, i, 0)] = {.accounts = IntegerIn(changes, i, 1),
                                         .postings = 0,
                                         .subject = SubjectOf(RowImage(TextIn(changes, i, 2)))};
  }
  const host::RowSet moves =
      RowsOf(session,
             "select command_id,sum(row_count)from desk_moved where ledger='gl_accvouch' "
             "and " +
                 which + " group by command_id");
  for (std::size_t i = 0; i < moves.Rows(); ++i) {
    const auto found = numbers.find(IntegerIn(moves, i, 0));
    if (found != numbers.end()) found->second.postings = IntegerIn(moves, i, 1);
  }
  return numbers;
}

/// Commands that stand undone: the last of those that undo and redo one says which way it is.
void MarkAnswered(std::vector<HistoryEntry>& newest_first) {
  std::map<std::int64_t, bool> answer_undone;
  for (HistoryEntry& entry : newest_first) {
    const auto answer = answer_undone.find(entry.id);
    entry.answered = answer != answer_undone.end();
    entry.undone = entry.answered && !answer->second;
    if (entry.target != 0) answer_undone[entry.target] = entry.undone;
  }
}

/// The newest first, each as its own table has it.
std::vector<HistoryEntry> ReadCommands(Session& session, const std::string& which) {
  const host::RowSet rows =
      RowsOf(session, "select id,kind,turn,target,title,who,made_at from desk_command where " +
                          which + " order by id desc");
  std::vector<HistoryEntry> commands;
  for (std::size_t i = 0; i < rows.Rows(); ++i) {
    commands.push_back({.id = IntegerIn(rows, i, 0),
                        .kind = static_cast<CommandKind>(IntegerIn(rows, i, 1)),
                        .turn = static_cast<int>(IntegerIn(rows, i, 2)),
                        .target = IntegerIn(rows, i, 3),
                        .title = TextIn(rows, i, 4),
                        .who = TextIn(rows, i, 5),
                        .made_at = TextIn(rows, i, 6),
                        .subject = {}});
  }
  return commands;
}

/// The newest first. `of_command` and `of_rest` are the condition as the tables of commands and of
/// the rest have it.
std::vector<HistoryEntry> Read(Session& session, const std::string& of_command,
                               const std::string& of_rest) {
  const std::map<std::int64_t, Numbers> numbers = NumbersOf(session, of_rest);
  std::vector<HistoryEntry> history = ReadCommands(session, of_command);
  // Who has changed nothing is not told of, unless an undo would not find its place.
  std::erase_if(history, [&](const HistoryEntry& entry) {
    return entry.turn == 0 && !numbers.contains(entry.id);
  });
  for (HistoryEntry& entry : history) {
    const auto found = numbers.find(entry.id);
    if (found == numbers.end()) continue;
    entry.subject = found->second.subject;
    entry.accounts = found->second.accounts;
    entry.postings = found->second.postings;
  }
  return history;
}

}  // namespace

std::vector<HistoryEntry> ReadHistory(Session& session) {
  if (!session.KeepsHistory()) return {};
  std::vector<HistoryEntry> history = Read(session, "1=1", "1=1");
  MarkAnswered(history);
  return history;
}

std::optional<HistoryEntry> ReadEntry(Session& session, std::int64_t id) {
  if (!session.KeepsHistory()) return {};
  const std::string is = "=" + std::to_string(id);
  std::vector<HistoryEntry> entries = Read(session, "id" + is, "command_id" + is);
  if (entries.empty()) return {};
  entries.front().answered =
      RowsOf(session, "select 1 from desk_command where target" + is).Rows() > 0;
  return std::move(entries.front());
}

std::optional<HistoryEntry> NextToUndo(const std::vector<HistoryEntry>& history) {
  const auto found = std::ranges::find_if(history, [](const HistoryEntry& entry) {
    const bool own = entry.kind != CommandKind::kUnknown;
    return own && entry.turn != kUndo && !entry.answered;
  });
  if (found == history.end()) return {};
  return *found;
}

std::optional<HistoryEntry> NextToRedo(const std::vector<HistoryEntry>& history) {
  for (const HistoryEntry& entry : history) {
    if (entry.turn == 0) return {};
    if (entry.turn == kUndo && !entry.answered) return entry;
  }
  return {};
}

HistorySteps ReadSteps(Session& session) {
  if (!session.KeepsHistory()) return {};
  std::vector<HistoryEntry> commands = ReadCommands(session, "1=1");
  MarkAnswered(commands);
  // A command that has changed nothing is no step: the one before it is, and it forbids no redo.
  const auto is_own = [](const HistoryEntry& entry) { return entry.turn == 0; };
  for (auto at = std::ranges::find_if(commands, is_own);
       at != commands.end() && !ReadEntry(session, at->id);) {
    at = std::find_if(commands.erase(at), commands.end(), is_own);
  }
  const auto step = [&](auto next) -> std::optional<HistoryEntry> {
    while (const auto found = next(commands)) {
      if (auto entry = ReadEntry(session, found->id)) return entry;
      std::erase_if(commands, [&](const HistoryEntry& each) { return each.id == found->id; });
    }
    return std::nullopt;
  };
  HistorySteps steps;
  steps.undo = step(&NextToUndo);
  steps.redo = step(&NextToRedo);
  return steps;
}

std::string QueryForNetChanges(std::int64_t command) {
  return "select f.row_id,f.old_row,l.new_row from(select row_id,min(id)as a,max(id)as b from "
         "desk_change where command_id=" +
         std::to_string(command) +
         " group by row_id)k join desk_change f on f.id=k.a join desk_change l on l.id=k.b where "
         "coalesce(f.old_row,'')<>coalesce(l.new_row,'')";
}

std::vector<AccountChange> ReadChanges(Session& session, std::int64_t command, std::int64_t most) {
  std::string query = QueryForNetChanges(command) + " order by f.row_id";
  if (most > 0) query += " limit " + std::to_string(most);
  const host::RowSet rows = RowsOf(session, query);
  std::vector<AccountChange> changes;
  changes.reserve(rows.Rows());
  for (std::size_t i = 0; i < rows.Rows(); ++i) {
    changes.push_back({.id = IntegerIn(rows, i, 0),
                       .before = RowImage(TextIn(rows, i, 1)),
                       .after = RowImage(TextIn(rows, i, 2))});
  }
  return changes;
}

std::vector<RowImage> ReadAccountsNow(Session& session, std::int64_t command) {
  const host::RowSet rows =
      RowsOf(session, "select n.row_id,case when g.i_id is not null then " +
                          AccountImage(session.Own().Dialect(), "g") + " end from(" +
                          QueryForNetChanges(command) +
                          ")n left join gl_code g on g.i_id=n.row_id order by 1");
  std::vector<RowImage> images;
  images.reserve(rows.Rows());
  for (std::size_t i = 0; i < rows.Rows(); ++i) images.emplace_back(TextIn(rows, i, 1));
  return images;
}

std::vector<PostingMove> ReadMoves(Session& session, std::int64_t command) {
  const host::RowSet rows = RowsOf(
      session,
      "select from_code,to_code,sum(case when ledger='gl_accvouch' then row_count else 0 "
      "end),sum(case when ledger='gl_accvouch' then 0 else row_count end),follows from desk_moved "
      "where command_id=" +
          std::to_string(command) + " and ledger<>'" + std::string(kSettingsName) +
          "' group by from_code,to_code,follows order by min(id)");
  std::vector<PostingMove> moves;
  for (std::size_t i = 0; i < rows.Rows(); ++i) {
    moves.push_back({.from = TextIn(rows, i, 0),
                     .to = TextIn(rows, i, 1),
                     .entries = IntegerIn(rows, i, 2),
                     .totals = IntegerIn(rows, i, 3),
                     .follows = IntegerIn(rows, i, 4) != 0});
  }
  return moves;
}

std::optional<RuleChange> ReadRuleChange(Session& session, std::int64_t command) {
  const host::RowSet rows = RowsOf(
      session, "select from_code,to_code from desk_moved where command_id=" +
                   std::to_string(command) + " and ledger='" + std::string(kSettingsName) + "'");
  if (rows.Rows() == 0) return {};
  return RuleChange{.from = TextIn(rows, 0, 0), .to = TextIn(rows, 0, 1)};
}

}  // namespace desk::book
