#include "book/exchange/import_plan.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>
#include <utility>

#include "book/exchange/import_line.h"
#include "book/ledger/code_rule.h"
#include "book/ledger/mnemonic.h"
#include "book/ledger/template.h"
#include "book/session/settings.h"
#include "host/account.h"
#include "host/text.h"

namespace desk::book {

namespace {

using enum AccountField;

std::vector<const SourceRow*> AccountRows(const SourceTable& table, const ImportOptions& options) {
  std::vector<const SourceRow*> rows;
  for (std::size_t i = options.header ? *options.header + 1 : 0; i < table.rows.size(); ++i) {
    const SourceRow& row = table.rows[i];
    if (IsAccountRow(RowCells(row, options.columns))) rows.push_back(&row);
  }
  return rows;
}

/// Codes compare without case.
std::string KeyOf(const std::string& code) {
  return host::LowerCase(code);
}

bool HasPostings(Session& session, const std::string& code) {
  const host::Value parameters[] = {code};
  for (const char* ledger : {"gl_accvouch", "gl_accass", "gl_accsum"}) {
    const auto rows = session.Own().Query("select 1 from " + std::string(ledger) + " where ccode=?",
                                          Origin::kDesk, parameters);
    if (rows->Next()) return true;
  }
  return false;
}

/// Makes the plan. Parents are judged before the accounts below them, whatever the file's order.
class Planner {
 public:
  Planner(Session& session, const SourceTable& table, const ImportOptions& options)
      : session_(session), table_(table), options_(options), chart_(ReadAccounts(session)) {
    const std::string kept = ReadCodeRule(session);
    plan_.empty_book = chart_.empty();
    bool free = plan_.empty_book && !options.code_rule.empty();
    if (free) rule_fault_ = WhyNoCodeRule(options.code_rule, {});
    free = free && rule_fault_.empty();
    plan_.rule = free ? options.code_rule : kept;
    plan_.changes_rule = free && options.code_rule != kept;
    for (std::size_t i = 0; i < chart_.size(); ++i) {
      in_book_.emplace(KeyOf(chart_[i].account.Code()), i);
      NoteCategory(chart_[i].account);
    }
  }

  ImportPlan Make() {
    const std::vector<const SourceRow*> rows = AccountRows(table_, options_);
    plan_.lines.resize(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) Start(*rows[i], plan_.lines[i]);
    for (const std::size_t i : ByLevel()) {
      ImportLine& line = plan_.lines[i];
      if (line.why.empty()) line.why = Judge(RowCells(*rows[i], options_.columns), line);
      if (!line.why.empty()) line.state = ImportState::kRefuse;
    }
    std::ranges::sort(plan_.new_parents);
    return std::move(plan_);
  }

 private:
  /// Takes the code, and refuses a row without a good one.
  void Start(const SourceRow& row, ImportLine& line) {
    const RowCells cells(row, options_.columns);
    line.number = row.number;
    // A book may have codes that no new account could have.
    const std::string cell = cells.Text(kCode);
    const bool kept = !cell.empty() && InBook(cell) != nullptr;
    line.account.Text(kCode) = kept ? cell : CodeIn(cell, plan_.rule);
    line.account.Text(kName) = cells.Text(kName);
    const std::string& code = line.account.Code();
    line.why = cells.Has(kCode) ? rule_fault_ : "请先在上面的列表中选择哪一列是科目编码";
    if (line.why.empty() && InBook(code) == nullptr) line.why = WhyNoCode(code, plan_.rule);
    if (!line.why.empty()) return;
    const auto [first, added] = in_file_.emplace(KeyOf(code), &line);
    if (!added) line.why = "与第 " + std::to_string(first->second->number) + " 行的编码重复";
    if (const auto category = CategoryIn(cells.Text(kCategory)); added && category) {
      AccountRecord known = line.account;
      known.Text(kCategory) = *category;
      NoteCategory(known);
    }
  }

  [[nodiscard]] std::vector<std::size_t> ByLevel() const {
    std::vector<std::size_t> order(plan_.lines.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
    std::ranges::stable_sort(
        order, {}, [&](std::size_t i) { return host::TextLength(plan_.lines[i].account.Code()); });
    return order;
  }

  /// Why the line is refused; empty when it is not.
  std::string Judge(const RowCells& cells, ImportLine& line) {
    const KeptAccount* kept = InBook(line.account.Code());
    const AccountRecord* parent = nullptr;
    if (std::string why = FindParent(line.account.Code(), kept != nullptr, parent); !why.empty()) {
      return why;
    }
    const std::string code = line.account.Code();
    AccountRecord account = kept != nullptr ? kept->account : Fresh(parent);
    if (kept == nullptr) account.Text(kCode) = code;
    if (std::string why = TakeCells(cells, account); !why.empty()) return why;
    if (std::string why = Complete(cells, kept, parent, account); !why.empty()) {
      return why;
    }
    line.account = std::move(account);
    if (kept == nullptr) {
      line.state = ImportState::kAdd;
      NoteParent(code);
      return {};
    }
    line.id = kept->id;
    Compare(kept->account, line);
    return {};
  }

  static void Compare(const AccountRecord& kept, ImportLine& line) {
    for (const FieldInfo& info : Fields()) {
      const AccountField field = info.field;
      const bool same = IsFlag(field) ? kept.Flag(field) == line.account.Flag(field)
                                      : WithoutBlanks(kept.Text(field)) ==
                                            WithoutBlanks(line.account.Text(field));
      if (!same) line.changed.push_back(field);
    }
    line.state = line.changed.empty() ? ImportState::kSame : ImportState::kChange;
    if (!line.changed.empty()) line.before = kept;
  }

  /// What a new account takes over.
  static AccountRecord Fresh(const AccountRecord* parent) {
    AccountRecord account;
    if (parent == nullptr) return account;
    account.Text(kCategory) = parent->Text(kCategory);
    account.SetFlag(kDebit, parent->Flag(kDebit));
    return account;
  }

  /// Adds to an account what follows from the rest; says what cannot be.
  std::string Complete(const RowCells& cells, const KeptAccount* kept, const AccountRecord* parent,
                       AccountRecord& account) {
    if (account.Text(kName).empty()) return "没有科目名称";
    if (options_.fill_mnemonics && account.Text(kMnemonic).empty()) {
      account.Text(kMnemonic) = ProposeMnemonic(account.Text(kName));
    }
    if (account.Text(kCategory).empty()) account.Text(kCategory) = UsualCategory(account.Code());
    if (account.Text(kCategory).empty())
      return "没有科目类别，也没有上级科目可以参照，请在文件中填写";
    if (std::string why = WhyNoCategory(kept, parent, account); !why.empty()) return why;
    if (kept != nullptr) {
      FollowBookType(cells, kept->account, account);
      return {};
    }
    if (parent == nullptr && cells.Text(kDebit).empty()) {
      account.SetFlag(kDebit, std::ranges::find(host::kCreditCategories, account.Text(kCategory)) ==
                                  host::kCreditCategories.end());
    }
    if (account.Text(kBookType).empty()) account.Text(kBookType) = BookTypeFor(account);
    return {};
  }

  /// A branch has one category. What differs in the book already is left alone.
  static std::string WhyNoCategory(const KeptAccount* kept, const AccountRecord* parent,
                                   const AccountRecord& account) {
    const std::string& category = account.Text(kCategory);
    if (kept != nullptr && kept->account.Text(kCategory) == category) return {};
    if (kept != nullptr && !kept->leaf) return "有下级的科目不能在导入时改变类别";
    if (parent == nullptr || parent->Text(kCategory) == category) return {};
    return "类别“" + category + "”与上级科目的类别“" + parent->Text(kCategory) + "”不同";
  }

  /// The ledger page goes with currency and quantity, where it did so before.
  static void FollowBookType(const RowCells& cells, const AccountRecord& kept,
                             AccountRecord& account) {
    const bool said = !cells.Text(kBookType).empty();
    if (!said && kept.Text(kBookType) == BookTypeFor(kept)) {
      account.Text(kBookType) = BookTypeFor(account);
    }
  }

  static std::string BookTypeFor(const AccountRecord& account) {
    namespace type = host::book_type;
    const bool quantity = !account.Text(kUnit).empty();
    if (account.Flag(kForeign)) {
      return std::string(quantity ? type::kAmountCurrencyQuantity : type::kAmountCurrency);
    }
    return std::string(quantity ? type::kAmountQuantity : type::kAmount);
  }

  /// Gives the parent, or null on the first level; or says why the account cannot stand below it.
  std::string FindParent(const std::string& code, bool kept, const AccountRecord*& parent) {
    CodeRuleArithmetic arithmetic;
    const std::string above = arithmetic.ParentCode(code, plan_.rule);
    if (above.empty()) return {};
    const KeptAccount* in_book = InBook(above);
    const auto in_file = in_file_.find(KeyOf(above));
    if (in_book == nullptr && in_file == in_file_.end()) {
      return "上级科目 " + above + " 不在账簿和文件中";
    }
    if (in_book == nullptr && in_file->second->state == ImportState::kRefuse) {
      return "上级科目 " + above + " 被拒绝";
    }
    if (in_book != nullptr && in_book->leaf && !kept) {
      if (std::string why = WhyNoParent(in_book->account.Code()); !why.empty()) return why;
    }
    const bool changed = in_file != in_file_.end() && in_file->second->why.empty();
    parent = changed ? &in_file->second->account : &in_book->account;
    return {};
  }

  /// Why a leaf of the book cannot get accounts below it; empty when it can.
  std::string WhyNoParent(const std::string& code) {
    const auto [known, is_new] = posted_.try_emplace(code, false);
    if (is_new) known->second = HasPostings(session_, code);
    return known->second ? Posted(code) : std::string();
  }

  /// A new account will stand below its parent, which may be a leaf of the book.
  void NoteParent(const std::string& code) {
    CodeRuleArithmetic arithmetic;
    const KeptAccount* above = InBook(arithmetic.ParentCode(code, plan_.rule));
    if (above == nullptr || !above->leaf) return;
    if (noted_.insert(above->account.Code()).second) {
      plan_.new_parents.push_back(above->account.Code());
    }
  }

  static std::string Posted(const std::string& code) {
    return "上级科目 " + code + " 已经记账，请先在科目表中为它增加第一个下级科目";
  }

  [[nodiscard]] const KeptAccount* InBook(const std::string& code) const {
    const auto found = in_book_.find(KeyOf(code));
    return found == in_book_.end() ? nullptr : &chart_[found->second];
  }

  /// Charts give each category first digits of its own.
  void NoteCategory(const AccountRecord& account) {
    if (account.Code().empty() || account.Text(kCategory).empty()) return;
    categories_[account.Code().front()].insert(account.Text(kCategory));
  }
  [[nodiscard]] std::string UsualCategory(const std::string& code) const {
    const auto found = categories_.find(code.front());
    const bool sure = found != categories_.end() && found->second.size() == 1;
    return sure ? *found->second.begin() : std::string();
  }

  Session& session_;
  const SourceTable& table_;
  const ImportOptions& options_;
  std::vector<KeptAccount> chart_;
  std::unordered_map<std::string, std::size_t> in_book_;
  std::unordered_map<std::string, const ImportLine*> in_file_;
  std::unordered_map<char, std::set<std::string>> categories_;
  std::map<std::string, bool> posted_;  ///< leaves of the book that were asked for
  std::set<std::string> noted_;
  std::string rule_fault_;
  ImportPlan plan_;
};

}  // namespace

std::size_t ImportPlan::Count(ImportState state) const {
  return static_cast<std::size_t>(std::ranges::count(lines, state, &ImportLine::state));
}

std::string ProposeCodeRule(const SourceTable& table, const ImportOptions& options) {
  std::set<std::size_t> lengths;
  for (const SourceRow* row : AccountRows(table, options)) {
    const std::string code = CodeIn(RowCells(*row, options.columns).Text(kCode), {});
    if (!code.empty()) lengths.insert(host::TextLength(code));
  }
  std::string rule;
  std::size_t before = 0;
  for (const std::size_t length : lengths) {
    constexpr std::size_t kLongestPart = 9;
    if (length - before > kLongestPart) return {};
    rule += static_cast<char>('0' + (length - before));
    before = length;
  }
  return rule;
}

ImportPlan PlanImport(Session& session, const SourceTable& table, const ImportOptions& options) {
  return Planner(session, table, options).Make();
}

std::string NoteOf(const ImportLine& line) {
  if (line.state == ImportState::kRefuse) return line.why;
  std::string note;
  const auto shown = [](const AccountRecord& account, AccountField field) {
    std::string text = account.Shown(field);
    if (!text.empty()) return text;
    return std::string(IsFlag(field) ? "否" : "（空）");
  };
  for (const AccountField field : line.changed) {
    note += (note.empty() ? "" : "；") + std::string(InfoOf(field).title) + "：" +
            shown(line.before, field) + " → " + shown(line.account, field);
  }
  return note;
}

}  // namespace desk::book
