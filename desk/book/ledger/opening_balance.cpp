#include "book/ledger/opening_balance.h"

#include <algorithm>
#include <map>
#include <utility>

#include "book/ledger/trial_balance.h"
#include "book/session/identifiers.h"

namespace desk::book {

namespace {

constexpr char kWithoutMonth[] = "(fiscal_year is null or fiscal_period is null)";
constexpr char kSummary[] = "期初余额";
constexpr std::int64_t kMaxAmount = 1'000'000'000'000'000;

using Lines = std::map<std::string, std::vector<OpeningLine>>;

Lines ReadPartners(Connection& connection) {
  const auto rows = connection.Query(
      std::string("select ccode,department,person,customer,supplier,project,sum(debit-credit) "
                  "from gl_accass where ") +
          kWithoutMonth +
          " group by ccode,department,person,customer,supplier,project order by "
          "ccode,department,person,customer,supplier,project",
      Origin::kDesk);
  Lines lines;
  while (rows->Next()) {
    const auto text = [&](int column) { return rows->Get(column).ToText(); };
    lines[text(0)].push_back({.auxiliary = {text(1), text(2), text(3), text(4), text(5)},
                              .balance = AmountAt(*rows, 6)});
  }
  return lines;
}

std::map<std::string, std::int64_t> ReadTotals(Connection& connection) {
  const auto rows =
      connection.Query(std::string("select ccode,sum(debit-credit) from gl_accsum where ") +
                           kWithoutMonth + " group by ccode",
                       Origin::kDesk);
  std::map<std::string, std::int64_t> totals;
  while (rows->Next()) totals[rows->Get(0).ToText()] = AmountAt(*rows, 1);
  return totals;
}

/// Only the entries hold foreign amounts and quantities, on the side of their amount.
Lines ReadForeign(Connection& connection) {
  const auto rows = connection.Query(
      std::string("select ccode,department,person,customer,supplier,project,currency_name,"
                  "sum(case when credit<>0 then -foreign_amount else foreign_amount end),"
                  "sum(case when credit<>0 then -quantity else quantity end)"
                  "from gl_accvouch where(foreign_amount<>0 or quantity<>0)and ") +
          kWithoutMonth +
          " group by ccode,department,person,customer,supplier,project,currency_name order by "
          "ccode,department,person,customer,supplier,project,currency_name",
      Origin::kDesk);
  Lines lines;
  while (rows->Next()) {
    const auto text = [&](int column) { return rows->Get(column).ToText(); };
    lines[text(0)].push_back({.auxiliary = {text(1), text(2), text(3), text(4), text(5)},
                              .currency = text(6),
                              .foreign_amount = AmountAt(*rows, 7),
                              .quantity = rows->Get(8).ToNumber()});
  }
  return lines;
}

/// The account's line for a partner, which is made when there is none.
OpeningLine& LineFor(OpeningAccount& account, const Auxiliary& auxiliary) {
  const auto found = std::ranges::find(account.lines, auxiliary, &OpeningLine::auxiliary);
  if (found != account.lines.end()) return *found;
  account.lines.push_back({.auxiliary = auxiliary});
  return account.lines.back();
}

/// A line has one currency: the account's, where there are several.
void AddForeign(OpeningLine& line, const OpeningLine& foreign, const std::string& own) {
  line.quantity += foreign.quantity;
  if (foreign.foreign_amount == 0) return;
  const bool first = line.foreign_amount == 0;
  if (!first && line.currency != foreign.currency) {
    if (foreign.currency != own) return;
    line.foreign_amount = 0;
  }
  line.currency = foreign.currency;
  line.foreign_amount += foreign.foreign_amount;
}

/// The lines of a leaf come to what its total says.
void Complete(OpeningAccount& account, std::int64_t total,
              const std::vector<OpeningLine>& foreign) {
  if (!account.WantsPartner()) account.lines.clear();
  std::erase_if(account.lines, [](const OpeningLine& line) { return line.balance == 0; });
  for (const OpeningLine& line : account.lines) total -= line.balance;
  if (total != 0) LineFor(account, {}).balance += total;
  for (const OpeningLine& each : foreign) {
    const Auxiliary partner = account.WantsPartner() ? each.auxiliary : Auxiliary();
    AddForeign(LineFor(account, partner), each, account.currency);
  }
  std::erase_if(account.lines, [](const OpeningLine& line) { return line.Empty(); });
}

class Writer {
 public:
  explicit Writer(Session& session)
      : connection_(session.Own()), user_(session.User()), may_delete_(MayDelete(connection_)) {}

  void Replace(const OpeningChange& change) {
    Check(change);
    const host::Value key(change.code);
    Clear("gl_accvouch", ",foreign_amount=0,quantity=0", key);
    Clear("gl_accass", "", key);
    Clear("gl_accsum", "", key);
    OpeningLine total;
    for (const OpeningLine& line : change.lines) {
      if (line.Empty()) continue;
      total.balance += line.balance;
      AddEntry(change.code, line);
      if (line.auxiliary != Auxiliary() && line.balance != 0) AddPartner(change.code, line);
    }
    if (total.balance != 0) AddTotal(change.code, total);
  }

 private:
  /// `others` are the columns that are set to nothing besides both sides, where rows stay.
  void Clear(const char* table, const char* others, const host::Value& code) {
    const std::string emptied =
        may_delete_ ? std::string("delete from ") + table
                    : std::string("update ") + table + " set debit=0,credit=0" + others;
    connection_.Execute(emptied + " where ccode=? and " + kWithoutMonth, Origin::kDesk, {&code, 1});
  }

  void Check(const OpeningChange& change) {
    const host::Value key(change.code);
    // As with a voucher, this keeps others from changing the account before the balance stands.
    connection_.Execute("update gl_code set bend=bend where ccode=?", Origin::kDesk, {&key, 1});
    const auto row =
        connection_.Query("select bend from gl_code where ccode=?", Origin::kDesk, {&key, 1});
    if (!row->Next()) Refuse("没有科目 " + change.code + "，可能已被其他用户删除或改了编码");
    if (row->Get(0).ToNumber() == 0)
      Refuse("科目 " + change.code + " 已有下级，不能直接填写期初余额");
    for (const OpeningLine& line : change.lines) {
      const bool too_large = line.balance > kMaxAmount || line.balance < -kMaxAmount ||
                             line.foreign_amount > kMaxAmount || line.foreign_amount < -kMaxAmount;
      if (too_large) Refuse("科目 " + change.code + " 的期初余额过大");
    }
  }
  [[noreturn]] static void Refuse(const std::string& text) {
    throw DatabaseError(ErrorKind::kRefused, text);
  }

  /// A role on a server may be kept from deleting postings; its rows then stay, without an amount.
  [[nodiscard]] static bool MayDelete(Connection& connection) {
    if (connection.Dialect() != SqlDialect::kPostgres) return true;
    const auto row = connection.Query(
        "select case when has_table_privilege('gl_accvouch','delete')and "
        "has_table_privilege('gl_accass','delete')and has_table_privilege('gl_accsum','delete')"
        "then 1 else 0 end",
        Origin::kDesk);
    return row->Next() && row->Get(0).ToNumber() != 0;
  }

  [[nodiscard]] std::int32_t Identifier(const char* table) {
    return ReserveIdentifiers(connection_, table, "i_id", 1);
  }
  [[nodiscard]] static std::int64_t Debit(const OpeningLine& line) {
    return std::max<std::int64_t>(line.balance, 0);
  }
  [[nodiscard]] static std::int64_t Credit(const OpeningLine& line) {
    return std::max<std::int64_t>(-line.balance, 0);
  }

  void AddEntry(const std::string& code, const OpeningLine& line) {
    const Auxiliary& with = line.auxiliary;
    const int side = line.balance < 0 ? -1 : 1;
    const host::Value values[] = {Identifier("gl_accvouch"),
                                  kSummary,
                                  code,
                                  Debit(line),
                                  Credit(line),
                                  line.currency,
                                  side * line.foreign_amount,
                                  side * line.quantity + 0.0,  // servers keep the sign of a zero
                                  with.department,
                                  with.person,
                                  with.customer,
                                  with.supplier,
                                  with.project,
                                  user_};
    connection_.Execute(
        "insert into gl_accvouch(i_id,summary,ccode,debit,credit,currency_name,foreign_amount,"
        "quantity,department,person,customer,supplier,project,prepared_by)"
        "values(?,?,?,?,?,?,?,?,?,?,?,?,?,?)",
        Origin::kDesk, values);
  }
  void AddPartner(const std::string& code, const OpeningLine& line) {
    const Auxiliary& with = line.auxiliary;
    const host::Value values[] = {
        Identifier("gl_accass"), code,         with.department, with.person, with.customer,
        with.supplier,           with.project, Debit(line),     Credit(line)};
    connection_.Execute(
        "insert into gl_accass(i_id,ccode,department,person,customer,supplier,project,debit,credit)"
        "values(?,?,?,?,?,?,?,?,?)",
        Origin::kDesk, values);
  }
  void AddTotal(const std::string& code, const OpeningLine& total) {
    const host::Value values[] = {Identifier("gl_accsum"), code, Debit(total), Credit(total)};
    connection_.Execute("insert into gl_accsum(i_id,ccode,debit,credit)values(?,?,?,?)",
                        Origin::kDesk, values);
  }

  Connection& connection_;
  std::string user_;
  bool may_delete_;
};

}  // namespace

std::vector<OpeningAccount> ReadOpening(Session& session) {
  Lines partners = ReadPartners(session.Own());
  const Lines foreign = ReadForeign(session.Own());
  const std::map<std::string, std::int64_t> totals = ReadTotals(session.Own());
  const auto rows = session.Own().Query(
      "select ccode,ccode_name,bproperty,bclose,bdept,bperson,bcus,bsup,bitem,bexchange,"
      "cexch_name,cmeasure from gl_code order by ccode",
      Origin::kDesk);
  std::vector<OpeningAccount> accounts;
  std::vector<std::size_t> above;
  while (rows->Next()) {
    const auto flag = [&](int column) { return rows->Get(column).ToNumber() != 0; };
    OpeningAccount account{.code = rows->Get(0).ToText(),
                           .name = rows->Get(1).ToText(),
                           .debit_side = flag(2),
                           .sealed = flag(3),
                           .currency = flag(9) ? rows->Get(10).ToText() : std::string(),
                           .unit = rows->Get(11).ToText(),
                           .wanted = {flag(4), flag(5), flag(6), flag(7), flag(8)}};
    while (!above.empty() && !account.code.starts_with(accounts[above.back()].code)) {
      above.pop_back();
    }
    if (!above.empty()) accounts[above.back()].leaf = false;
    account.level = static_cast<int>(above.size()) + 1;
    account.lines = std::move(partners[account.code]);
    const auto total = totals.find(account.code);
    const auto kept = foreign.find(account.code);
    Complete(account, total == totals.end() ? 0 : total->second,
             kept == foreign.end() ? std::vector<OpeningLine>() : kept->second);
    above.push_back(accounts.size());
    accounts.push_back(std::move(account));
  }
  return accounts;
}

void SaveOpening(Session& session, const std::vector<OpeningChange>& changes) {
  Transaction transaction(session);
  Writer writer(session);
  for (const OpeningChange& change : changes) writer.Replace(change);
  transaction.Commit();
  session.NotePosting();
}

}  // namespace desk::book
