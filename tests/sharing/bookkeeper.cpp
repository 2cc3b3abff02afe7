#include "sharing/bookkeeper.h"

#include "book/session/rules_pause.h"
#include "host/calls.h"
#include "sharing/shared_book.h"

namespace tavrix::sharing {

using book::CommandKind;

void Bookkeeper::Act() {
  switch (Below(8)) {
    case 0:
    case 1:
      return Add();
    case 2:
    case 3:
      return Edit();
    case 4:
      return Delete();
    case 5:
      return Renumber();
    case 6:
      return Swap();
    default:
      return Merge();
  }
}

int Bookkeeper::Below(int end) {
  return std::uniform_int_distribution<int>(0, end - 1)(random_);
}

std::string Bookkeeper::Any(const std::string& where, const std::string& column) {
  const Texts found =
      AllRows(Book(), "select " + column + " from gl_code where " + where + " order by ccode");
  return found.empty() ? ""
                       : found[static_cast<std::size_t>(Below(static_cast<int>(found.size())))];
}

void Bookkeeper::Save(const std::function<void()>& change) {
  change();
  (void)editor_.dialog->FileSave();
  editor_.reports.clear();
  editor_.user.answers = {viewkit::UserPort::Answer::kNo};
}

void Bookkeeper::Add() {
  const std::string parent = Any("igrade<3");
  const std::string category =
      Scalar(Book(), "select cclass from gl_code where ccode='" + parent + "'");
  editor_.Open(editing::Below(parent, category),
               [&] { Save([&] { editor_.SetName("新𠀀\"\\户" + std::to_string(Below(100))); }); });
}

void Bookkeeper::Edit() {
  const std::string id = Any("bend=1 or igrade=1", "i_id");
  editor_.Open(editing::Edit(std::stoi(id)), [&] {
    Save([&] {
      editor_.SetName("改名\t" + std::to_string(Below(100)));
      const std::string code = editor_.Code();
      if (Below(2) == 0 && code.size() == 8) {
        editor_.SetCode(Any("igrade=1") + std::to_string(5000 + Below(4000)));
      }
    });
  });
}

void Bookkeeper::Delete() {
  const std::string code = Any("igrade>1");
  if (code.empty()) return;
  // As the account list sends it.
  const std::string error =
      host::ExecuteSql(*Book().System(), "delete from gl_code where ccode like '" + code + "%'");
  const std::string parent = code.substr(0, code.size() - 4);
  const bool last =
      Scalar(Book(), "select count(*) from gl_code where ccode like '" + parent + "_%'") == "0";
  if (error.empty() && last) {
    EXPECT_EQ(host::ExecuteSql(*Book().System(),
                               "update gl_code set bend=1 where ccode='" + parent + "'"),
              "");
  }
}

void Bookkeeper::Rearrange(CommandKind kind,
                           const std::function<void(book::JournalCommand&)>& work) {
  book::Session& session = Book().GetSession();
  try {
    book::Transaction transaction(session);
    book::RulesPause pause(session);
    book::JournalCommand command(session, kind, "重排");
    work(command);
    pause.Resume();
    transaction.Commit();
  } catch (const book::DatabaseError&) {  // a code was taken, or two kinds of postings met
  }
}

void Bookkeeper::Recode(const std::string& set, const std::string& where) {
  Run("update gl_code set ccode=" + set + " where " + where);
  for (const std::string ledger : {"gl_accvouch", "gl_accass", "gl_accsum"}) {
    Run("update " + ledger + " set ccode=" + set + " where " + where);
  }
}

void Bookkeeper::Renumber() {
  const std::string from = Any("igrade=1");
  const std::string to = std::to_string(6000 + Below(3000));
  Rearrange(CommandKind::kRenumber, [&](book::JournalCommand&) {
    Recode("'" + to + "'||substr(ccode,5)", "ccode like '" + from + "%'");
  });
}

void Bookkeeper::Swap() {
  const std::string a = Any("bend=1 and igrade=1");
  const std::string b = Any("bend=1 and igrade=1");
  if (a.empty() || a == b) return;
  Rearrange(CommandKind::kRenumber, [&](book::JournalCommand&) {
    Recode("'~'", "ccode='" + a + "'");
    Recode("'" + a + "'", "ccode='" + b + "'");
    Recode("'" + b + "'", "ccode='~'");
  });
}

void Bookkeeper::Merge() {
  const std::string to = Any("bend=1");
  const std::string one = Any("bend=1");
  const std::string two = Any("bend=1");
  Rearrange(CommandKind::kMerge, [&](book::JournalCommand& command) {
    for (const std::string& from : {one, two}) {
      if (from == to) continue;
      (void)command.MovePostings(from, to);
      Run("delete from gl_code where ccode='" + from + "'");
    }
    Run("update gl_code set bend=1 where bend=0 and not exists(select 1 from gl_code b where "
        "b.ccode like gl_code.ccode||'_%')");
  });
}

}  // namespace tavrix::sharing
