#include "book/sql_guard.h"

#include <gtest/gtest.h>

#include "book/database.h"

namespace desk::book {
namespace {

TEST(SqlGuard, LetsThroughWhatCallersSend) {
  for (const char* sql :
       {"select count(i_id) from gl_code where ccode like '1002%' and len(ccode)>4",
        "Select Max(ccode) as ccode From gl_code Where len(ccode)=6 And cclass='资产'",
        "SELECT i_id,ccode,(case when (bproperty=1) then '借' else '贷'end) as bpr,bend FROM "
        "gl_code  WHERE ccode<>'' and (ccode like '2202%' or ccode in('1','2')) order by "
        "ccode,i_id",
        "insert into gl_code(I_id,ccode,ccode_name)values(77,'','a -- /* ; b')",
        "update gl_code set bend=0,chelp='E''$$' where ccode='1122'",
        "delete from gl_code where ccode like '1122%';",
        "select 币种ID,外币名称 from tvxbz order by 外币代号", "select ''",
        "select a.i_id from gl_code a,\"gl_accsum\" b where a.ccode=b.ccode",
        "select * from (select i_id,ccode from gl_code) t, xt_objects o where i_id in(select max("
        "i_id) from gl_accass)",
        "select * from gl_code a left join (gl_accsum b join gl_accass c on b.ccode=c.ccode) on "
        "a.ccode=b.ccode"}) {
    EXPECT_NO_THROW(CheckCallerTables(sql)) << sql;
  }
}

TEST(SqlGuard, RefusesWhatCouldReachFurther) {
  for (const char* sql : {"select * from desk_identifier",
                          "select * from gl_code,desk_identifier",
                          "select * from gl_code a, (select 1) b, pg_user",
                          "select * from public.gl_code",
                          "select * from gl_code x join pg_user y on 1=1",
                          "select * into other from gl_code",
                          "select * from (select a,b from pg_user) x",
                          "select * from (desk_identifier)",
                          "select * from (gl_code,desk_identifier)",
                          "update gl_code set chelp=(select max(last_id) from desk_identifier)",
                          "update desk_identifier set last_id=1",
                          "delete from gl_code using desk_identifier",
                          "insert into gl_code select * from desk_identifier",
                          "select 1 union table desk_identifier",
                          "select * from gl_code for update",
                          "select pg_sleep(9)",
                          "select \"pg_sleep\"(9)",
                          "select set_config('a','b',false)",
                          "select * from pg_ls_dir('/')",
                          "select * from gl_code where ccode=lo_get (1)",
                          "select 1 /* nested /* */ ' */",
                          "select 1 -- '",
                          "select E'\\' ; delete from desk_identifier --'",
                          "select U&'\\0027'",
                          "select $$'$$",
                          "select 1 # '",
                          "select `a`",
                          "select [a] from gl_code",
                          "select 'open",
                          "select {fn user()}",
                          "select @@version",
                          "select 1::text",
                          "select * from lateral (select 1)",
                          "select * from only gl_code",
                          "select 1 from (with x as (select 1 from gl_code) select 1)",
                          "select * from gl_code)",
                          "select * from"}) {
    EXPECT_THROW(CheckCallerTables(sql), DatabaseError) << sql;
  }
}

}  // namespace
}  // namespace desk::book
