#include "book/exchange/account_record.h"

#include <algorithm>

#include "host/account.h"

namespace desk::book {

namespace {

using enum AccountField;

constexpr std::array<FieldInfo, kAccountFields> kFields = {{
    {kCode, "ccode", "科目编码",
     "编码|科目代码|代码|科目编号|编号|科目号|code|accountcode|accountno|accountnumber|account|no|"
     "number",
     16},
    {kName, "ccode_name", "科目名称",
     "名称|科目|科目中文名称|中文名称|name|accountname|title|description", 32},
    {kCategory, "cclass", "科目类别",
     "类别|科目类型|类型|科目性质|class|category|type|accounttype|accountclass", 10},
    {kDebit, "bproperty", "余额方向",
     "方向|借贷方向|借贷|科目方向|余额借贷|direction|balance|side|balanceside|balancedirection|"
     "debitcredit|drcr|dc",
     10},
    {kMnemonic, "chelp", "助记码", "助记|拼音|拼音码|简码|mnemonic|mnemoniccode|shortcut", 14},
    {kEnglish, "ccode_engl", "英文名称",
     "科目英文名称|英文名|外文名称|englishname|english|nameenglish", 28},
    {kBookType, "cbook_type", "账页格式", "帐页格式|账页|账簿格式|booktype|ledgertype|pageformat",
     16},
    {kForeign, "bexchange", "外币核算", "核算外币|是否外币|foreigncurrency|foreign", 10},
    {kCurrency, "cexch_name", "币种", "币别|外币币种|外币名称|外币|currency|currencyname", 10},
    {kUnit, "cmeasure", "计量单位", "单位|数量单位|unit|unitofmeasure|measure|uom", 10},
    {kDepartment, "bdept", "部门核算", "部门|department|bydepartment|dept", 10},
    {kPerson, "bperson", "个人往来", "个人|个人核算|职员|职员核算|person|byperson|employee|staff",
     10},
    {kCustomer, "bcus", "客户往来", "客户|客户核算|customer|bycustomer|client", 10},
    {kSupplier, "bsup", "供应商往来", "供应商|供应商核算|supplier|bysupplier|vendor", 12},
    {kProject, "bitem", "项目核算", "项目|project|byproject|item", 10},
    {kJournal, "br", "日记账", "日记帐|journal|dailyjournal", 8},
    {kBankBook, "be", "银行账", "银行帐|bankbook", 8},
    {kCash, "bcash", "现金科目", "现金|cash|cashaccount", 10},
    {kBank, "bbank", "银行科目", "银行|bank|bankaccount", 10},
    {kCashItem, "bcashitem", "现金流量科目", "现金流量|cashflow|cashflowitem", 14},
    {kGather, "cgather", "汇总到", "汇总科目|gather|summarizeto", 14},
    {kOther, "cother", "受控系统", "受控|controlledby|controlledsystem", 12},
    {kSealed, "bclose", "封存", "是否封存|停用|禁用|sealed|closed|inactive|disabled", 8},
}};

std::string Statement() {
  std::string columns;
  for (const FieldInfo& info : kFields) columns += "," + std::string(info.column);
  return "select i_id,igrade,bend" + columns + " from gl_code order by ccode";
}

/// A flag that is set: engines give it as a number or as a word.
bool IsSet(const host::Value& value) {
  return value.ToNumber() != 0;
}

KeptAccount AccountAt(const Rows& rows) {
  constexpr int kBefore = 3;
  KeptAccount kept{
      .id = IntegerAt(rows, 0), .level = rows.Get(1).ToLong(), .leaf = IsSet(rows.Get(2))};
  int column = kBefore;
  for (const FieldInfo& info : kFields) {
    const host::Value value = rows.Get(column++);
    if (IsFlag(info.field)) {
      kept.account.SetFlag(info.field, IsSet(value));
    } else {
      kept.account.Text(info.field) = value.ToText();
    }
  }
  return kept;
}

}  // namespace

std::span<const FieldInfo> Fields() {
  return kFields;
}

const FieldInfo& InfoOf(AccountField field) {
  return *std::ranges::find(kFields, field, &FieldInfo::field);
}

std::string AccountRecord::Shown(AccountField field) const {
  if (!IsFlag(field)) return Text(field);
  if (field == kDebit) return std::string(Flag(field) ? host::kDebit : host::kCredit);
  return Flag(field) ? "是" : "";
}

std::vector<KeptAccount> ReadRecords(Session& session) {
  const auto rows = session.Own().Query(Statement(), Origin::kDesk);
  std::vector<KeptAccount> chart;
  while (rows->Next()) chart.push_back(AccountAt(*rows));
  return chart;
}

}  // namespace desk::book
