#include "book/exchange/field_info.h"

#include <algorithm>
#include <array>

namespace desk::book {

namespace {

using enum AccountField;

constexpr std::array<FieldInfo, kAccountFields> kFields = {{
    {kCode, "科目编码",
     "编码|科目代码|代码|科目编号|编号|科目号|code|accountcode|accountno|accountnumber|accountid|"
     "glcode|glaccount|account|no|"
     "number",
     16},
    {kName, "科目名称",
     "名称|科目|科目中文名称|中文名称|name|accountname|accounttitle|accountdescription|title|"
     "description",
     32},
    {kCategory, "科目类别",
     "类别|科目类型|类型|科目性质|class|category|type|accounttype|accountclass", 10},
    {kDebit, "余额方向",
     "方向|借贷方向|借贷|科目方向|余额借贷|direction|balance|side|balanceside|balancedirection|"
     "debitcredit|drcr|dc|normalbalance|normalside",
     10},
    {kMnemonic, "助记码", "助记|拼音|拼音码|简码|mnemonic|mnemoniccode|shortcut", 14},
    {kEnglish, "英文名称", "科目英文名称|英文名|外文名称|englishname|english|nameenglish", 28},
    {kBookType, "账页格式", "帐页格式|账页|账簿格式|booktype|ledgertype|pageformat", 16},
    {kForeign, "外币核算", "核算外币|是否外币|foreigncurrency|foreign", 10},
    {kCurrency, "币种", "币别|外币币种|外币名称|外币|currency|currencyname", 10},
    {kUnit, "计量单位", "单位|数量单位|unit|unitofmeasure|measure|uom", 10},
    {kDepartment, "部门核算", "部门|department|bydepartment|dept", 10},
    {kPerson, "个人往来", "个人|个人核算|职员|职员核算|person|byperson|employee|staff", 10},
    {kCustomer, "客户往来", "客户|客户核算|customer|bycustomer|client", 10},
    {kSupplier, "供应商往来", "供应商|供应商核算|supplier|bysupplier|vendor", 12},
    {kProject, "项目核算", "项目|project|byproject|item", 10},
    {kJournal, "日记账", "日记帐|journal|dailyjournal", 8},
    {kBankBook, "银行账", "银行帐|bankbook", 8},
    {kCash, "现金科目", "现金|cash|cashaccount", 10},
    {kBank, "银行科目", "银行|bank|bankaccount", 10},
    {kCashItem, "现金流量科目", "现金流量|cashflow|cashflowitem", 14},
    {kGather, "汇总到", "汇总科目|gather|summarizeto", 14},
    {kOther, "受控系统", "受控|controlledby|controlledsystem", 12},
    {kSealed, "封存", "是否封存|停用|禁用|sealed|closed|inactive|disabled", 8},
}};

}  // namespace

std::span<const FieldInfo> Fields() {
  return kFields;
}

const FieldInfo& InfoOf(AccountField field) {
  return *std::ranges::find(kFields, field, &FieldInfo::field);
}

bool IsListed(std::string_view words, std::string_view word) {
  while (!words.empty()) {
    const std::size_t end = std::min(words.find('|'), words.size());
    if (words.substr(0, end) == word) return true;
    words.remove_prefix(std::min(end + 1, words.size()));
  }
  return false;
}

}  // namespace desk::book
