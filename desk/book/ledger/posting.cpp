#include "book/ledger/posting.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <utility>

#include "book/session/identifiers.h"

namespace desk::book {

namespace {

/// More than any book holds, and far from where sums overflow.
constexpr std::int64_t kMaxAmount = 1'000'000'000'000'000;

[[noreturn]] void Refuse(const std::string& text) {
  throw DatabaseError(ErrorKind::kRefused, text);
}

void CheckDate(const Voucher& voucher) {
  const std::chrono::year_month_day date{std::chrono::year{voucher.year},
                                         std::chrono::month{static_cast<unsigned>(voucher.month)},
                                         std::chrono::day{static_cast<unsigned>(voucher.day)}};
  if (!date.ok() || voucher.year < 1) Refuse("凭证日期不正确");
}

/// An entry where it stands in its voucher.
struct Line {
  const Entry& entry;
  std::size_t position = 0;

  [[noreturn]] void Refuse(const std::string& text, bool partner = false) const {
    throw EntryRefused(
        position, partner,
        "第 " + std::to_string(position + 1) + " 条分录（" + entry.code + "）" + text);
  }
};

void CheckAmounts(const Line& line) {
  const Entry& entry = line.entry;
  const bool one_side = (entry.debit == 0) != (entry.credit == 0);
  if (!one_side) line.Refuse("应当只有借方金额或贷方金额");
  const std::int64_t amount = entry.debit + entry.credit;
  if (amount > kMaxAmount || amount < -kMaxAmount) line.Refuse("金额过大");
}

void CheckBalance(const Voucher& voucher) {
  if (voucher.entries.size() < 2) Refuse("凭证至少要有两条分录");
  if (Balancing(voucher.entries) != Sides{}) Refuse("凭证借贷不平衡");
}

struct AccountFlags {
  bool leaf = false;
  bool closed = false;
  std::array<bool, 5> wanted = {};  ///< in the order of `Partners`
};

/// What an entry may name: the flag's word for users, and the text.
using Partner = std::pair<const char*, const std::string*>;
std::array<Partner, 5> Partners(const Auxiliary& auxiliary) {
  return {{{"部门", &auxiliary.department},
           {"个人", &auxiliary.person},
           {"客户", &auxiliary.customer},
           {"供应商", &auxiliary.supplier},
           {"项目", &auxiliary.project}}};
}

AccountFlags FlagsOf(Connection& connection, const Line& line) {
  const host::Value key(line.entry.code);
  // On a server this keeps others from deleting the account, and from giving it its first
  // sub-account and its postings to that, before the voucher stands.
  connection.Execute("update gl_code set bend=bend where ccode=?", Origin::kDesk, {&key, 1});
  const auto rows = connection.Query(
      "select bend,bclose,bdept,bperson,bcus,bsup,bitem from gl_code where ccode=?", Origin::kDesk,
      {&key, 1});
  if (!rows->Next()) line.Refuse("没有这个科目");
  const auto flag = [&](int column) { return rows->Get(column).ToNumber() != 0; };
  return {flag(0), flag(1), {flag(2), flag(3), flag(4), flag(5), flag(6)}};
}

/// Gives whether the entry belongs in the auxiliary ledger.
bool CheckAccount(Connection& connection, const Line& line) {
  const AccountFlags flags = FlagsOf(connection, line);
  if (!flags.leaf) line.Refuse("不是明细科目");
  if (flags.closed) line.Refuse("科目已经封存");
  bool any = false;
  const auto partners = Partners(line.entry.auxiliary);
  for (std::size_t i = 0; i < partners.size(); ++i) {
    any = any || flags.wanted[i];
    if (!flags.wanted[i] || !partners[i].second->empty()) continue;
    constexpr bool kPartner = true;
    line.Refuse(std::string("没有指定") + partners[i].first, kPartner);
  }
  return any;
}

int NextNumber(Connection& connection, const Voucher& voucher) {
  const host::Value month[] = {voucher.year, voucher.month};
  const auto rows = connection.Query(
      "select max(voucher_number) from gl_accvouch where fiscal_year=? and fiscal_period=?",
      Origin::kDesk, month);
  const host::Value last = rows->Next() ? rows->Get(0) : host::Value();
  if (!(last.ToNumber() < std::numeric_limits<std::int32_t>::max())) {
    throw DatabaseError(ErrorKind::kOther, "本月的凭证号已经用完：" + last.ToText());
  }
  return last.ToLong() + 1;
}

std::string DateText(const Voucher& voucher) {
  std::array<char, 40> text;
  const int length = std::snprintf(text.data(), text.size(), "%04d-%02d-%02d", voucher.year,
                                   voucher.month, voucher.day);
  return {text.data(), static_cast<std::size_t>(length)};
}

/// One voucher on its way into the tables.
class Posting {
 public:
  Posting(Session& session, const Voucher& voucher)
      : connection_(session.Own()),
        keeps_history_(session.KeepsHistory()),
        voucher_(voucher),
        prepared_by_(voucher.prepared_by.empty() ? session.User() : voucher.prepared_by),
        number_(NextNumber(connection_, voucher)),
        date_(DateText(voucher)) {}

  [[nodiscard]] int Number() const { return number_; }

  void Add(const Entry& entry, bool auxiliary) {
    ++line_;
    AddLine(entry);
    if (auxiliary) AddToAuxiliary(entry);
    AddToTotals(entry);
  }

 private:
  [[nodiscard]] int Identifier(const char* table) {
    return ReserveIdentifiers(connection_, table, "i_id", 1);
  }

  void AddLine(const Entry& entry) {
    const Auxiliary& with = entry.auxiliary;
    const host::Value values[] = {Identifier("gl_accvouch"),
                                  voucher_.year,
                                  voucher_.month,
                                  number_,
                                  line_,
                                  date_,
                                  entry.summary,
                                  entry.code,
                                  entry.debit,
                                  entry.credit,
                                  entry.currency,
                                  entry.foreign_amount,
                                  entry.quantity,
                                  with.department,
                                  with.person,
                                  with.customer,
                                  with.supplier,
                                  with.project,
                                  prepared_by_};
    connection_.Execute(
        "insert into gl_accvouch(i_id,fiscal_year,fiscal_period,voucher_number,line_number,"
        "entry_date,summary,ccode,debit,credit,currency_name,foreign_amount,quantity,department,"
        "person,customer,supplier,project,prepared_by)values(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,"
        "?)",
        Origin::kDesk, values);
  }

  void AddToAuxiliary(const Entry& entry) {
    const Auxiliary& with = entry.auxiliary;
    const host::Value key[] = {entry.code,  voucher_.year, voucher_.month,         with.department,
                               with.person, with.customer, with.supplier,          with.project,
                               entry.debit, entry.credit,  Identifier("gl_accass")};
    const host::Value id = FirstRow("gl_accass",
                                    " and department=? and person=? and customer=? and supplier=? "
                                    "and project=?",
                                    Values(key).first(8));
    if (!id.IsNull()) {
      return Increase("update gl_accass set debit=debit+?,credit=credit+? where i_id=?", entry, id);
    }
    connection_.Execute(
        "insert into gl_accass(ccode,fiscal_year,fiscal_period,department,person,customer,"
        "supplier,project,debit,credit,i_id)values(?,?,?,?,?,?,?,?,?,?,?)",
        Origin::kDesk, key);
  }

  void AddToTotals(const Entry& entry) {
    const host::Value key[] = {entry.code,  voucher_.year, voucher_.month,
                               entry.debit, entry.credit,  Identifier("gl_accsum")};
    const host::Value id = FirstRow("gl_accsum", "", Values(key).first(3));
    if (!id.IsNull()) {
      return Increase("update gl_accsum set debit=debit+?,credit=credit+? where i_id=?", entry, id);
    }
    connection_.Execute(
        "insert into gl_accsum(ccode,fiscal_year,fiscal_period,debit,credit,i_id)values(?,?,?,?,?,"
        "?)",
        Origin::kDesk, key);
  }

  /// One row alone: two may stand for a month when postings have moved to another code. Those that
  /// have moved to another account are left as they are: an undo takes them back.
  [[nodiscard]] host::Value FirstRow(const std::string& ledger, const std::string& with,
                                     Values key) {
    std::string sql = "select min(i_id) from " + ledger +
                      " where ccode=? and fiscal_year=? and fiscal_period=?" + with;
    std::vector<host::Value> values(key.begin(), key.end());
    if (keeps_history_) {
      sql += " and not exists(select 1 from desk_moved m where m.to_code=? and m.ledger='" +
             ledger + "' and m.follows=0 and " + ledger + ".i_id between m.first_id and m.last_id)";
      values.push_back(key.front());
    }
    const auto rows = connection_.Query(sql, Origin::kDesk, values);
    return rows->Next() ? rows->Get(0) : host::Value();
  }

  void Increase(const char* sql, const Entry& entry, const host::Value& id) {
    const host::Value values[] = {entry.debit, entry.credit, id};
    connection_.Execute(sql, Origin::kDesk, values);
  }

  Connection& connection_;
  bool keeps_history_;
  const Voucher& voucher_;
  std::string prepared_by_;
  int number_;
  int line_ = 0;
  std::string date_;
};

}  // namespace

Sides Balancing(std::span<const Entry> entries) {
  std::int64_t difference = 0;
  for (const Entry& entry : entries) difference += entry.debit - entry.credit;
  return {.debit = std::max<std::int64_t>(-difference, 0),
          .credit = std::max<std::int64_t>(difference, 0)};
}

int Post(Session& session, const Voucher& voucher, const std::function<void()>& check) {
  CheckDate(voucher);
  std::vector<Line> lines;
  for (const Entry& entry : voucher.entries) lines.push_back({entry, lines.size()});
  for (const Line& line : lines) CheckAmounts(line);
  CheckBalance(voucher);
  Transaction transaction(session);
  if (check) check();
  Posting posting(session, voucher);
  for (const Line& line : lines) posting.Add(line.entry, CheckAccount(session.Own(), line));
  transaction.Commit();
  session.NotePosting();
  return posting.Number();
}

}  // namespace desk::book
