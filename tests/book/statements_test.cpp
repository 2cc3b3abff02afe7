#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "book/sql/sql_text.h"
#include "host/calls.h"
#include "support/matchers.h"
#include "support/test_book.h"

namespace desk::book {
namespace {

host::RowSet RowsOf(const Book& book, const std::string& sql) {
  const auto recordset = host::QueryRows(*book.System(), sql);
  return recordset->EndOfFile() ? host::RowSet(1) : recordset->GetRows();
}

std::string ScalarOf(const Book& book, const std::string& sql) {
  return host::QueryScalar(*book.System(), sql).ToText();
}

std::string ErrorOf(const Book& book, const std::string& sql) {
  return host::ExecuteSql(*book.System(), sql);
}

/// The failure of a query, as it is thrown; empty when there was none.
std::string Failure(const Book& book, const std::string& sql) {
  try {
    (void)host::QueryRows(*book.System(), sql);
    return {};
  } catch (const host::HostError& error) {
    return error.what();
  }
}

/// What only one of the two dialects says.
struct Dialect {
  std::string driver;
  std::string next_code;
  std::string children;
  std::string direction;
};
const Dialect kDialects[] = {
    {"sqlite",
     "Select Max(ccode) as ccode From gl_code Where len(ccode)=6 And cclass='资产' and ccode Like "
     "'1002%'",
     "select count(i_id) from gl_code where ccode like '1002%' and len(ccode)>4",
     "SELECT i_id,ccode,ccode_name,chelp,case when bproperty=1 then '借' else '贷' end ,cclass,"
     "bclose,bend FROM gl_code  WHERE ccode<>'' and (ccode like '2202%') AND bclose=0 order by "
     "ccode"},
    {"jet",
     "Select TOP 1 ccode From gl_code Where len(ccode)=6 And  cclass='资产' and ccode Like '1002%'"
     " ORDER BY ccode desc",
     "select count(i_id) from gl_code where ccode like '1002*' and len(ccode)>4",
     "SELECT i_id,ccode,ccode_name,chelp,iif(bproperty=1,'借','贷'),cclass,bclose,bend FROM "
     "gl_code  WHERE ccode<>'' and (ccode like '2202%') AND bclose=0 order by ccode"}};

class DialectTest : public testing::TestWithParam<Dialect> {
 protected:
  DialectTest() { book_.SetDriver(GetParam().driver); }
  Book book_ = MakeBook();
};
INSTANTIATE_TEST_SUITE_P(Both, DialectTest, testing::ValuesIn(kDialects),
                         [](const auto& each) { return each.param.driver; });

TEST_P(DialectTest, AnswersTheDialectsOwnQueries) {
  EXPECT_EQ(host::DialectOf(*book_.System()) == host::Dialect::kJet, GetParam().driver == "jet");
  EXPECT_EQ(ScalarOf(book_, GetParam().next_code), "100202");
  EXPECT_EQ(ScalarOf(book_, GetParam().children), "2");
  const host::RowSet rows = RowsOf(book_, GetParam().direction);
  ASSERT_EQ(rows.Rows(), 1U);
  EXPECT_EQ(rows.Text(0, 1), "2202");
  EXPECT_EQ(rows.Text(0, 4), "贷");
}

TEST_P(DialectTest, AnswersTheSharedQueries) {
  EXPECT_EQ(RowsOf(book_,
                   "select ccode,ccode_name,cexch_name,'',i_id,igrade,cclass from gl_code where "
                   "cclass='资产' order by ccode")
                .Rows(),
            4U);
  EXPECT_EQ(RowsOf(book_, "Select i_ID,ccode from gl_code where left(ccode,4)='1002'").Rows(), 3U);
  EXPECT_EQ(RowsOf(book_,
                   "select * FROM gl_code where (ccode='gh' OR ccode_name='gh' or chelp='gh') and "
                   "bcus=0 and bend=1")
                .Text(0, 5),
            "100201");
  EXPECT_EQ(RowsOf(book_, "select 币种ID,外币名称 from tvxbz order by 外币代号").Text(1, 1),
            "美元");
  EXPECT_EQ(RowsOf(book_, "select 单位ID,名称 from tvxjldw order by 代码").Text(0, 1), "千克");
  EXPECT_EQ(ScalarOf(book_,
                     "select item_value from xt_accinformation where system_code='system' and "
                     "item_code='mouseeventscrollrate'"),
            "5");
  EXPECT_NE(ScalarOf(book_, "select progID from xt_objects where billitem=2015"), "");
  EXPECT_EQ(ScalarOf(book_, "select count(i_id) from gl_accass where ccode like '1%'"), "0");
}

TEST_P(DialectTest, InsertsAndChangesAnAccount) {
  const bool jet = GetParam().driver == "jet";
  const std::string on = jet ? "True" : "1";
  const std::string off = jet ? "False" : "0";
  EXPECT_EQ(
      ErrorOf(book_,
              "insert into gl_code(I_id,cclass,Cclass_engl,cclassany,cclassany_engl,ccode,"
              "ccode_name,ccode_engl,igrade,bproperty,cbook_type,cbook_type_engl,chelp,cexch_name,"
              "cmeasure,bperson,bcus,bsup,bdept,bitem,cass_item,br,be,cgather,bend,bexchange,bcash,"
              "bbank,bused,bd_c,dbegin,dend,itrans,bclose,cother,iotherused,bcashitem)values(77,"
              "'资产','','','','1122','应收账款','',1," +
                  on + ",'金额式','','yszk','','',0," + on + ",0,0,0,'',0,0,''," + on + "," + off +
                  ",0,0,0,0,0,0,0," + off + ",'',0,0)"),
      "");
  EXPECT_EQ(Scalar(book_,
                   "select bproperty+bcus+bend+bexchange+bclose from gl_code where "
                   "i_id=77"),
            "3");
  EXPECT_EQ(ErrorOf(book_, "update gl_code set bend=0 where ccode='1122'"), "");
  EXPECT_EQ(ErrorOf(book_, "delete from gl_code where ccode like '1122%'"), "");
  EXPECT_EQ(Scalar(book_, "select count(*) from gl_code"), "8");
}

TEST(StatementTest, TranslatesJetByTokens) {
  EXPECT_EQ(FromJet("select top 2 a from t where b='top 1 *' -- end"),
            "select       a from t where b='top 1 *' LIMIT 2 -- end");
  EXPECT_EQ(FromJet("select x from (select distinct TOP 1 y from t) where x like '1*' ;"),
            "select x from (select distinct       y from t LIMIT 1) where x like '1%' ;");
  EXPECT_EQ(FromJet("select top from t"), "select top from t");
  EXPECT_EQ(FromJet("select TOP 1 x from t where x like '1*' order by x", true),
            "select TOP 1 x from t where x like '1%' order by x");
}

TEST(StatementTest, StarIsAWildcardInJetAlone) {
  Book book = MakeBook();
  const std::string star = "select count(*) from gl_code where ccode like '1*'";
  EXPECT_EQ(ScalarOf(book, star), "0");
  book.SetDriver("jet");
  EXPECT_EQ(ScalarOf(book, star), "4");
}

TEST(StatementTest, CountsTextAsTheServersDo) {
  const Book book = MakeBook();
  EXPECT_EQ(ScalarOf(book, "select len('科目a')"), "3");
  EXPECT_EQ(ScalarOf(book, "select len('\xF0\xA0\x80\x80')"), "2");
  EXPECT_EQ(ScalarOf(book, "select left('科目编码',2)"), "科目");
  EXPECT_EQ(ScalarOf(book, "select left('1001',-1)"), "");
  EXPECT_TRUE(host::QueryScalar(*book.System(), "select len(null)").IsNull());
}

TEST(StatementTest, APrefixSearchUsesTheKey) {
  const Book book = MakeBook();
  for (const std::string table : {"gl_code", "gl_accvouch", "gl_accass", "gl_accsum"}) {
    EXPECT_THAT(tavrix::test::AllRows(book, "explain query plan select count(i_id) from " + table +
                                                " where ccode like '1002%'"),
                testing::Contains(HasSubstr("ccode>? AND ccode<?")))
        << table;
  }
}

class RefusedTest : public testing::TestWithParam<std::string> {};
INSTANTIATE_TEST_SUITE_P(
    All, RefusedTest,
    testing::Values("", " ; ", "-- only a comment", "delete from gl_code; delete from gl_accvouch",
                    "select 1 from gl_code;/**/select 2", "create table t(a)", "drop table gl_code",
                    "alter table gl_code add x text", "pragma user_version=9", "begin", "commit",
                    "vacuum", "attach 'x' as y", "analyze", "with x as (select 1) select * from x",
                    "explain select 1", "select * from sqlite_master",
                    "select last_id from desk_identifier", "delete from desk_identifier",
                    "select * from (with gl_code as (select last_id from desk_identifier) select "
                    "* from gl_code)",
                    "select 1 from (with x as (select 1 from desk_identifier) select 1 from x)",
                    "select name from pragma_table_info('gl_code')",
                    "update gl_code set ccode_name=(select max(last_id) from desk_identifier)",
                    "select * from gl_code where ccode=''' union select 1"));

TEST_P(RefusedTest, ChangesNothingAndSaysSo) {
  const Book book = MakeBook();
  EXPECT_NE(ErrorOf(book, GetParam()), "");
  EXPECT_NE(Failure(book, GetParam()), "");
  EXPECT_EQ(Scalar(book, "select count(*) from gl_code"), "8");
}

TEST(StatementTest, TakesATrailingSemicolon) {
  const Book book = MakeBook();
  EXPECT_EQ(ErrorOf(book, "update gl_code set bend=1 where ccode='1001';"), "");
  EXPECT_EQ(ScalarOf(book, "select ';' from gl_code ;;"), ";");
}

TEST(StatementTest, AQueryThatWouldWriteIsRefused) {
  const Book book = MakeBook();
  EXPECT_THAT(Failure(book, "delete from gl_code"), HasSubstr("不是查询"));
  EXPECT_EQ(Scalar(book, "select count(*) from gl_code"), "8");
}

TEST(StatementTest, ErrorsAreTextsAndSuccessClearsThem) {
  const Book book = MakeBook();
  EXPECT_THAT(ErrorOf(book, "insert into gl_code(i_id,ccode)values(99,'1001')"),
              HasSubstr("科目编码重复"));
  EXPECT_THAT(ErrorOf(book, "update gl_code set ccode_name='a'b' where i_id=1"),
              HasSubstr("文字中不能有单引号"));
  EXPECT_THAT(Failure(book, "select * from gl_code where cclass='a'b'"),
              HasSubstr("单引号位置不对"));
  tavrix::test::Run(book, "drop table tvxbz");
  EXPECT_THAT(Failure(book, "select 币种ID from tvxbz"), HasSubstr("no such table: tvxbz"));

  const auto database = book.System()->GetDatabase();
  database->OpenSql("delete from nothing", 1)->Execute();
  EXPECT_NE(database->LastError()->Description(), "");
  EXPECT_EQ(book.System()->GetDatabase()->LastError()->Description(), "");
  EXPECT_THROW((void)database->OpenSql("select nothing from gl_code", 1)->ScalarValue(),
               host::HostError);
  EXPECT_THAT(database->LastError()->Description(), HasSubstr("nothing"));
  (void)database->OpenSql("select 1", 1)->ScalarValue();
  EXPECT_EQ(database->LastError()->Description(), "");
}

TEST(StatementTest, ScalarOfNoRowIsNull) {
  const Book book = MakeBook();
  EXPECT_TRUE(host::QueryScalar(*book.System(), "select ccode from gl_code where i_id=0").IsNull());
}

/// The engine says which texts cannot stand between quotes; the desk must say so of these alone.
TEST(QuoteInText, IsToldWhereTheEngineWouldRefuse) {
  const Book book = MakeBook();
  const char units[] = {'a', '\'', ' ', '5'};
  for (int number = 0; number < 4 * 4 * 4 * 4 * 4; ++number) {
    std::string text;
    for (int rest = number, i = 0; i < 5; ++i, rest /= 4) text += units[rest % 4];
    const std::string sql =
        "update gl_code set ccode_name='" + text + "',chelp='' where ccode='1001'";
    bool taken = true;
    try {
      book.GetSession().Own().Execute(sql, Origin::kCaller);
    } catch (const DatabaseError&) {
      taken = false;
    }
    const std::string error = ErrorOf(book, sql);
    ASSERT_EQ(error.empty(), taken) << sql << error;
    ASSERT_TRUE(taken || error.starts_with("编码、名称")) << sql << error;
  }
}

TEST(QuoteInText, LeavesSoundStatementsAlone) {
  const Book book = MakeBook();
  EXPECT_EQ(ErrorOf(book, "update gl_code set chelp='x' where 'a'='a' and ccode='1001' or 1=0"),
            "");
  EXPECT_EQ(ErrorOf(book, "update gl_code set chelp=case when ccode='1001' then 'a' else '' end"),
            "");
  EXPECT_EQ(RowsOf(book, "select 'a' as label from gl_code where ccode='1001'").Text(0, 0), "a");
  const std::string wrong = Failure(book, "select ccode from gl_code where ccode='10'01'");
  EXPECT_THAT(wrong, HasSubstr("单引号"));
  EXPECT_THAT(wrong, HasSubstr("（第")) << "what else is said stands behind it";
  for (const char* name : {"x'-- 'y", "x'/* 'y*/", "x' --'"}) {
    const std::string sql = std::string("update gl_code set ccode_name='") + name + "' where 1=0";
    EXPECT_THAT(ErrorOf(book, sql), HasSubstr("单引号")) << name;
  }
  EXPECT_THAT(ErrorOf(book, "update gl_code set no_such='a'"), testing::Not(HasSubstr("单引号")));
}

}  // namespace
}  // namespace desk::book
