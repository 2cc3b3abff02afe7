#include "book/sql/sql_guard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "host/calls.h"
#include "support/matchers.h"
#include "support/test_book.h"

namespace desk::book {
namespace {

/// What the guard says; empty when it accepts.
std::string Verdict(std::string_view sql, const ColumnQuestion& question = {}) {
  try {
    CheckCallerStatement(sql, question);
    return {};
  } catch (const DatabaseError& error) {
    EXPECT_EQ(error.Kind(), ErrorKind::kRefused) << sql;
    return error.what();
  }
}

constexpr const char* kTable = "不允许访问表";
constexpr const char* kColumn = "没有这个列";
constexpr const char* kFunction = "不允许使用函数";
constexpr const char* kSyntax = "语法错误";
constexpr const char* kSpelling = "不允许的写法";
constexpr const char* kQuote = "单引号位置不对";
constexpr const char* kAlias = "别名不能是";
constexpr const char* kComment = "注释";
constexpr const char* kKind = "只允许执行";
constexpr const char* kSecond = "一次只能执行一条语句";

struct Hostile {
  const char* sql;
  const char* verdict;
};

void ExpectRefusals(std::initializer_list<Hostile> all) {
  for (const auto& [sql, verdict] : all) EXPECT_THAT(Verdict(sql), HasSubstr(verdict)) << sql;
}

TEST(SqlGuard, RefusesOtherTablesWhateverHidesThem) {
  ExpectRefusals({
      {"select * from desk_identifier", kTable},
      {"select * from gl_code,desk_identifier", kTable},
      {"select * from gl_code a,(select 1 as b)c,pg_user", kTable},
      {"select * from public.gl_code", kTable},
      {"select * from gl_code.gl_code", kSyntax},
      {"select * from gl_code x join pg_user y on 1=1", kTable},
      {"select * from gl_code x cross join pg_user", kTable},
      {"select * from (gl_code a inner join pg_user b on 1=1)", kTable},
      {"select * from (select ccode from pg_user) x", kTable},
      {"select * from (desk_identifier)", kTable},
      {"select * from (gl_code,desk_identifier)", kSyntax},
      {"select 1from pg_authid", kSpelling},
      {"select 1.from pg_authid", kSpelling},
      {"select s.salary from gl_code as set, hr.pay s", kAlias},
      {"select s.salary from gl_code set, hr.pay s", kSyntax},
      {"select s.salary from gl_code as having, hr.pay s", kAlias},
      {"select s.salary from gl_code as a, hr.pay s", kTable},
      {"select x.i_id as from, s.salary from gl_code x", kAlias},
      {"insert into gl_code(i_id) select s.salary from gl_code as set, hr.pay s", kAlias},
      {"update gl_code set chelp=s.salary from gl_code as set, hr.pay s", kSyntax},
      {"update gl_code set chelp='' from hr.pay", kSyntax},
      {"delete from gl_code using gl_code as set, hr.pay s", kSyntax},
      {"delete from gl_code using desk_identifier", kSyntax},
      {"update gl_code set chelp=(select max(last_id) from desk_identifier)", kTable},
      {"update desk_identifier set last_id=1", kTable},
      {"update gl_code,desk_identifier set last_id=1", kSyntax},
      {"update gl_code a join hr.pay b on 1=1 set chelp=''", kSyntax},
      {"insert into desk_identifier values('a',1)", kTable},
      {"insert into gl_code select * from desk_identifier", kTable},
      {"delete from desk_identifier", kTable},
      {"delete desk_identifier", kSyntax},
      {"delete gl_code from gl_code,hr.pay", kSyntax},
      {"delete from gl_code where exists(select 1 from hr.pay)", kTable},
      {"select 1 union table desk_identifier", kSyntax},
      {"select 1 union select last_id from desk_identifier", kTable},
      {"select ccode from gl_code except select rolname from pg_roles", kTable},
      {"select * from gl_code order by (select 1 from pg_user)", kTable},
      {"select * from gl_code group by ccode having 1 in(select i_id from pg_class)", kTable},
      {"select * from gl_code where ccode in(select a from (select 1 as a from pg_user)t)", kTable},
      {"select case when 1=1 then (select 1 from pg_user) end", kTable},
      {"select max(ccode) set,hr.pay from gl_code", kSyntax},
      {"update gl_code as set set bend=1", kAlias},
      {"update gl_code as a set bend=1 where gl_code.bend=0", kColumn},
      {"select * from gl_code a left join gl_accsum b on (select 1 from pg_user)=1", kTable},
      {"select * into other from gl_code", kSyntax},
      {"select 1 as a into other", kSyntax},
      {"select ccode into outfile '/tmp/x' from gl_code", kSyntax},
      {"select * from gl_code in 'c:\\other.mdb'", kSyntax},
      {"select * from gl_code in '' [ODBC;]", kSpelling},
      {"select * from gl_code cross apply hr.pay", kSyntax},
      {"select * from gl_code outer apply hr.pay", kSyntax},
      {"select * from gl_code straight_join hr.pay", kSyntax},
      {"select * from gl_code natural join hr.pay", kSyntax},
      {"select * from gl_code a join hr.pay using(ccode)", kTable},
      {"select * from lateral (select 1)", kTable},
      {"select * from only gl_code", kTable},
      {"select * from only (hr.pay)", kTable},
      {"select 1 from (with x as (select 1 from gl_code) select 1)", kTable},
      {"select * from gl_code tablesample system(1)", kSyntax},
      {"select * from (values(1)) t", kTable},
      {"select * from unnest(1) t", kTable},
      {"select * from pg_ls_dir('/')", kTable},
      {"select * from openrowset('x','y','z')", kTable},
      {"select * from dual", kTable},
      {"select * from gl_codе", kSpelling},  // a Cyrillic letter
  });
}

TEST(SqlGuard, RefusesFunctionsAndWhatCallsThemWithoutParentheses) {
  ExpectRefusals({
      {"select pg_sleep(9)", kFunction},
      {"select \"pg_sleep\"(9)", kSpelling},
      {"select set_config('a','b',false)", kFunction},
      {"select * from gl_code where ccode=lo_get (1)", kFunction},
      {"select gl_code.row_to_json from gl_code", kColumn},
      {"select a.row_to_json from gl_code a", kColumn},
      {"select a.name from gl_code a", kColumn},
      {"select t.text from (select ccode from gl_code) t", kColumn},
      {"select (a).row_to_json from gl_code a", kSyntax},
      {"select a from gl_code a", kColumn},
      {"select gl_code from gl_code", kColumn},
      {"select count(a) from gl_code a", kColumn},
      {"select current_user", kSyntax},
      {"select ccode from gl_code where ccode=session_user", kSyntax},
      {"select ccode as current_user from gl_code order by 1", kAlias},
      {"select gl_code.current_user from gl_code", kColumn},
      {"select user from gl_code", kSyntax},
      {"select localtime", kSyntax},
      {"select ctid from gl_code", kSyntax},
      {"select gl_code.tableoid from gl_code", kColumn},
      {"select rowid from gl_code", kSyntax},
      {"select max(ccode) over() from gl_code", kSyntax},
      {"select sum(igrade) filter(where 1=1) from gl_code", kSyntax},
      {"select iif(1=1,pg_sleep(1),0)", kFunction},
      {"select len('a','b')", "参数个数"},
      {"select left('a')", "参数个数"},
      {"select max(1,2)", "参数个数"},
      {"select len(*) from gl_code", kSyntax},
      {"select len()", kSyntax},
      {"select dbo.fn(1)", kSyntax},
      {"select any(select 1)", kFunction},
      {"select cast('1' as int)", kFunction},
      {"select exists(select 1 from gl_code where pg_sleep(1)=1)", kFunction},
      {"insert into gl_code(i_id)values(pg_backend_pid())", kFunction},
      {"update gl_code set chelp=version()", kFunction},
      {"delete from gl_code where load_extension('x')", kFunction},
  });
}

TEST(SqlGuard, RefusesMoreThanOneStatement) {
  ExpectRefusals({
      {"", "语句为空"},
      {" ; ", "语句为空"},
      {"delete from gl_code;delete from gl_accvouch", kSecond},
      {"select 1;;select 2", kSecond},
      {"select 1 drop table gl_code", kSyntax},
      {"select 1 a drop table gl_code", kSyntax},
      {"select ccode year from gl_code", kSyntax},
      {"select 1 as a drop table gl_code", kSyntax},
      {"select 1 exec sp_who", kSyntax},
      {"select 1 from gl_code exec", kSyntax},
      {"select 1 from gl_code checkpoint", kSyntax},
      {"select 1 from gl_code as a shutdown", kSyntax},
      {"select 1 from gl_code a commit", kSyntax},
      {"select 1 from gl_code where 1=1 delete from gl_code", kSyntax},
      {"select 1 from gl_code order by ccode update gl_code set bend=1", kSyntax},
      {"insert into gl_code(i_id)values(1) select 1", kSyntax},
      {"update gl_code set bend=1 delete from gl_code", kSyntax},
      {"delete from gl_code drop table gl_code", kSyntax},
      {"delete from gl_code where 1=1 exec('x')", kSyntax},
      {"select 1 as x\xE3\x80\x80"
       "drop",
       kSpelling},  // a blank for some servers
      {"select 1 as x\xC2\xA0"
       "drop",
       kSpelling},
      {"drop table gl_code", kKind},
      {"exec sp_who", kKind},
      {"with x as (select 1) select * from x", kKind},
      {"explain select 1", kKind},
      {"(select 1)", kKind},
      {"values(1)", kKind},
      {"truncate gl_code", kKind},
      {"replace into gl_code(i_id)values(1)", kKind},
      {"merge into gl_code using hr.pay on 1=1", kKind},
      {"pragma user_version=9", kKind},
      {"attach 'x' as y", kKind},
      {"declare @a int", kKind},
  });
}

TEST(SqlGuard, RefusesWhatServersReadInDifferentWays) {
  using namespace std::string_literals;
  ExpectRefusals({
      {"select 1 /* nested /* */ ' */", kComment},
      {"select 1 -- '", kComment},
      {"select 1--1", kComment},
      {"select/**/1", kComment},
      {"select /*!50000 1 */", kComment},
      {"select 1 # '", kSpelling},
      {"select E'\\' ; delete from desk_identifier --'", kSecond},
      {"select N'a'", kQuote},
      {"select 1'a'", kQuote},
      {"select B'1'", kQuote},
      {"select left'a'", kQuote},
      {"select U&'\\0027'", kSpelling},
      {"select x'41'", kQuote},
      {"select _utf8'a'", kQuote},
      {"select date'2020-01-01'", kQuote},
      {"select 'a' 'b'", kSyntax},
      {"select 'a'b'", kQuote},
      {"select $$'$$", kSpelling},
      {"select $1", kSpelling},
      {"select a$b from gl_code", kSpelling},
      {"select ?", kSpelling},
      {"select `ccode` from gl_code", kSpelling},
      {"select [ccode] from gl_code", kSpelling},
      {"select \"ccode\" from gl_code", kSpelling},
      {"select 'open", kQuote},
      {"select 'open''", kQuote},
      {"select '", kQuote},
      {"select {fn user()}", kSpelling},
      {"select @@version", kSpelling},
      {"select 1::text", kSpelling},
      {"select ccode from gl_code where ccode ~ '.'", kSpelling},
      {"select 1 where 1!=1", kSpelling},
      {"select 1&1", kSpelling},
      {"select 0x41", kSpelling},
      {"select 1e5", kSpelling},
      {"select 1.2.3", kSyntax},
      {"select .5", kSyntax},
      {"select |/ 4", kSyntax},
      {"select 1 <=> 1", kSyntax},
      {"select a.ccode as é from gl_code a", kSpelling},
      {"select a.ccode as a’b from gl_code a", kSpelling},
      {"select a.ccode as \xff from gl_code a", kSpelling},
  });
  EXPECT_THAT(Verdict("select 1\0 union"s), HasSubstr("不允许的字符"));
}

TEST(SqlGuard, RefusesClausesThatNoCallerNeeds) {
  ExpectRefusals({
      {"select * from gl_code for update", kSyntax},
      {"select * from gl_code for xml auto", kSyntax},
      {"select * from gl_code with(nolock)", kSyntax},
      {"select * from gl_code option(recompile)", kSyntax},
      {"select * from gl_code use index(a)", kSyntax},
      {"select * from gl_code procedure analyse()", kSyntax},
      {"select distinct on(ccode) ccode from gl_code", kFunction},
      {"select ccode collate \"C\" from gl_code", kSpelling},
      {"select ccode collate nocase from gl_code", kSyntax},
      {"select * from gl_code limit (select 1)", kSyntax},
      {"select top (select 1) ccode from gl_code", kSyntax},
      {"select * from gl_code order by ccode using <", kSyntax},
      {"select ccode from gl_code window w as ()", kSyntax},
      {"insert ignore into gl_code(i_id)values(1)", kSyntax},
      {"insert or replace into gl_code(i_id)values(1)", kSyntax},
      {"insert into gl_code(i_id)values(1) on conflict do nothing", kSyntax},
      {"insert into gl_code(i_id)values(1) returning i_id", kSyntax},
      {"insert into gl_code default values", kSyntax},
      {"insert into gl_code set i_id=1", kSyntax},
      {"insert into gl_code(i_id)values(ccode)", kColumn},
      {"insert into gl_code(nothing)values(1)", kColumn},
      {"insert gl_code(i_id)values(1)", kSyntax},
      {"update or ignore gl_code set bend=1", kTable},
      {"update gl_code set bend=1 returning bend", kSyntax},
      {"update gl_code set nothing=1", kColumn},
      {"update gl_code set bend=1 where nothing=1", kColumn},
      {"update gl_code set bend+=1", kSyntax},
      {"update gl_code set (bend,br)=(1,1)", kSyntax},
      {"update gl_code set bend=1 order by 1 limit 1", kSyntax},
      {"update top (1) gl_code set bend=1", kTable},
      {"delete top (1) from gl_code", kSyntax},
      {"delete from gl_code returning ccode", kSyntax},
      {"delete from gl_code where current of c", kSyntax},
      {"select * from gl_code)", kSyntax},
      {"select (1", "不完整"},
      {"select * from", "不完整"},
      {"select ccode,from gl_code", kSyntax},
      {"select from gl_code", kSyntax},
      {"select *", kColumn},
      {"select b.* from gl_code a", kColumn},
      {"select a.ccode from gl_code a,(select a.ccode from gl_accsum) b", kColumn},
      {"select item_value from gl_code", kColumn},
      {"select ccode as x from gl_code where x='1'", kColumn},
      {"select i_id from gl_code where ccode=1 where 2", kSyntax},
  });
}

TEST(SqlGuard, NamesThePlaceInWords) {
  EXPECT_EQ(Verdict("select s.salary from gl_code as a, hr.pay s"),
            "不允许访问表：hr（第 36 个字）");
  EXPECT_EQ(Verdict("select '科目',salary from gl_code"), "没有这个列：salary（第 13 个字）");
  const std::string open = "select '" + std::string(5000, '\'') + "科目";
  EXPECT_LT(Verdict(open).size(), 200U);
}

TEST(SqlGuard, DeepNestingIsRefusedBeforeTheStackEnds) {
  const auto nested = [](const std::string& open, const std::string& close, int depth) {
    std::string sql = "select ";
    for (int i = 0; i < depth; ++i) sql += open;
    sql += "1";
    for (int i = 0; i < depth; ++i) sql += close;
    return sql;
  };
  for (const auto& [open, close] :
       {std::pair{"(", ")"}, {"(select ", ")"}, {"case when ", " then 1 end"}, {"abs(", ")"}}) {
    EXPECT_EQ(Verdict(nested(open, close, 20)), "") << open;
    EXPECT_THAT(Verdict(nested(open, close, 100'000)), HasSubstr("嵌套太深")) << open;
  }
  std::string joins = "select 1 from ";
  joins += std::string(100'000, '(');
  EXPECT_THAT(Verdict(joins), HasSubstr("嵌套太深"));
  EXPECT_EQ(Verdict(nested("- ", "", 100'000)), "");
  EXPECT_EQ(Verdict(nested("not ", "", 100'000)), "");
}

// What a statement costs grows with its length, not with what it could be multiplied to.
TEST(SqlGuard, ManyNamesAndTablesCostLittle) {
  const auto repeated = [](const std::string& item, int times) {
    std::string list = item;
    for (int i = 1; i < times; ++i) list += "," + item;
    return list;
  };
  const Book book = tavrix::test::MakeBook();
  const auto verdict = [&](const std::string& sql) {
    return host::ExecuteSql(*book.System(), sql);
  };
  const auto start = std::chrono::steady_clock::now();
  std::string stars = "gl_code";
  for (int i = 0; i < 20; ++i) stars = "(select *,*,*,*,*,*,*,* from " + stars + ")a";
  EXPECT_EQ(Verdict("select 1 from " + stars), "");
  std::string names = "(select igrade as n0";
  for (int i = 1; i < 10'000; ++i) names += ",igrade as n" + std::to_string(i);
  EXPECT_EQ(Verdict("select n9 from (select " + repeated("*", 10'000) + " from " + names +
                    " from gl_code)a)b order by " + repeated("n9", 10'000)),
            "");
  EXPECT_EQ(Verdict("select ccode_name from gl_accsum," + repeated("tvxbz", 62) + ",gl_code"), "");
  EXPECT_THAT(verdict("select " + repeated("nope", 8000) + " from " + repeated("gl_code", 8000)),
              HasSubstr("表太多"));
  EXPECT_THAT(verdict("select " + repeated("nope", 8000) + " from " + repeated("gl_code", 64)),
              HasSubstr(kColumn));
  std::string inner = "select (select n0";
  for (int i = 1; i < 8000; ++i) inner += ",n" + std::to_string(i);
  EXPECT_THAT(verdict(inner + " from " + repeated("gl_code", 64) + ")"), HasSubstr(kColumn));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

TEST(SqlGuard, ColumnsThatTheDatabaseHasBesidesTheSchemaAreAsked) {
  std::vector<std::string> asked;
  const ColumnQuestion question = [&](std::string_view table, std::string_view column) {
    asked.push_back(std::string(table) + "." + std::string(column));
    return table == "gl_code" && (column == "region" || column == "地区" || column == "user");
  };
  EXPECT_EQ(Verdict("select ccode,i_id from gl_code where gl_code.bend=1", question), "");
  EXPECT_TRUE(asked.empty());
  for (const char* sql :
       {"select region,a.地区 from gl_code a", "update gl_code set region='x' where region is null",
        "insert into gl_code(i_id,region)values(1,'')",
        "select t.region from (select * from gl_code) t"}) {
    EXPECT_EQ(Verdict(sql, question), "") << sql;
  }
  for (const char* sql :
       {"select region from gl_accsum", "select a.user from gl_code a",
        "select nothing from gl_code", "select t.region from (select ccode from gl_code) t"}) {
    EXPECT_THAT(Verdict(sql, question), HasSubstr(kColumn)) << sql;
  }
  EXPECT_THAT(Verdict("select user from gl_code", question), HasSubstr(kSyntax));
}

TEST(SqlGuard, ABookOfAnotherMakerKeepsItsColumns) {
  const Book book = tavrix::test::MakeBook();
  const std::string sql = "update gl_code set 地区='东' where 地区 is null and i_id=1";
  EXPECT_THAT(host::ExecuteSql(*book.System(), sql), HasSubstr(kColumn));
  tavrix::test::Run(book, "alter table gl_code add 地区 varchar(20)");
  EXPECT_EQ(host::ExecuteSql(*book.System(), sql), "");
  EXPECT_EQ(tavrix::test::Scalar(book, "select 地区 from gl_code where i_id=1"), "东");
}

}  // namespace
}  // namespace desk::book
