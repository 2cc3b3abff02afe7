// The history that a book keeps of its chart, whoever changes it.

#include <gmock/gmock.h>

#include "book/journal/command_text.h"
#include "book/journal/undo.h"
#include "book/session/journal_command.h"
#include "book/session/rules_pause.h"
#include "book/session/schema.h"
#include "editing/editor_test.h"
#include "host/calls.h"
#include "maintenance/view_test.h"
#include "sharing/shared_book.h"
#include "support/matchers.h"

namespace tavrix::sharing {
namespace {

using book::CommandKind;

class Journal : public testing::TestWithParam<const char*> {
 protected:
  /// Kind, user and number of accounts of each command.
  [[nodiscard]] static Texts Commands(const book::Book& of) {
    return AllRows(of,
                   "select c.kind,c.who,(select count(distinct row_id) from desk_change where "
                   "command_id=c.id) from desk_command c order by c.id");
  }
  [[nodiscard]] static std::string Moved(const book::Book& of) {
    return Scalar(of, "select coalesce(sum(row_count),0) from desk_moved");
  }
  [[nodiscard]] bool OnServer() const { return std::string(GetParam()) == "postgresql"; }

  SharedBook shared_{GetParam()};
  book::Book book_ = shared_.Open();
};
INSTANTIATE_TEST_SUITE_P(Engines, Journal, testing::ValuesIn(SharedEngines()));

TEST_P(Journal, OneCommandForAllStatementsOfASaveAndOfADeletion) {
  EXPECT_EQ(Commands(book_), Texts()) << "a new book begins without a history";
  test::AddPosting(book_, "gl_accsum", "1001");
  test::AddPosting(book_, "gl_accvouch", "1001");
  editing::Editor editor(shared_.Open());
  editor.book.GetSession().SetUser("张三");
  editor.Open(editing::Below("1001"), [&] {  // the parent changes with it, and postings move
    editor.SetName("人民币");
    editor.Save();
  });
  EXPECT_EQ(Commands(book_), Texts({"1|张三|2"}));
  EXPECT_EQ(Moved(book_), "2");
  editor.Open(editing::Edit(3), [&] {  // 10020001 goes to another parent
    editor.SetCode("22020001");
    editor.Save();
  });
  EXPECT_EQ(Commands(book_), Texts({"1|张三|2", "2|张三|2"}));

  test::ViewTest list(shared_.Open());
  list.book.GetSession().SetUser("李四");
  list.Start();
  list.Select("10020002");
  list.user.answers = {viewkit::UserPort::Answer::kYes};
  EXPECT_TRUE(list.view.FileDelete());
  EXPECT_EQ(Commands(book_), Texts({"1|张三|2", "2|张三|2", "3|李四|2"}));
  // What is refused leaves nothing, and a change of nothing is none.
  EXPECT_NE(host::ExecuteSql(*book_.System(), "delete from gl_code where ccode='1001'"), "");
  EXPECT_EQ(Commands(book_).size(), 3U);
  EXPECT_EQ(FaultsOf(book_), Texts{"no balance: (null)"});
}

TEST_P(Journal, WhatHappenedIsSaidOnceWithItsNumbers) {
  editing::Editor editor(shared_.Open());
  book::OutcomeTeller teller;
  const auto news = [&] { return teller.Next(editor.book.GetSession()); };
  const auto save = [&](const editing::Opening& how, const std::string& code) {
    editor.Open(how, [&] {
      editor.SetName("新名");
      if (!code.empty()) editor.SetCode(code);
      editor.Save();
    });
    return news();
  };
  for (int i = 0; i < 3; ++i) test::AddPosting(book_, "gl_accvouch", "1001");
  test::AddPosting(book_, "gl_accsum", "1001");
  test::AddPosting(book_, "gl_accsum", "2202");
  EXPECT_EQ(save(editing::Below("1001"), ""), "新增科目 10010001；上级 1001 的 3 笔分录已转入");
  EXPECT_EQ(news(), "");
  const int id = std::stoi(Scalar(book_, "select i_id from gl_code where ccode='10010001'"));
  EXPECT_EQ(save(editing::Edit(id), "10010009"), "编码 10010001 改为 10010009，移动了 3 笔分录");
  EXPECT_EQ(save(editing::Edit(id), "22020001"),
            "编码 10010009 改为 22020001，移动了 3 笔分录；上级 2202 的余额已转入；科目 1001 "
            "已成为末级");
  EXPECT_EQ(save(editing::Edit(1), ""), "已修改科目 1001");
  EXPECT_EQ(host::ExecuteSql(*editor.book.System(), "delete from gl_code where ccode like '1002%'"),
            "");
  EXPECT_EQ(news(), "已删除 3 个科目");
  (void)book::UndoCommand(editor.book.GetSession(), editor.book.GetSession().LastCommand());
  EXPECT_EQ(news(), "已撤销：删除科目 1002；3 个科目");
}

TEST_P(Journal, WhatOtherProgramsDoIsThereToo) {
  test::Run(book_, "update gl_code set ccode_name=ccode_name");
  EXPECT_EQ(Scalar(book_, "select count(*) from desk_change"), "0");
  test::Run(book_, "update gl_code set ccode_name='x' where ccode like '1002%'");
  const std::string who = OnServer() ? "book" : "";
  EXPECT_EQ(Commands(book_), Texts{"0|" + who + "|3"});
  EXPECT_THAT(Scalar(book_, "select old_row from desk_change where row_id=2"),
              HasSubstr("\"银行存款\""));
}

TEST_P(Journal, CallersCannotReachIt) {
  for (const char* sql : {"delete from desk_change", "update desk_command set who='x'",
                          "insert into desk_moved select * from desk_moved"}) {
    EXPECT_THAT(host::ExecuteSql(*book_.System(), sql), HasSubstr("不允许访问表")) << sql;
  }
}

TEST_P(Journal, TheRulesPauseForOneTransactionThatLeavesTheChartWhole) {
  test::AddPosting(book_, "gl_accsum", "10020001");
  const auto run = [&](const std::string& sql) { test::Run(book_, sql); };
  {
    book::Transaction transaction(book_.GetSession());
    book::RulesPause pause(book_.GetSession());
    const book::JournalCommand command(book_.GetSession(), CommandKind::kRenumber);
    run("update gl_code set ccode='1009' where ccode='1002'");
    EXPECT_THROW(pause.Resume(), book::DatabaseError);
    EXPECT_THROW(transaction.Commit(), book::DatabaseError);
  }
  EXPECT_EQ(Commands(book_), Texts());
  {
    book::Transaction transaction(book_.GetSession());
    book::RulesPause pause(book_.GetSession());
    book::JournalCommand command(book_.GetSession(), CommandKind::kRenumber);
    run("update gl_code set ccode='1009'||substr(ccode,5) where ccode like '1002%'");
    EXPECT_EQ(command.MovePostings("10020001", "10090001"), 1);
    pause.Resume();
    transaction.Commit();
  }
  EXPECT_EQ(Commands(book_), Texts{OnServer() ? "4|book|3" : "4||3"});
  EXPECT_THROW(run("update gl_code set ccode='1002' where ccode='1009'"), book::DatabaseError)
      << "the rules work again";
  EXPECT_EQ(ChartFaultsOf(book_), Texts());
}

TEST_P(Journal, TheOldestCommandsGoWhenTheBookIsOpened) {
  for (int i = 0; i < 3; ++i) {
    test::Run(book_, "update gl_code set chelp='" + std::to_string(i) + "' where i_id=1");
    test::Run(book_,
              "insert into desk_command(kind,turn,target,title,who,made_at)"
              "select 2,0,0,'','','2026-01-01 00:00:00' from gl_code a,gl_code b,gl_code c,gl_code "
              "d limit 499");
  }
  const book::Book opened = shared_.Open();
  EXPECT_EQ(Scalar(opened, "select count(*) from desk_command"), "1000");
  EXPECT_EQ(Scalar(opened, "select count(*) from desk_change"), "2");
}

TEST_P(Journal, ABookOfTheVersionBeforeGetsOne) {
  for (const std::string table : {"command", "change", "moved"}) {
    test::Run(book_, "drop table desk_" + table);
  }
  book_.GetSession().Own().SetSchemaVersion(4);
  {
    book::Transaction transaction(book_.GetSession());
    EXPECT_THROW(book::RulesPause{book_.GetSession()}, book::DatabaseError)
        << "rules that know of no pause";
  }
  const book::Book renewed = shared_.Open();
  EXPECT_EQ(host::ExecuteSql(*renewed.System(), "update gl_code set chelp='x' where i_id=1"), "");
  EXPECT_EQ(Commands(renewed).size(), 1U);
}

}  // namespace
}  // namespace tavrix::sharing
