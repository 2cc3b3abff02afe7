#include "book/database/tables.h"

#include <algorithm>

#include "host/text.h"

namespace desk::book {

namespace {

using enum ColumnKind;

constexpr Column kAccountColumns[] = {
    {"i_id", kKey},
    {"cclass", kText},
    {"cclass_engl", kText},
    {"cclassany", kText},
    {"cclassany_engl", kText},
    {"ccode", kCode},
    {"ccode_name", kText},
    {"ccode_engl", kText},
    {"igrade", kInteger},
    {"bproperty", kFlag},
    {"cbook_type", kText},
    {"cbook_type_engl", kText},
    {"chelp", kText},
    {"cexch_name", kText},
    {"cmeasure", kText},
    {"bperson", kFlag},
    {"bcus", kFlag},
    {"bsup", kFlag},
    {"bdept", kFlag},
    {"bitem", kFlag},
    {"cass_item", kText},
    {"br", kFlag},
    {"be", kFlag},
    {"cgather", kText},
    {"bend", kFlag},
    {"bexchange", kFlag},
    {"bcash", kFlag},
    {"bbank", kFlag},
    {"bused", kFlag},
    {"bd_c", kFlag},
    {"dbegin", kInteger},
    {"dend", kInteger},
    {"itrans", kInteger},
    {"bclose", kFlag},
    {"cother", kText},
    {"iotherused", kInteger},
    {"bcashitem", kFlag},
};
constexpr std::string_view kAccountIndexes[] = {
    "create unique index gl_code_code on gl_code(ccode)",
    "create index gl_code_class on gl_code(cclass,ccode)",
    "create index gl_code_name on gl_code(ccode_name)",
    "create index gl_code_help on gl_code(chelp)",
};

constexpr Column kVoucherColumns[] = {
    {"i_id", kKey},
    {"fiscal_year", kOptional},
    {"fiscal_period", kOptional},
    {"voucher_number", kOptional},
    {"line_number", kOptional},
    {"entry_date", kText},
    {"summary", kText},
    {"ccode", kCode},
    {"debit", kMoney},
    {"credit", kMoney},
    {"currency_name", kText},
    {"foreign_amount", kMoney},
    {"quantity", kNumber},
    {"department", kText},
    {"person", kText},
    {"customer", kText},
    {"supplier", kText},
    {"project", kText},
    {"prepared_by", kText},
};
constexpr std::string_view kVoucherIndexes[] = {
    "create index gl_accvouch_code on gl_accvouch(ccode)",
    kVoucherLineIndex,
};

constexpr Column kAuxiliaryColumns[] = {
    {"i_id", kKey},
    {"ccode", kCode},
    {"fiscal_year", kOptional},
    {"fiscal_period", kOptional},
    {"department", kText},
    {"person", kText},
    {"customer", kText},
    {"supplier", kText},
    {"project", kText},
    {"debit", kMoney},
    {"credit", kMoney},
};
// Neither ledger is unique by account and month: when an account's postings move to another code,
// two rows of one month may meet there. Readers add them up.
constexpr std::string_view kAuxiliaryIndexes[] = {
    "create index gl_accass_code on gl_accass(ccode,fiscal_year,fiscal_period)",
};

constexpr Column kTotalColumns[] = {
    {"i_id", kKey},    {"ccode", kCode},   {"fiscal_year", kOptional}, {"fiscal_period", kOptional},
    {"debit", kMoney}, {"credit", kMoney},
};
constexpr std::string_view kTotalIndexes[] = {
    "create index gl_accsum_code on gl_accsum(ccode,fiscal_year,fiscal_period)",
};

constexpr Column kCurrencyColumns[] = {{"币种ID", kKey}, {"外币名称", kText}, {"外币代号", kText}};
constexpr Column kUnitColumns[] = {{"单位ID", kKey}, {"名称", kText}, {"代码", kText}};
constexpr Column kSettingColumns[] = {
    {"system_code", kKeyText}, {"item_code", kKeyText}, {"item_value", kText}};
constexpr Column kObjectColumns[] = {{"progid", kKey}, {"billitem", kInteger}, {"title", kText}};
constexpr std::string_view kObjectIndexes[] = {
    "create index xt_objects_item on xt_objects(billitem)",
};

constexpr Table kTables[] = {
    {"gl_code", kAccountColumns, kAccountIndexes},
    {"gl_accvouch", kVoucherColumns, kVoucherIndexes},
    {"gl_accass", kAuxiliaryColumns, kAuxiliaryIndexes},
    {"gl_accsum", kTotalColumns, kTotalIndexes},
    {"tvxbz", kCurrencyColumns, {}},
    {"tvxjldw", kUnitColumns, {}},
    {"xt_accinformation", kSettingColumns, {}},
    {"xt_objects", kObjectColumns, kObjectIndexes},
};

// The desk's own: the last identifier that was given for a table. Callers cannot reach it.
constexpr Column kIdentifierColumns[] = {{"table_name", kKeyText}, {"last_id", kInteger}};
constexpr Table kIdentifierTable = {kIdentifierTableName, kIdentifierColumns, {}};

}  // namespace

std::span<const Table> SchemaTables() {
  return kTables;
}

const Table* FindSchemaTable(std::string_view name) {
  const auto found = std::ranges::find_if(
      kTables, [&](const Table& table) { return tavrix::host::EqualNoCase(table.name, name); });
  return found == std::end(kTables) ? nullptr : &*found;
}

const Table& IdentifierTable() {
  return kIdentifierTable;
}

}  // namespace desk::book
