// The role of docs/schema/postgresql-role.sql: all that the desk does works with it, nothing else.

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>

#include "book/copy.h"
#include "book/engines.h"
#include "book/ledger/opening_balance.h"
#include "book/ledger/posting.h"
#include "book/ledger/trial_balance.h"
#include "editing/editor_test.h"
#include "host/calls.h"
#include "maintenance/view_test.h"
#include "sharing/shared_book.h"
#include "support/matchers.h"

namespace tavrix::sharing {
namespace {

using editing::Editor;
using testing::AnyOf;

constexpr const char* kNoRight = "没有使用账簿的权限";

std::string Replaced(std::string text, const std::string& word, const std::string& by) {
  for (std::size_t at = 0; (at = text.find(word, at)) != std::string::npos; at += by.size()) {
    text.replace(at, word.size(), by);
  }
  return text;
}

/// The statements of the documented script.
std::vector<std::string> Script() {
  std::ifstream file(std::string(TAVRIX_SOURCE "/docs/schema/postgresql-role.sql"));
  std::vector<std::string> statements;
  for (std::string line; std::getline(file, line);) {
    if (!line.starts_with("--")) statements.push_back(Replaced(line, ";", ""));
  }
  return statements;
}

std::string SchemaOf(const std::string& place) {
  const std::string key = "search_path to ";
  const std::size_t start = place.find(key) + key.size();
  return place.substr(start, place.find('}', start) - start);
}

class RoleTest : public testing::Test {
 protected:
  void SetUp() override {
    if (test::ServerPlace().empty()) GTEST_SKIP() << "TAVRIX_ODBC names no server";
    shared_ = std::make_unique<SharedBook>("postgresql");
    owner_ = book::EngineFor(shared_->Place()).Open({.path = shared_->Place()});
    const std::string schema = SchemaOf(shared_->Place());
    role_ = "desk_" + schema;
    const auto rows = owner_->Query("select current_database()", book::Origin::kDesk);
    const std::string database = rows->Next() ? rows->Get(0).ToText() : "";
    for (const std::string& statement : Script()) {
      Own(Replaced(
          Replaced(Replaced(statement, "database books", "database " + database), "book1", schema),
          "desk_user", role_));
    }
    place_ = shared_->Place() + "Uid=" + role_ + ";";
  }
  void TearDown() override {
    if (owner_ == nullptr) return;
    Own("drop owned by " + role_);
    Own("drop role " + role_);
  }
  void Own(const std::string& sql) const { owner_->Execute(sql, book::Origin::kDesk); }
  [[nodiscard]] book::Book Open() const {
    book::Book opened = book::Book::Open(place_);
    opened.Environment().user_folder.clear();
    return opened;
  }
  template <class Action>
  static std::string Failure(const Action& action) {
    try {
      action();
      return {};
    } catch (const host::HostError& error) {
      return error.what();
    }
  }
  std::unique_ptr<SharedBook> shared_;
  std::unique_ptr<book::Connection> owner_;
  std::string role_;
  std::string place_;
};

TEST_F(RoleTest, AllCommandsOfTheDeskWork) {
  const book::Book posting = Open();
  EXPECT_EQ(posting.Faults(), "");
  EXPECT_EQ(book::Post(posting.GetSession(),
                       {.year = 2026,
                        .month = 1,
                        .day = 5,
                        .entries = {{.code = "1001", .debit = 7}, {.code = "5001", .credit = 7}}}),
            1);
  Editor editor(Open());
  // Below a leaf that has been posted to: its postings move, its flag changes.
  editor.Open(editing::Below("1001"), [&] {
    editor.SetName("人民币");
    editor.Save();
  });
  editor.Open(editing::Edit(3), [&] {
    editor.SetCode("10020009");
    editor.SetName("新行");
    editor.Save();
  });
  EXPECT_EQ(editor.reports, editing::Reports());
  EXPECT_EQ(editor.saved.size(), 2U);

  test::ViewTest list(Open());
  list.Start();
  EXPECT_EQ(list.Codes(), (editing::Texts{"1001", ".10010001", "1002", ".10020002", ".10020009",
                                          "2202", "5001"}));
  for (const char* code : {"10020002", "10020009"}) {
    list.Select(code);
    list.user.answers = {viewkit::UserPort::Answer::kYes};
    EXPECT_TRUE(list.view.FileDelete());
  }
  EXPECT_EQ(list.reports, editing::Texts());
  EXPECT_EQ(book::ReadTrialBalance(posting.GetSession(), {}).size(), 2U);
  EXPECT_EQ(posting.Setting("system", "kmbm"), "4444");
  EXPECT_EQ(FaultsOf(posting), editing::Texts());
  // What it opens with takes the place of what it opened with, though nothing may be deleted.
  for (const std::int64_t balance : {700, 300}) {
    book::SaveOpening(
        posting.GetSession(),
        {{.code = "2202",
          .lines =
              {{.balance = balance, .currency = "美元", .foreign_amount = 100, .quantity = 2}}},
         {.code = "5001", .lines = {{.balance = -balance}}}});
  }
  EXPECT_EQ(test::Scalar(posting,
                         "select sum(foreign_amount) from gl_accvouch where "
                         "fiscal_year is null and ccode='2202'"),
            "100");
  for (const char* ledger : {"gl_accvouch", "gl_accsum"}) {
    EXPECT_EQ(test::Scalar(posting, std::string("select sum(debit) from ") + ledger +
                                        " where fiscal_year is null and ccode='2202'"),
              "300");
  }
}

TEST_F(RoleTest, TheRoleCanDoNoMore) {
  const std::string other = test::NewServerPlace();
  (void)book::Book::Create(other, {.code_rule = "4444", .accounts = SharedBook::Accounts()});
  const std::string elsewhere = "select * from " + SchemaOf(other) + ".gl_code";
  const book::Book opened = Open();
  for (const std::string& sql : std::initializer_list<std::string>{
           "delete from gl_accvouch",
           "delete from gl_accass",
           "delete from gl_accsum",
           "delete from desk_identifier",
           "truncate gl_code",
           "insert into tvxbz values(9,'','')",
           "update tvxjldw set 名称=''",
           "update xt_objects set title=''",
           "update xt_accinformation set item_value=''",
           "delete from xt_accinformation",
           "drop table gl_code",
           "alter table gl_code add x integer",
           "alter table gl_code disable trigger user",
           "drop trigger gl_code_deleted on gl_code",
           "create or replace function gl_code_keep() returns trigger language plpgsql as "
           "$$begin return null; end$$",
           "drop function len(text)",
           "create index x on gl_code(chelp)",
           "create table x(a integer)",
           "create temporary table gl_code(a integer)",
           "create view x as select 1",
           "create function x() returns integer language sql as 'select 1'",
           "create schema x",
           "create role x",
           "alter role " + role_ + " superuser",
           "set session authorization book",
           "set role pg_write_server_files",
           "select * from pg_authid",
           "select pg_read_file('PG_VERSION')",
           "copy gl_code to program 'true'",
           "copy gl_code to '/tmp/x'",
           elsewhere}) {
    const std::string text = Failure([&] { test::Run(opened, sql); });
    EXPECT_THAT(text, AnyOf(HasSubstr("permission denied"), HasSubstr("must be owner"),
                            HasSubstr("must be superuser")))
        << sql;
    EXPECT_THAT(text, HasSubstr(kNoRight)) << sql;
  }
  EXPECT_EQ(FaultsOf(opened), editing::Texts());
}

TEST_F(RoleTest, WhereARightIsMissingTheUserReadsThat) {
  book::Book opened = Open();
  EXPECT_THAT(Failure([&] { opened.SetSetting("system", "kmbm", "4"); }), HasSubstr(kNoRight));
  EXPECT_EQ(opened.Setting("system", "kmbm"), "4444");
  EXPECT_THAT(host::ExecuteSql(*opened.System(), "delete from gl_accsum"), HasSubstr(kNoRight));
  EXPECT_THAT(Failure([&] { (void)host::QueryRows(*opened.System(), "select * from pg_class"); }),
              HasSubstr("不允许访问表：pg_class"));

  const test::TempFolder folder;
  EXPECT_EQ(book::CopyBook(place_, folder.File("a.book")).size(), 9U);
  const std::string empty = test::NewServerPlace();
  const auto copy = [&] {
    (void)book::CopyBook(folder.File("a.book"), empty + "Uid=" + role_ + ";");
  };
  EXPECT_THAT(Failure(copy), HasSubstr(kNoRight)) << "the schema is not even seen";
  Own("grant usage on schema " + SchemaOf(empty) + " to " + role_);
  EXPECT_THAT(Failure(copy), HasSubstr(kNoRight)) << "no table may be made there";
  Own("revoke usage on schema " + SchemaOf(empty) + " from " + role_);

  Own("revoke update on gl_code from " + role_);
  Editor editor(Open());
  editor.Open(editing::Edit(3), [&] {
    editor.SetName("新名");
    editor.Save();
    ASSERT_EQ(editor.reports.size(), 1U);
    EXPECT_THAT(editor.reports.front().text, HasSubstr(kNoRight));
    EXPECT_TRUE(editor.dialog->IsOpen());
    editor.reports.clear();
    editor.user.answers = {viewkit::UserPort::Answer::kNo};
  });
}

}  // namespace
}  // namespace tavrix::sharing
