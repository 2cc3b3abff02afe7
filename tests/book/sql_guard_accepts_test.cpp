// The statements that must pass: what the library sends, and what a careful host adds.

#include <gtest/gtest.h>

#include <chrono>

#include "book/sql/sql_guard.h"
#include "host/calls.h"
#include "support/test_book.h"

namespace desk::book {
namespace {

std::string Verdict(std::string_view sql) {
  try {
    CheckCallerStatement(sql);
    return {};
  } catch (const DatabaseError& error) {
    return error.what();
  }
}

/// What the library sends, in the two dialects.
constexpr std::initializer_list<const char*> kOfTheLibrary = {
    "select ccode,ccode_name,cexch_name,'',i_id,igrade,cclass from gl_code where cclass='资产' "
    "order by ccode",
    "select * from gl_code where i_id=5",
    "select count(i_id) from gl_code where ccode like '1002%' and len(ccode)>4",
    "select count(i_id) from gl_accvouch where ccode like '1002%'",
    "select count(i_id) from gl_accass where ccode like '1002%'",
    "select count(i_id) from gl_accsum where ccode like '1002%'",
    "delete from gl_code where ccode like '100299%'",
    "update gl_code set bend=1 where ccode='1001'",
    "update gl_accvouch set ccode='1001' where ccode='1002'",
    "update gl_accass set ccode='1001' where ccode='1002'",
    "update gl_accsum set ccode='1001' where ccode='1002'",
    "Select i_ID,ccode from gl_code where left(ccode,4)='1002'",
    "Select ccode,i_ID from gl_code where ccode='1002'",
    "Select bend,ccode from gl_code Where i_ID=5",
    "Select Max(ccode) as ccode From gl_code Where len(ccode)=6 And cclass='资产' and ccode Like "
    "'1002%'",
    "select count(i_ID) from gl_code where ccode like '1002%' and len(ccode)>4",
    "select bend from gl_code where ccode='1002'",
    "insert into gl_code(I_id,cclass,Cclass_engl,cclassany,cclassany_engl,ccode,ccode_name,"
    "ccode_engl,igrade,bproperty,cbook_type,cbook_type_engl,chelp,cexch_name,cmeasure,bperson,bcus,"
    "bsup,bdept,bitem,cass_item,br,be,cgather,bend,bexchange,bcash,bbank,bused,bd_c,dbegin,dend,"
    "itrans,bclose,cother,iotherused,bcashitem)values(77,'资产','','','','1122','应收账款','',1,1,"
    "'金额式','','yszk','','',0,1,0,0,0,'',0,0,'',1,0,0,0,0,0,0,0,0,0,'',0,0)",
    "update gl_code set cclass='资产',ccode='1122',ccode_name='应收',ccode_engl='',igrade=1,"
    "bproperty=1,cbook_type='金额式',chelp='',bexchange=0,cexch_name='',cmeasure='',bperson=0,bcus="
    "1,bsup=0,bdept=0,bitem=0,br=0,be=0,cgather='',bclose=0,cother='' where i_id=77",
    "select 币种ID,外币名称 from tvxbz order by 外币代号",
    "select 单位ID,名称 from tvxjldw order by 代码",
    "select item_value from xt_accinformation where system_code='system' and "
    "item_code='mouseeventscrollrate'",
    "select progID from xt_objects where billitem=2015",
    "SELECT i_id,ccode,ccode_name,chelp,case when bproperty=1 then '借' else '贷' end ,cclass,"
    "bclose,bend FROM gl_code  WHERE ccode<>'' and (ccode like '2202%' or ccode like '%') and "
    "bcus=0 and bsup=1 AND ccode like '1002%' and ccode<>'1002' AND bclose=0 order by ccode",
    "select ccode,ccode_name,cclass,i_id from gl_code  where 1=1 and cclass='资产' order by "
    "igrade,ccode",
    "select * FROM gl_code where (ccode='gh' OR ccode_name='gh' or chelp='gh') and (ccode like "
    "'1%' or ccode like '2%') and cclass='资产' and bcus=1 and bsup=0 and bend=1",
    "SELECT * FROM gl_code WHERE i_id =5"};
constexpr std::initializer_list<const char*> kOfTheLibraryInJet = {
    "select count(i_id) from gl_code where ccode like '1002*' and len(ccode)>4",
    "Select TOP 1 ccode From gl_code Where len(ccode)=6 And  cclass='资产' and ccode Like '1002%' "
    "ORDER BY ccode desc",
    "SELECT i_id,ccode,ccode_name,chelp,iif(bproperty=1,'借','贷'),cclass,bclose,bend FROM gl_code "
    " "
    "WHERE ccode<>'' order by ccode",
    "insert into gl_code(i_id,ccode,bproperty,bend,bclose)values(78,'1123',True,True,False)",
    "update gl_code set bproperty=True,bclose=False where i_id=78"};

/// What a careful host adds.
constexpr std::initializer_list<const char*> kOfHosts = {
    "select 1",
    "select ''",
    "select -1.5*(2+ +3)/4 as x",
    "select 'it''s; -- no /* comment */ \"here\"' as 说明",
    "select distinct cclass from gl_code;",
    "select all ccode from gl_code ; ;",
    "select a.ccode,b.debit-b.credit as 余额 from gl_code a,gl_accsum as b where a.ccode=b.ccode",
    "select gl_code.* from gl_code",
    "select a.*,b.* from gl_code a inner join gl_accsum b on a.ccode=b.ccode",
    "select a.ccode,b.ccode from gl_code a left outer join gl_accvouch b on a.ccode=b.ccode and "
    "b.debit>0 right join tvxbz c on c.外币名称=a.cexch_name",
    "select a.ccode from (gl_code a left join gl_accsum b on a.ccode=b.ccode) join gl_accass c on "
    "c.ccode=a.ccode",
    "select count(*) from gl_code cross join tvxjldw u",
    "select t.m,sum(t.debit) as 合计 from (select fiscal_year*12+fiscal_period as m,debit from "
    "gl_accsum) t group by t.m having sum(t.debit)>0 order by t.m desc,合计 asc",
    "select cclass,count(*) as n from gl_code group by cclass order by n desc",
    "select x.ccode,x.ccode_name from (select * from gl_code where bend=1) as x",
    "select y.ccode from (select a.*,1 as k from gl_code a) y where y.k=1 and igrade=1",
    "select ccode from gl_code where exists(select 1 from gl_accvouch v where "
    "v.ccode=gl_code.ccode)",
    "select ccode from gl_code where not exists (select * from gl_accsum where "
    "gl_accsum.ccode=gl_code.ccode)",
    "select ccode from gl_code where ccode not in(select ccode from gl_accsum where ccode is not "
    "null)",
    "select ccode from gl_code where ccode in('1001','1002') or igrade between 1 and 2 and not "
    "bend=0",
    "select ccode from gl_code where ccode not like '1%' and ccode_name like '!%%' escape '!'",
    "select ccode from gl_code where igrade not between 2 and 3 and cexch_name is null",
    "select ccode,(select count(*) from gl_accvouch v where v.ccode=a.ccode) as n from gl_code a",
    "select case igrade when 1 then 'a' when 2 then 'b' end as 级,case when bend=1 then 1 else 0 "
    "end from gl_code",
    "select (case when (bproperty=1) then '借' else '贷'end)as bpr from gl_code",
    "select ccode from gl_code union select ccode from gl_accsum order by ccode",
    "select ccode from gl_code union all select ccode from gl_accsum except select '1' intersect "
    "select ccode from gl_accass",
    "select ccode||'-'||ccode_name as 科目 from gl_code where upper(chelp)='KCXJ' or "
    "lower(chelp)='kcxj'",
    "select coalesce(max(igrade),0),min(ccode),avg(igrade),count(distinct cclass),abs(-1),"
    "round(2.5),round(2.55,1) from gl_code",
    "select ccode from gl_code order by len(ccode),left(ccode,2) desc limit 5",
    "select ccode from gl_code order by ccode limit 5 offset 2",
    "select ccode as 编码,ccode_name as name from gl_code order by 编码,name",
    "select'a'as x,case when'a'='b'then'c'else'd'end from gl_code where ccode like'1%'and'x'='x'or"
    "'a'='b'and not'a'='c'and ccode between'1'and'2'and ccode like'!%'escape'!'",
    "select max(ccode) m,ccode_name 名称,len(ccode)l from gl_code group by ccode,ccode_name "
    "order by m,l",
    "update gl_code as a set chelp='x' where a.ccode='1122' and exists(select 1 from gl_accsum s "
    "where s.ccode=a.ccode)",
    "select max(fiscal_period)from gl_accsum where fiscal_year>=2020 and fiscal_year<=2030 and "
    "debit<>credit and debit<1 or credit>1",
    "insert into gl_accvouch(i_id,ccode,debit)values(1,'1001',-5),(2,'1002',(select max(igrade) "
    "from gl_code))",
    "insert into gl_accass(i_id,ccode)select i_id,ccode from gl_accvouch where not ccode is null",
    "update gl_accsum set debit=debit+1,credit=0-credit where ccode=(select min(ccode) from "
    "gl_code)",
    "update gl_code set chelp='E''$$\\' where gl_code.ccode='1122'",
    "delete from gl_accass",
    "delete from gl_accass where ccode in(select ccode from gl_code where bend=0)"};

TEST(SqlGuardAccepts, WhatCallersNeed) {
  for (const auto& list : {kOfTheLibrary, kOfTheLibraryInJet, kOfHosts}) {
    for (const char* sql : list) EXPECT_EQ(Verdict(sql), "") << sql;
  }
  // A typed list of codes may be long; only what stands inside something else is deep.
  std::string many = "select ccode from gl_code where ccode<>''";
  for (int i = 0; i < 5000; ++i) many += " or ccode like '1%'";
  EXPECT_EQ(Verdict(many), "");
}

/// The engine must agree that it is one statement of good shape: what is accepted runs.
TEST(SqlGuardAccepts, WhatRunsOnTheEngine) {
  const auto run = [](const Book& book, std::initializer_list<const char*> statements) {
    for (const char* sql : statements) EXPECT_EQ(host::ExecuteSql(*book.System(), sql), "") << sql;
  };
  Book book = tavrix::test::MakeBook();
  run(book, kOfTheLibrary);
  run(book, kOfHosts);
  book.SetDriver("jet");
  const bool words = book.GetSession().Own().Dialect() == SqlDialect::kSqlite;
  run(book, {kOfTheLibraryInJet.begin()[0], kOfTheLibraryInJet.begin()[1]});
  if (words) run(book, kOfTheLibraryInJet);
  // As many codes as a caller may look for at once.
  std::string many = "select ccode from gl_code where ccode like '1%'";
  for (int i = 1; i < 900; ++i) many += " or ccode like '1%'";
  EXPECT_EQ(host::ExecuteSql(*book.System(), many), "");
}

/// An insert of all columns, the longest that the library sends, takes a few microseconds; a guard
/// that costs a hundred times as much would be felt.
TEST(SqlGuardAccepts, AtLittleCost) {
  constexpr int kRounds = 200;
  const auto start = std::chrono::steady_clock::now();
  for (int round = 0; round < kRounds; ++round) {
    for (const char* sql : kOfTheLibrary) CheckCallerStatement(sql);
  }
  const std::chrono::duration<double, std::micro> time = std::chrono::steady_clock::now() - start;
  const double each = time.count() / kRounds / static_cast<double>(kOfTheLibrary.size());
  RecordProperty("microseconds", std::to_string(each));
  EXPECT_LT(each, 2000);
}

}  // namespace
}  // namespace desk::book
