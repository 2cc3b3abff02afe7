#include "book/chart/chart_account.h"

#include <algorithm>
#include <iterator>

#include "book/ledger/account_record.h"
#include "book/ledger/trial_balance.h"
#include "book/session/rules_pause.h"
#include "book/session/schema.h"
#include "host/account.h"

namespace desk::book {

namespace {

constexpr std::array<const char*, 3> kLedgers = {"gl_accvouch", "gl_accass", "gl_accsum"};

using enum AccountField;

/// The flags of the partners, in their order.
constexpr std::array<AccountField, kPartnerKinds> kPartnerFields = {kDepartment, kPerson, kCustomer,
                                                                    kSupplier, kProject};

ChartAccount ChartAccountOf(const KeptAccount& kept) {
  const AccountRecord& record = kept.account;
  ChartAccount account{.id = kept.id,
                       .code = record.Code(),
                       .name = record.Text(kName),
                       .category = record.Text(kCategory),
                       .debit_side = record.Flag(kDebit),
                       .leaf = kept.leaf,
                       .sealed = record.Flag(kSealed),
                       .currency = record.Flag(kForeign) ? record.Text(kCurrency) : std::string(),
                       .unit = record.Text(kUnit),
                       .gather = record.Text(kGather)};
  std::ranges::transform(kPartnerFields, account.partners.begin(),
                         [&](AccountField field) { return record.Flag(field); });
  return account;
}

std::vector<ChartAccount> ReadChartAccounts(Session& session, const std::string& condition,
                                            Values parameters = {}) {
  std::vector<ChartAccount> accounts;
  std::ranges::transform(ReadAccounts(session, condition, parameters), std::back_inserter(accounts),
                         ChartAccountOf);
  return accounts;
}

std::int64_t CountIn(Session& session, const std::string& ledger, const std::string& condition,
                     Values parameters) {
  const auto rows = session.Own().Query("select count(*) from " + ledger + " where " + condition,
                                        Origin::kDesk, parameters);
  return rows->Next() ? IntegerAt(*rows, 0) : 0;
}

}  // namespace

std::string TitleOf(const ChartAccount& account) {
  return account.code + " " + account.name;
}

std::array<host::Value, 2> RangeOf(const std::string& code) {
  constexpr const char* kLastCharacter = "\xF4\x8F\xBF\xBF";
  return {code, code + kLastCharacter};
}

std::optional<ChartAccount> FindAccount(Session& session, const std::string& code) {
  const host::Value key(code);
  auto found = ReadChartAccounts(session, "where ccode=?", {&key, 1});
  if (found.empty()) return std::nullopt;
  return std::move(found.front());
}

std::vector<ChartAccount> ReadSubtree(Session& session, const std::string& code) {
  if (code.empty() || !FindAccount(session, code)) return {};
  return ReadChartAccounts(session, std::string("where ") + kInRange, RangeOf(code));
}

std::vector<ChartAccount> ReadChart(Session& session) {
  return ReadChartAccounts(session, "");
}

PostingCount CountPostings(Session& session, const std::string& code, bool with_all_below) {
  const auto range = RangeOf(code);
  const Values parameters = with_all_below ? Values(range) : Values(range).first(1);
  const std::string condition = with_all_below ? kInRange : "ccode=?";
  PostingCount count;
  count.entries = CountIn(session, "gl_accvouch", condition, parameters);
  count.auxiliary = CountIn(session, "gl_accass", condition, parameters);
  const auto rows = session.Own().Query(
      "select count(*),sum(debit),sum(credit) from gl_accsum where " + condition, Origin::kDesk,
      parameters);
  if (!rows->Next()) return count;
  count.totals = IntegerAt(*rows, 0);
  count.debit = AmountAt(*rows, 1);
  count.credit = AmountAt(*rows, 2);
  return count;
}

bool IsPosted(Session& session, const std::string& code, bool or_below) {
  const auto range = RangeOf(code);
  const Values parameters = or_below ? Values(range) : Values(range).first(1);
  for (const std::string ledger : kLedgers) {
    const auto rows = session.Own().Query(
        "select 1 from " + ledger + " where " + (or_below ? kInRange : "ccode=?") + " limit 1",
        Origin::kDesk, parameters);
    if (rows->Next()) return true;
  }
  return false;
}

bool CanRearrange(Session& session) {
  const SqlDialect dialect = session.Own().Dialect();
  return !session.Own().ReadOnly() &&
         (dialect == SqlDialect::kSqlite || dialect == SqlDialect::kPostgres) &&
         RulesCanPause(session);
}

void PrepareRearranging(Session& session) {
  if (!CanRearrange(session)) RefuseChange("这个账簿不能调整科目");
  EnsureIdentifierTable(session.Own());
}

void SetLeafIfLast(Session& session, const std::string& parent) {
  const auto range = RangeOf(parent);
  const host::Value values[] = {parent, parent, range[1]};
  session.Own().Execute(
      "update gl_code set bend=1 where ccode=? and bend=0 and not exists(select 1 from gl_code b "
      "where b.ccode>? and b.ccode<?)",
      Origin::kDesk, values);
}

void RefuseChange(const std::string& text) {
  throw DatabaseError(ErrorKind::kRefused, text);
}

}  // namespace desk::book
