#include "book/journal/history.h"

#include <algorithm>
#include <map>

namespace desk::book {

namespace {

std::int64_t Whole(const host::Value& value) {
  return static_cast<std::int64_t>(value.ToNumber());
}

/// A number for each command, by its identifier.
std::map<std::int64_t, std::int64_t> Counts(Session& session, const std::string& query) {
  std::map<std::int64_t, std::int64_t> counts;
  const auto rows = session.Own().Query(query, Origin::kDesk);
  while (rows->Next()) counts[Whole(rows->Get(0))] = Whole(rows->Get(1));
  return counts;
}

void MarkAnswered(std::vector<HistoryEntry>& newest_first) {
  std::map<std::int64_t, bool> answer_undone;
  for (HistoryEntry& entry : newest_first) {
    const auto answer = answer_undone.find(entry.id);
    entry.answered = answer != answer_undone.end();
    entry.undone = entry.answered && !answer->second;
    if (entry.target != 0) answer_undone[entry.target] = entry.undone;
  }
}

constexpr int kUndo = 1;

std::string SubjectOf(const RowImage& image) {
  static const std::size_t code = AccountColumn("ccode");
  static const std::size_t name = AccountColumn("ccode_name");
  return image.Text(code) + " " + image.Text(name);
}

std::map<std::int64_t, std::string> Subjects(Session& session) {
  std::map<std::int64_t, std::string> subjects;
  const auto rows = session.Own().Query(
      "select d.command_id,coalesce(d.old_row,d.new_row)from desk_change d join(select min(id)as "
      "first from desk_change group by command_id)k on k.first=d.id",
      Origin::kDesk);
  while (rows->Next()) {
    subjects[Whole(rows->Get(0))] = SubjectOf(RowImage(rows->Get(1).ToText()));
  }
  return subjects;
}

}  // namespace

std::vector<HistoryEntry> ReadHistory(Session& session) {
  std::vector<HistoryEntry> history;
  if (!session.KeepsHistory()) return history;
  const auto accounts = Counts(
      session, "select command_id,count(distinct row_id)from desk_change group by command_id");
  const auto postings =
      Counts(session,
             "select command_id,sum(row_count)from desk_moved where ledger='gl_accvouch' group by "
             "command_id");
  const auto subjects = Subjects(session);
  const auto rows = session.Own().Query(
      "select id,kind,turn,target,title,who,made_at from desk_command order by id desc",
      Origin::kDesk);
  while (rows->Next()) {
    const std::int64_t id = Whole(rows->Get(0));
    if (!accounts.contains(id)) continue;
    history.push_back({.id = id,
                       .kind = static_cast<CommandKind>(rows->Get(1).ToLong()),
                       .turn = rows->Get(2).ToLong(),
                       .target = Whole(rows->Get(3)),
                       .title = rows->Get(4).ToText(),
                       .who = rows->Get(5).ToText(),
                       .made_at = rows->Get(6).ToText(),
                       .subject = subjects.at(id),
                       .accounts = accounts.at(id),
                       .postings = postings.contains(id) ? postings.at(id) : 0});
  }
  MarkAnswered(history);
  return history;
}

std::optional<HistoryEntry> FindEntry(const std::vector<HistoryEntry>& history, std::int64_t id) {
  const auto found = std::ranges::find(history, id, &HistoryEntry::id);
  if (found == history.end()) return {};
  return *found;
}

std::optional<HistoryEntry> NextToUndo(const std::vector<HistoryEntry>& history) {
  const auto found = std::ranges::find_if(
      history, [](const HistoryEntry& entry) { return entry.turn != kUndo && !entry.answered; });
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
  std::vector<AccountChange> changes;
  const auto rows = session.Own().Query(query, Origin::kDesk);
  while (rows->Next()) {
    changes.push_back({.id = Whole(rows->Get(0)),
                       .before = RowImage(rows->Get(1).ToText()),
                       .after = RowImage(rows->Get(2).ToText())});
  }
  return changes;
}

std::vector<PostingMove> ReadMoves(Session& session, std::int64_t command) {
  std::vector<PostingMove> moves;
  const auto rows = session.Own().Query(
      "select from_code,to_code,sum(case when ledger='gl_accvouch' then row_count else 0 "
      "end),sum(case when ledger='gl_accvouch' then 0 else row_count end),follows from desk_moved "
      "where command_id=" +
          std::to_string(command) + " group by from_code,to_code,follows order by min(id)",
      Origin::kDesk);
  while (rows->Next()) {
    moves.push_back({.from = rows->Get(0).ToText(),
                     .to = rows->Get(1).ToText(),
                     .entries = Whole(rows->Get(2)),
                     .totals = Whole(rows->Get(3)),
                     .follows = rows->Get(4).ToLong() != 0});
  }
  return moves;
}

}  // namespace desk::book
