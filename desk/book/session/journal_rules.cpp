#include "book/session/journal_rules.h"

#include "book/database/tables.h"
#include "book/session/trigger_script.h"

namespace desk::book {

namespace {

constexpr const char* kSqliteNow = "strftime('%Y-%m-%d %H:%M:%S','now')";
constexpr const char* kPostgresNow =
    "to_char(statement_timestamp() at time zone 'UTC','YYYY-MM-DD HH24:MI:SS')";

/// Whoever has no command of his own has got one from `desk_journal_other` by then.
constexpr const char* kSqliteCommand =
    "coalesce((select last_id from desk_identifier where table_name='journal_command'),(select "
    "max(id)from desk_command))";
constexpr const char* kPostgresCommand = "(select desk_current_command())";

std::string CommandOf(SqlDialect dialect) {
  return dialect == SqlDialect::kSqlite ? kSqliteCommand : kPostgresCommand;
}

constexpr const char* kNote = "insert into desk_change(command_id,row_id,old_row,new_row)";

std::vector<std::string> TablesWith(const std::string& key, const std::string& big) {
  return {"create table desk_command(id " + key +
              ",kind smallint not null,turn smallint not null,target integer not null,title text "
              "not null,who text not null,made_at text not null)",
          "create table desk_change(id " + key +
              ",command_id integer not null,row_id integer not null,old_row text,new_row text)",
          "create table desk_moved(id " + key +
              ",command_id integer not null,ledger text not null,from_code text,to_code "
              "text,first_id integer,last_id integer,row_count integer not null,id_sum " +
              big + " not null,debit_sum " + big + ",credit_sum " + big +
              ",follows smallint not null)",
          "create index desk_change_command on desk_change(command_id,row_id)",
          "create index desk_moved_command on desk_moved(command_id)",
          "create index desk_moved_code on desk_moved(to_code)"};
}

/// The engine runs the triggers that were made last first. One of another program's statements has
/// one time, and gets one command.
std::vector<std::string> SqliteRules() {
  const std::string note = std::string(kNote) + " values(" + kSqliteCommand + ",";
  const std::string added = AccountImage(SqlDialect::kSqlite, "new");
  const std::string gone = AccountImage(SqlDialect::kSqlite, "old");
  const std::string other =
      std::string(
          "insert into desk_command(kind,turn,target,title,who,made_at)select 0,0,0,'','',") +
      kSqliteNow +
      " where not exists(select 1 from desk_identifier where table_name='journal_command')and not "
      "exists(select 1 from desk_command where id=(select max(id)from desk_command)and kind=0 and "
      "made_at=" +
      kSqliteNow + ");";
  return {"create trigger desk_journal_added after insert on gl_code for each row begin " + other +
              note + "new.i_id,null," + added + "); end",
          "create trigger desk_journal_changed after update on gl_code for each row when " + gone +
              " is not " + added + " begin " + other + note + "new.i_id," + gone + "," + added +
              "); end",
          "create trigger desk_journal_gone after delete on gl_code for each row begin " + other +
              note + "old.i_id," + gone + ",null); end"};
}

/// The engine runs triggers in the order of their names.
std::vector<std::string> PostgresRules() {
  PostgresScript script;
  script.AddPlain(
      "create function desk_current_command()returns integer language plpgsql as $$declare command "
      "integer; begin command:=nullif(current_setting('desk.command',true),'');if command is null "
      "then insert into desk_command(kind,turn,target,title,who,made_at)values(0,0,0,'',"
      "session_user," +
      std::string(kPostgresNow) +
      ")returning id into command;perform set_config('desk.command',cast(command as "
      "text),true);end if; return command; end$$");
  const std::string added = AccountImage(SqlDialect::kPostgres, "n");
  const std::string gone = AccountImage(SqlDialect::kPostgres, "o");
  const std::string note = kNote + std::string("select ") + kPostgresCommand + ",";
  script.Add(
      "create trigger desk_journal_added after insert on gl_code referencing new table as added "
      "for each statement ",
      "desk_note_accounts",
      "if tg_op='INSERT' then " + note + "n.i_id,null," + added +
          " from added n; elsif tg_op='DELETE' then " + note + "o.i_id," + gone +
          ",null from gone o; else " + note +
          "coalesce(n.i_id,o.i_id),case when o.i_id is not null then " + gone +
          " end,case when n.i_id is not null then " + added +
          " end from gone o full join added n on n.i_id=o.i_id where o is distinct from n; end if; "
          "return null;");
  script.AddTrigger(
      "create trigger desk_journal_changed after update on gl_code referencing old table as gone "
      "new table as added for each statement ");
  script.AddTrigger(
      "create trigger desk_journal_gone after delete on gl_code referencing old table as gone for "
      "each statement ");
  return script.Take();
}

/// Where postings meet others on the new code, those between them tell which ranges are theirs.
std::string RangesOf(const std::string& ledger, const std::string& from, const std::string& to) {
  return "(select i_id,ccode,debit,credit,row_number()over(order by i_id)-row_number()over("
         "partition by ccode order by i_id)as island from " +
         ledger + " where ccode in(" + from + "," + to + "))y where ccode=" + from +
         " group by island";
}

}  // namespace

std::string AccountImage(SqlDialect dialect, const std::string& row) {
  std::string list;
  for (const Column& column : SchemaTables()[0].columns) {
    list += (list.empty() ? "" : ",") + row + "." + std::string(column.name);
  }
  return dialect == SqlDialect::kSqlite ? "json_array(" + list + ")"
                                        : "cast(json_build_array(" + list + ")as text)";
}

bool KeepsHistory(SqlDialect dialect) {
  return dialect == SqlDialect::kSqlite || dialect == SqlDialect::kPostgres;
}

std::vector<std::string> JournalTables(SqlDialect dialect) {
  if (dialect == SqlDialect::kSqlite) return TablesWith("integer primary key", "integer");
  if (dialect == SqlDialect::kPostgres) {
    return TablesWith("integer generated always as identity primary key", "bigint");
  }
  return {};
}

std::vector<std::string> JournalRules(SqlDialect dialect) {
  if (dialect == SqlDialect::kSqlite) return SqliteRules();
  if (dialect == SqlDialect::kPostgres) return PostgresRules();
  return {};
}

std::vector<std::string> DropJournalRules(SqlDialect dialect) {
  if (!KeepsHistory(dialect)) return {};
  const bool server = dialect == SqlDialect::kPostgres;
  std::vector<std::string> drops;
  for (const std::string name : {"added", "changed", "gone"}) {
    drops.push_back("drop trigger if exists desk_journal_" + name + (server ? " on gl_code" : ""));
  }
  if (server) {
    drops.emplace_back("drop function if exists desk_note_accounts()");
    drops.emplace_back("drop function if exists desk_current_command()");
  }
  return drops;
}

std::string Literal(const std::string& code) {
  std::string literal = "'";
  for (const char c : code) literal.append(c == '\'' ? 2 : 1, c);
  return literal + "'";
}

std::string_view TimeNow(SqlDialect dialect) {
  return dialect == SqlDialect::kSqlite ? kSqliteNow : kPostgresNow;
}

std::string NoteOfMove(SqlDialect dialect, MoveKind kind, std::string_view ledger,
                       const std::string& from, const std::string& to) {
  const std::string table(ledger);
  const bool follows = kind == MoveKind::kWithAccount;
  const std::string which = follows ? table + " where ccode=" + from : RangesOf(table, from, to);
  return "insert into "
         "desk_moved(command_id,ledger,from_code,to_code,first_id,last_id,row_count,id_sum,"
         "debit_sum,credit_sum,follows)select " +
         CommandOf(dialect) + ",'" + table + "'," + from + "," + to + ",a,b,n,s,d,c," +
         (follows ? "1" : "0") +
         " from(select min(i_id)as a,max(i_id)as b,count(*)as n,sum(i_id)as s,coalesce(sum(debit),"
         "0)as d,coalesce(sum(credit),0)as c from " +
         which + ")x where n>0 and " + from + "<>" + to;
}

}  // namespace desk::book
