#include "book/ledger/template.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "book/ledger/posting.h"
#include "book/sample.h"
#include "host/account.h"
#include "host/error.h"
#include "host/text.h"
#include "support/matchers.h"
#include "support/test_book.h"

namespace desk::book {
namespace {

class ChartTest : public testing::TestWithParam<StandardChart> {};
INSTANTIATE_TEST_SUITE_P(Both, ChartTest, testing::ValuesIn(kStandardCharts));

TEST_P(ChartTest, IsAChartThatTheLibraryAccepts) {
  const Template chart = LoadTemplate(GetParam());
  const Book book = Book::Create(Book::kInMemory, chart);
  EXPECT_GT(chart.accounts.size(), 200U);
  EXPECT_EQ(Scalar(book, "select count(*) from gl_code where igrade=0"), "0");
  EXPECT_EQ(Scalar(book,
                   "select group_concat(distinct cclass) from gl_code where cclass not in("
                   "'资产','负债','共同','权益','成本','损益')"),
            "(null)");
  const std::string parent = "substr(c.ccode,1,len(c.ccode)-2)";
  EXPECT_EQ(Scalar(book,
                   "select group_concat(ccode) from gl_code c where igrade>1 and not exists("
                   "select 1 from gl_code p where p.igrade=c.igrade-1 and p.cclass=c.cclass "
                   "and p.ccode=" +
                       parent + ")"),
            "(null)");
  EXPECT_EQ(Scalar(book,
                   "select group_concat(ccode) from gl_code p where bend=(select count(*)>0 "
                   "from gl_code c where c.ccode like p.ccode||'_%')"),
            "(null)");
}

TEST_P(ChartTest, NamesAreShortAndComplete) {
  for (const Account& account : LoadTemplate(GetParam()).accounts) {
    EXPECT_FALSE(account.help.empty()) << account.code;
    EXPECT_EQ(account.help.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789"),
              std::string::npos)
        << account.code;
    EXPECT_EQ(account.name.find('-'), std::string::npos) << account.code;
    EXPECT_LE(host::TextLength(account.name), 20U) << account.code;
  }
}

/// Siblings of one name, or a currency or unit that the book does not list, would be slips.
TEST_P(ChartTest, HasNoSlips) {
  const Template chart = LoadTemplate(GetParam());
  std::set<std::string> names;
  for (const Account& account : chart.accounts) {
    const std::string parent = account.code.substr(0, account.code.size() - 2);
    EXPECT_TRUE(names.insert((parent.size() > 2 ? parent : "") + account.name).second)
        << account.code;
    const auto is = [](const std::string& name) {
      return [&name](const auto& each) { return each.name == name; };
    };
    EXPECT_TRUE(account.currency.empty() ||
                std::ranges::any_of(chart.currencies, is(account.currency)));
    EXPECT_TRUE(account.unit.empty() || std::ranges::any_of(chart.units, is(account.unit)));
  }
}

TEST_P(ChartTest, SetsFlagsWhereAccountantsWantThem) {
  const Book book = Book::Create(Book::kInMemory, LoadTemplate(GetParam()));
  const auto row = [&](const std::string& columns, const std::string& code) {
    return Scalar(book, "select " + columns + " from gl_code where ccode='" + code + "'");
  };
  EXPECT_EQ(row("bcash||br||be", "1001"), "110");
  EXPECT_EQ(row("bbank||br||be", "100201"), "111");
  EXPECT_EQ(row("bcus", "1122"), "1");
  EXPECT_EQ(row("bsup", "220201"), "1");
  EXPECT_EQ(row("cbook_type||cmeasure", "1405"), "金额数量式件");
  EXPECT_EQ(row("bproperty", "1602"), "0") << "a contra account stands on the other side";
  EXPECT_EQ(row("bproperty||igrade||bend", "22210101"), "131");
}

TEST(ChartTextTest, RefusesLinesThatAreWrong) {
  const auto parse = [](std::vector<std::string_view> lines) { return ParseChart(lines); };
  const auto accounts = parse({"# note", "", "1001\t现金\txj\t资产\t借\tcash", "100101\t柜台"});
  ASSERT_EQ(accounts.size(), 2U);
  EXPECT_EQ(accounts[1].category, "资产");
  EXPECT_TRUE(accounts[1].debit);
  EXPECT_FALSE(accounts[1].cash);
  EXPECT_THROW(parse({"1001"}), host::HostError);
  EXPECT_THROW(parse({"1001\t现金\txj\t资产\t上"}), host::HostError);
  EXPECT_THROW(parse({"1001\t现金\txj\t资产\t借\tcach"}), host::HostError);
  EXPECT_THROW(parse({"1002\ta\ta\t资产\t借", "1001\tb\tb\t资产\t借"}), host::HostError);
}

TEST(NewBook, TakesACodeRuleThatItsAccountsFit) {
  const Template standard = LoadTemplate(StandardChart::kEnterprise);
  for (const char* rule : {"4222", "42222", "422211"}) {
    EXPECT_EQ(WhyNoCodeRule(rule, standard.accounts), "") << rule;
  }
  for (const char* rule : {"3222", "42", "44", "4322"}) {
    EXPECT_THAT(WhyNoCodeRule(rule, standard.accounts), HasSubstr("不符合")) << rule;
    EXPECT_EQ(WhyNoCodeRule(rule, {}), "") << rule;
  }
  for (const char* rule : {"", "4a", "402", "4-2-2", "４２", "99999"}) {
    EXPECT_NE(WhyNoCodeRule(rule, {}), "") << rule;
  }
}

TEST(NewBook, IsEmptyAndKeptInAnotherCurrency) {
  Template content = LoadEmptyTemplate();
  content.code_rule = "3333";
  const auto currencies = BaseCurrencies();
  ASSERT_THAT(currencies, testing::Contains("美元"));
  SetBaseCurrency(content, "美元");
  const Book book = Book::Create(Book::kInMemory, content);
  EXPECT_EQ(Scalar(book, "select count(*) from gl_code"), "0");
  EXPECT_EQ(book.Setting("system", "kmbm"), "3333");
  EXPECT_EQ(Scalar(book, "select count(*) from tvxbz where 外币名称='美元'"), "0");
  EXPECT_EQ(Scalar(book, "select count(*) from tvxbz"), std::to_string(currencies.size() - 1));
}

class PostingTest : public testing::Test {
 protected:
  [[nodiscard]] std::string Failure(const Voucher& voucher) {
    try {
      Post(book_.GetSession(), voucher);
      return {};
    } catch (const DatabaseError& error) {
      return error.what();
    }
  }
  [[nodiscard]] static Voucher Simple(std::int64_t amount, const std::string& credit = "100201") {
    return {.year = 2024,
            .month = 2,
            .day = 29,
            .entries = {{.code = "1001", .debit = amount}, {.code = credit, .credit = amount}}};
  }
  Book book_ = tavrix::test::MakeBook();
};

TEST_F(PostingTest, FillsTheLedgers) {
  Voucher purchase = Simple(700, "2202");
  purchase.entries[1].auxiliary.supplier = "甲";
  EXPECT_EQ(Post(book_.GetSession(), Simple(250)), 1);
  EXPECT_EQ(Post(book_.GetSession(), purchase), 2);
  EXPECT_EQ(Post(book_.GetSession(), purchase), 3);
  EXPECT_EQ(AllRows(book_, "select ccode,fiscal_period,debit,credit from gl_accsum order by ccode"),
            (std::vector<std::string>{"1001|2|1650|0", "100201|2|0|250", "2202|2|0|1400"}));
  EXPECT_EQ(AllRows(book_, "select ccode,supplier,credit from gl_accass"),
            (std::vector<std::string>{"2202|甲|1400"}));
  EXPECT_EQ(Scalar(book_, "select count(*)||max(entry_date) from gl_accvouch"), "62024-02-29");
}

/// Two rows of one month meet when postings move to another code; an amount must enter one of them.
TEST_F(PostingTest, AddsToOneRowOfAMonth) {
  Post(book_.GetSession(), Simple(100));
  tavrix::test::Run(book_,
                    "insert into gl_accsum select 99,ccode,fiscal_year,fiscal_period,1,0 "
                    "from gl_accsum where ccode='1001'");
  Post(book_.GetSession(), Simple(100));
  EXPECT_EQ(Scalar(book_, "select sum(debit) from gl_accsum where ccode='1001'"), "201");
}

TEST_F(PostingTest, RefusesWhatIsWrongAsAWhole) {
  Voucher unbalanced = Simple(5);
  unbalanced.entries[0].debit = 6;
  EXPECT_THAT(Failure(unbalanced), HasSubstr("不平衡"));
  EXPECT_THAT(Failure(Simple(0)), HasSubstr("第 1 条"));
  EXPECT_THAT(Failure(Simple(1, "1002")), HasSubstr("不是明细科目"));
  EXPECT_THAT(Failure(Simple(1, "9999")), HasSubstr("没有这个科目"));
  EXPECT_THAT(Failure(Simple(1, "2202")), HasSubstr("供应商"));
  EXPECT_THAT(Failure({.year = 2023, .month = 2, .day = 29}), HasSubstr("日期"));
  EXPECT_THAT(Failure({.year = 2024, .month = 2, .day = 29}), HasSubstr("两条"));
  tavrix::test::Run(book_, "update gl_code set bclose=1 where ccode='100201'");
  EXPECT_THAT(Failure(Simple(1)), HasSubstr("封存"));
  for (const char* table : {"gl_accvouch", "gl_accass", "gl_accsum"}) {
    EXPECT_EQ(Scalar(book_, "select count(*) from " + std::string(table)), "0") << table;
  }
}

TEST_F(PostingTest, NamesTheEntryAndWhatItLacks) {
  try {
    Post(book_.GetSession(), Simple(1, "2202"));
    FAIL();
  } catch (const EntryRefused& refusal) {
    EXPECT_EQ(refusal.Position(), 1u);
    EXPECT_TRUE(refusal.LacksPartner());
  }
}

TEST_F(PostingTest, TellsWhatBalances) {
  Voucher voucher = Simple(500);
  EXPECT_EQ(Balancing(voucher.entries), Sides{});
  voucher.entries[0].debit = 700;
  EXPECT_EQ(Balancing(voucher.entries), (Sides{.credit = 200}));
  voucher.entries.push_back({.code = "2202", .credit = 250});
  EXPECT_EQ(Balancing(voucher.entries), (Sides{.debit = 50}));
  voucher.entries.push_back({.code = "2202", .credit = -100});
  EXPECT_EQ(Balancing(voucher.entries), (Sides{.credit = 50}));
}

TEST_P(ChartTest, TheSampleBookBalances) {
  const Book book = CreateSampleBook(Book::kInMemory, GetParam());
  EXPECT_EQ(Scalar(book, "select sum(debit)-sum(credit) from gl_accvouch"), "0");
  EXPECT_EQ(Scalar(book, "select sum(debit)-(select sum(debit) from gl_accsum) from gl_accvouch"),
            "0");
  EXPECT_GT(std::stoi(Scalar(book, "select count(*) from gl_accvouch")), 50);
  EXPECT_GT(std::stoi(Scalar(book, "select count(*) from gl_accass")), 5);
  // Money on hand and goods in store cannot be less than nothing.
  EXPECT_EQ(AllRows(book,
                    "select ccode from gl_accsum where ccode like '10%' or ccode='1405' "
                    "group by ccode having sum(debit)<sum(credit)"),
            std::vector<std::string>{});
}

}  // namespace
}  // namespace desk::book
