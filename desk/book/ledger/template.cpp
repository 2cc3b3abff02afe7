#include "book/ledger/template.h"

#include <algorithm>
#include <array>

#include "book/ledger/code_rule.h"
#include "embedded/kEnterpriseChart.h"
#include "embedded/kSmallEnterpriseChart.h"
#include "host/account.h"
#include "host/error.h"

namespace desk::book {

namespace {

/// `text` cut at every `separator`.
std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (;;) {
    const std::size_t end = text.find(separator);
    parts.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return parts;
    text.remove_prefix(end + 1);
  }
}

struct Mark {
  std::string_view name;
  bool Account::*flag;
};
constexpr std::array<Mark, 6> kMarks = {{{"customer", &Account::customer},
                                         {"supplier", &Account::supplier},
                                         {"person", &Account::person},
                                         {"department", &Account::department},
                                         {"project", &Account::project},
                                         {"closed", &Account::closed}}};

/// Money accounts are kept as journals, those at a bank as bank books too.
void SetMoney(Account& account, bool bank) {
  account.cash = !bank;
  account.bank = bank;
  account.journal = true;
  account.bank_book = bank;
}

bool SetMark(Account& account, std::string_view mark) {
  if (mark == "cash" || mark == "bank") {
    SetMoney(account, mark == "bank");
    return true;
  }
  const auto flag = std::ranges::find(kMarks, mark, &Mark::name);
  if (flag != kMarks.end()) {
    account.*(flag->flag) = true;
    return true;
  }
  const std::size_t equals = mark.find('=');
  if (equals == mark.npos) return false;
  const std::string_view name = mark.substr(0, equals);
  if (name == "currency") account.currency = mark.substr(equals + 1);
  if (name == "unit") account.unit = mark.substr(equals + 1);
  return name == "currency" || name == "unit";
}

/// The nearest account whose code begins `code`.
const Account* ParentOf(const std::vector<Account>& accounts, std::string_view code) {
  const auto found = std::find_if(accounts.rbegin(), accounts.rend(), [&](const Account& account) {
    return code.starts_with(account.code);
  });
  return found == accounts.rend() ? nullptr : &*found;
}

/// False when `side` is no balance side.
bool SetSide(Account& account, std::string_view side, const Account* parent) {
  if (side.empty() && parent != nullptr) {
    account.debit = parent->debit;
    return true;
  }
  account.debit = side == host::kDebit;
  return account.debit || side == host::kCredit;
}

bool ParseLine(std::string_view line, std::vector<Account>& accounts) {
  std::vector<std::string_view> cells = Split(line, '\t');
  cells.resize(std::max<std::size_t>(cells.size(), 6));
  Account account{.code = std::string(cells[0]), .name = std::string(cells[1])};
  account.help = cells[2];
  const Account* parent = ParentOf(accounts, account.code);
  account.category = cells[3].empty() && parent != nullptr ? parent->category : cells[3];
  if (account.name.empty() || account.category.empty()) return false;
  if (!SetSide(account, cells[4], parent)) return false;
  for (const std::string_view mark : Split(cells[5], ',')) {
    if (!mark.empty() && !SetMark(account, mark)) return false;
  }
  if (!accounts.empty() && accounts.back().code >= account.code) return false;
  accounts.push_back(std::move(account));
  return true;
}

std::vector<Currency> Currencies() {
  return {{"AUD", "澳元"}, {"CAD", "加元"}, {"CHF", "瑞士法郎"}, {"EUR", "欧元"}, {"GBP", "英镑"},
          {"HKD", "港币"}, {"JPY", "日元"}, {"KRW", "韩元"},     {"SGD", "新元"}, {"USD", "美元"}};
}

std::vector<Unit> Units() {
  return {{"01", "件"},     {"02", "个"}, {"03", "台"},   {"04", "套"},
          {"05", "箱"},     {"06", "包"}, {"07", "千克"}, {"08", "吨"},
          {"09", "克"},     {"10", "升"}, {"11", "米"},   {"12", "平方米"},
          {"13", "立方米"}, {"14", "只"}, {"15", "辆"},   {"16", "工时"}};
}

std::span<const std::string_view> LinesOf(StandardChart chart) {
  if (chart == StandardChart::kSmallEnterprise) return embedded::kSmallEnterpriseChart;
  return embedded::kEnterpriseChart;
}

}  // namespace

std::string_view TitleOf(StandardChart chart) {
  return chart == StandardChart::kSmallEnterprise ? "小企业会计准则" : "企业会计准则";
}

std::vector<Account> ParseChart(std::span<const std::string_view> lines) {
  std::vector<Account> accounts;
  for (const std::string_view line : lines) {
    if (line.empty() || line.starts_with('#')) continue;
    if (!ParseLine(line, accounts)) {
      throw host::HostError("科目模板有错误：" + std::string(line));
    }
  }
  return accounts;
}

Template LoadTemplate(StandardChart chart) {
  Template content = LoadEmptyTemplate();
  content.title = TitleOf(chart);
  content.accounts = ParseChart(LinesOf(chart));
  return content;
}

Template LoadEmptyTemplate() {
  return {.currencies = Currencies(), .units = Units()};
}

std::vector<std::string> BaseCurrencies() {
  std::vector<std::string> names = {kUsualCurrency};
  for (const Currency& currency : Currencies()) names.push_back(currency.name);
  return names;
}

void SetBaseCurrency(Template& content, const std::string& currency) {
  if (currency == kUsualCurrency) return;
  std::erase_if(content.currencies, [&](const Currency& each) { return each.name == currency; });
  content.currencies.push_back({"CNY", kUsualCurrency});
}

std::string WhyNoCodeRule(const std::string& rule, std::span<const Account> accounts) {
  constexpr int kLongestCode = 40;
  int length = 0;
  for (const char digit : rule) {
    if (digit < '1' || digit > '9') return "编码规则由数字1至9组成，每位是一级编码的长度";
    length += digit - '0';
  }
  if (rule.empty()) return "请填写编码规则";
  if (length > kLongestCode) return "编码总长不能超过" + std::to_string(kLongestCode) + "位";
  CodeRuleArithmetic arithmetic;
  const auto fits = [&](const Account& account) {
    return arithmetic.LevelOf(account.code, rule) > 0;
  };
  const auto odd = std::ranges::find_if_not(accounts, fits);
  if (odd == accounts.end()) return {};
  return "所选准则的科目（如“" + odd->code + " " + odd->name + "”）不符合这个编码规则";
}

}  // namespace desk::book
