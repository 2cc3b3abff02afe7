#include "support/test_book.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <map>
#include <memory>
#include <utility>

#include "book/engines.h"
#include "book/ledger/code_rule.h"
#include "book/session/identifiers.h"
#include "host/calls.h"

namespace tavrix::test {

namespace book = desk::book;

std::vector<book::Account> FewAccounts() {
  return {{.code = "1001", .name = "库存现金", .category = "资产", .help = "kcxj", .cash = true},
          {.code = "1002", .name = "银行存款", .category = "资产", .help = "yhck", .bank = true},
          {.code = "100201", .name = "工行", .category = "资产", .help = "gh"},
          {.code = "100202", .name = "建行", .category = "资产", .help = "jh"},
          {.code = "2202",
           .name = "应付账款",
           .category = "负债",
           .help = "yfzk",
           .debit = false,
           .supplier = true},
          {.code = "5001", .name = "生产成本", .category = "成本", .help = "sccb"},
          {.code = "500101", .name = "基本生产成本", .category = "成本", .help = "jbsccb"},
          {.code = "50010101", .name = "直接材料", .category = "成本", .help = "zjcl"}};
}

namespace {

std::string FromEnvironment(const char* name) {
  const char* text = std::getenv(name);
  return text == nullptr ? std::string() : text;
}

/// Says once, for all cases, that there is no server to run them on.
class ServerNeeded : public testing::Environment {
 public:
  void SetUp() override {
    if (DefaultEngine() == "postgresql" && ServerPlace().empty()) {
      GTEST_SKIP() << "TAVRIX_ODBC names no server";
    }
  }
};
[[maybe_unused]] const auto* const kServerNeeded =
    testing::AddGlobalTestEnvironment(std::make_unique<ServerNeeded>().release());

}  // namespace

std::vector<desk::book::Account> ManyAccounts() {
  std::vector<desk::book::Account> accounts;
  for (int i = 0; i < 200; ++i) {
    accounts.push_back({.code = std::to_string(1001 + i), .name = "户", .category = "资产"});
  }
  return accounts;
}

const std::string& DefaultEngine() {
  static const std::string engine = [] {
    std::string named = FromEnvironment("TAVRIX_ENGINE");
    return named.empty() ? "sqlite" : named;
  }();
  return engine;
}

std::vector<const char*> Engines() {
  if (FromEnvironment("TAVRIX_ENGINE").empty()) return {"sqlite", "jet"};
  return {DefaultEngine().c_str()};
}

std::string ServerPlace() {
  return FromEnvironment("TAVRIX_ODBC");
}

std::string NewServerPlace() {
  static int count = 0;
  // Suites run side by side on one server.
  static const auto run = std::chrono::system_clock::now().time_since_epoch().count();
  const std::string schema = "book_" + std::to_string(run) + "_" + std::to_string(++count);
  static const auto connection = book::EngineFor(ServerPlace()).Open({.path = ServerPlace()});
  connection->Execute("create schema " + schema, book::Origin::kDesk);
  return ServerPlace() + "ConnSettings={set search_path to " + schema + "};";
}

book::Book MakeBook(std::vector<book::Account> accounts, const std::string& code_rule) {
  return MakeBookOn(DefaultEngine(), std::move(accounts), code_rule);
}

book::Book MakeBookOn(const std::string& engine, std::vector<book::Account> accounts,
                      const std::string& code_rule) {
  const bool server = engine == "postgresql";
  book::Book made = book::Book::Create(server ? NewServerPlace() : book::Book::kInMemory,
                                       {.title = "test",
                                        .code_rule = code_rule,
                                        .accounts = std::move(accounts),
                                        .currencies = {{"EUR", "欧元"}, {"USD", "美元"}},
                                        .units = {{"01", "千克"}, {"02", "台"}}});
  if (!server) made.SetDriver(engine);
  made.Environment().user_folder.clear();
  return made;
}

void Run(const book::Book& book, const std::string& sql) {
  book.GetSession().KeepResults();
  book.GetSession().Own().Execute(sql, book::Origin::kDesk);
}

namespace {

std::string CellText(const host::Value& value) {
  return value.IsNull() ? "(null)" : value.ToText();
}

}  // namespace

std::string Scalar(const book::Book& book, const std::string& sql) {
  const auto rows = book.GetSession().Own().Query(sql, book::Origin::kDesk);
  return rows->Next() ? CellText(rows->Get(0)) : "(none)";
}

std::vector<std::string> AllRows(const book::Book& book, const std::string& sql) {
  std::vector<std::string> all;
  const auto rows = book.GetSession().Own().Query(sql, book::Origin::kDesk);
  while (rows->Next()) {
    std::string text;
    for (int column = 0; column < rows->Columns(); ++column) {
      text += (column == 0 ? "" : "|") + CellText(rows->Get(column));
    }
    all.push_back(std::move(text));
  }
  return all;
}

void DropLedgerRules(const book::Book& book) {
  const bool server = DefaultEngine() == "postgresql";
  for (const std::string name : {"parent", "moved", "deleted"}) {
    Run(book, "drop trigger gl_code_" + name + (server ? " on gl_code" : ""));
  }
}

std::vector<std::string> BrokenRules(const book::Book& book) {
  book::CodeRuleArithmetic arithmetic;
  const auto rule = book.System()->GetSetting("kmbm", "system")->Get();
  struct Flags {
    bool leaf = false;
    bool has_below = false;
  };
  std::map<std::string, Flags> accounts;
  std::vector<std::string> broken;
  const auto rows = AllRows(book, "select ccode,igrade,bend from gl_code order by ccode");
  for (const std::string& row : rows) {  // parents come before what is below them
    const std::string code = row.substr(0, row.find('|'));
    if (accounts.contains(code)) broken.push_back("twice: " + code);
    accounts[code].leaf = row.ends_with("|1");
    const std::string level = std::to_string(arithmetic.LevelOf(code, rule));
    if (row.substr(code.size()) != "|" + level + (accounts[code].leaf ? "|1" : "|0")) {
      broken.push_back("level or flag: " + row);
    }
    const std::string parent = arithmetic.ParentCode(code, rule);
    if (parent.empty()) continue;
    if (!accounts.contains(parent)) broken.push_back("no parent: " + code);
    accounts[parent].has_below = true;
  }
  for (const auto& [code, flags] : accounts) {
    if (flags.leaf == flags.has_below) broken.push_back("leaf flag: " + code);
  }
  for (const char* ledger : {"gl_accvouch", "gl_accass", "gl_accsum"}) {
    for (const std::string& code : AllRows(book, std::string("select ccode from ") + ledger)) {
      if (!accounts.contains(code) || !accounts[code].leaf) {
        broken.push_back(std::string("posting: ") + ledger + " " + code);
      }
    }
  }
  return broken;
}

void AddPosting(const book::Book& book, const std::string& ledger, const std::string& code) {
  const host::Value values[] = {book::NewIdentifier(book.GetSession(), ledger, "i_id"), code};
  book.GetSession().Own().Execute("insert into " + ledger + "(i_id,ccode)values(?,?)",
                                  book::Origin::kDesk, values);
}

void ExpectReadOnly(const book::Book& book) {
  const auto tells_why = testing::HasSubstr("只读");
  EXPECT_TRUE(book.ReadOnly());
  EXPECT_EQ(host::QueryScalar(*book.System(), "select count(*) from gl_code").ToLong(), 8);
  EXPECT_THAT(host::ExecuteSql(*book.System(), "delete from gl_code"), tells_why);
  EXPECT_THAT(book.System()->NewIdentifier("gl_code", "i_ID").error, tells_why);
}

}  // namespace tavrix::test
