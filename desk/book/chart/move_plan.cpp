#include "book/chart/move_plan.h"

#include <algorithm>
#include <map>
#include <utility>

#include "book/ledger/code_rule.h"
#include "host/text.h"
#include "host/utf.h"

namespace desk::book {

namespace {

/// The lengths that codes may have, for users: "4、6、8".
std::string LengthsOf(const std::string& rule) {
  CodeRuleArithmetic arithmetic;
  std::string lengths;
  for (std::int32_t level = 1; level <= static_cast<std::int32_t>(rule.size()); ++level) {
    lengths += (level == 1 ? "" : "、") + std::to_string(arithmetic.LengthAtLevel(level, rule));
  }
  return lengths;
}

bool IsWithin(const std::string& code, const std::string& top) {
  return code.size() >= top.size() && host::EqualNoCase(code.substr(0, top.size()), top);
}

/// One subtree and one new code.
class Planner {
 public:
  Planner(Session& session, const MovedSubtree& subtree, const std::string& new_code)
      : session_(session), subtree_(subtree), old_(subtree.Top().code) {
    plan_.code = old_;
    plan_.new_code = new_code;
  }

  MovePlan Make() {
    plan_.refusal = RefusalOfCode();
    if (plan_.refusal.empty()) {
      parent_ = CodeRuleArithmetic().ParentCode(plan_.new_code, subtree_.rule);
      plan_.refusal = RefusalOfParent();
    }
    AddRows();
    if (plan_.refusal.empty()) MarkCollisions();
    if (plan_.refusal.empty()) NoteOthers();
    return std::move(plan_);
  }

 private:
  [[nodiscard]] std::string RefusalOfCode() const {
    const std::string& code = plan_.new_code;
    if (subtree_.rule.empty()) return "账簿没有编码规则，不能改编码";
    if (code.empty()) return "请输入新编码";
    if (code == old_) return "新编码与原编码相同";
    if (code.find_first_of("'\"") != std::string::npos) return "编码不能含有引号";
    if (CodeRuleArithmetic().LevelOf(code, subtree_.rule) == 0) {
      return "编码 " + code + " 不合编码规则，应当是 " + LengthsOf(subtree_.rule) + " 位";
    }
    if (IsWithin(code, old_) && !host::EqualNoCase(code, old_)) return "不能移到自己的下级";
    return {};
  }

  [[nodiscard]] std::string RefusalOfParent() {
    if (parent_.empty()) return {};
    parent_account_ = FindAccount(session_, parent_);
    if (!parent_account_) return "没有上级科目 " + parent_;
    if (!parent_account_->leaf || StaysBelow() || !IsPosted(session_, parent_, false)) return {};
    return "上级科目 " + TitleOf(*parent_account_) + " 已经记账，请先为它增加一个下级科目来承接";
  }

  /// The account has this parent already.
  [[nodiscard]] bool StaysBelow() const {
    return host::EqualNoCase(parent_, CodeRuleArithmetic().ParentCode(old_, subtree_.rule));
  }

  void AddRows() {
    const CodeMap map(subtree_.rule, old_, plan_.new_code);
    if (parent_account_ && !StaysBelow()) plan_.category = parent_account_->category;
    plan_.rows.reserve(subtree_.accounts.size());
    for (const ChartAccount& account : subtree_.accounts) {
      MovedAccount row{.account = account};
      if (plan_.refusal.empty()) {
        CodeMap::Place place = map.PlaceOf(account.code);
        row.new_code = std::move(place.code);
        row.refusal = std::move(place.refusal);
        row.note = NoteOf(account);
      }
      Add(std::move(row));
    }
  }

  void Add(MovedAccount row) {
    if (!row.refusal.empty()) ++plan_.refused;
    plan_.rows.push_back(std::move(row));
  }

  [[nodiscard]] std::string NoteOf(const ChartAccount& account) const {
    std::string note;
    const auto append = [&](const std::string& text) { note += (note.empty() ? "" : "，") + text; };
    if (!plan_.category.empty() && account.category != plan_.category) {
      append("类别由“" + account.category + "”改为“" + plan_.category + "”");
    }
    if (&account == &subtree_.accounts.front() && parent_account_ && !StaysBelow()) {
      if (account.debit_side != parent_account_->debit_side) append("余额方向与上级不同");
      if (parent_account_->sealed && !account.sealed) append("上级科目已封存");
    }
    const bool gathered_outside = !account.gather.empty() && !IsWithin(account.gather, old_) &&
                                  !IsWithin(plan_.new_code, account.gather);
    if (gathered_outside) append("汇总到的科目 " + account.gather + " 不是上级");
    return note;
  }

  /// Accounts outside whose codes begin with the new one.
  void MarkCollisions() {
    std::map<std::string, std::string> others;  // names, by their codes in small letters
    const auto rows = session_.Own().Query(
        std::string("select ccode,ccode_name from gl_code where ") + kInRange + " order by ccode",
        Origin::kDesk, RangeOf(plan_.new_code));
    while (rows->Next()) {
      const std::string code = rows->Get(0).ToText();
      if (!IsWithin(code, old_)) others.emplace(host::LowerCase(code), rows->Get(1).ToText());
    }
    for (MovedAccount& row : plan_.rows) {
      const auto found = others.find(host::LowerCase(row.new_code));
      if (!row.refusal.empty() || found == others.end()) continue;
      row.refusal = "编码已被“" + found->second + "”使用";
      ++plan_.refused;
    }
    if (plan_.refused > 0) return;
    if (!others.empty()) {
      plan_.refusal = "编码 " + plan_.new_code + " 下面已有科目 " + others.begin()->first;
    } else if (!host::EqualNoCase(plan_.new_code, old_) &&
               IsPosted(session_, plan_.new_code, true)) {
      plan_.refusal = "账簿中有编码 " + plan_.new_code + " 的凭证或余额，却没有这个科目";
    }
  }

  void NoteOthers() {
    if (parent_account_ && parent_account_->leaf) {
      plan_.notes.push_back(TitleOf(*parent_account_) + " 不再是明细科目");
    }
    const std::string left = CodeRuleArithmetic().ParentCode(old_, subtree_.rule);
    if (left.empty() || StaysBelow()) return;
    const auto account = FindAccount(session_, left);
    if (account && !HasOthersBelow(left)) {
      plan_.notes.push_back(TitleOf(*account) + " 成为明细科目");
    }
  }

  [[nodiscard]] bool HasOthersBelow(const std::string& parent) const {
    if (IsWithin(plan_.new_code, parent)) return true;
    const auto range = RangeOf(parent);
    const auto moved = RangeOf(old_);
    const host::Value parameters[] = {parent, range[1], moved[0], moved[1]};
    const auto rows = session_.Own().Query(
        "select 1 from gl_code where ccode>? and ccode<? and not(ccode>=? and ccode<?) limit 1",
        Origin::kDesk, parameters);
    return rows->Next();
  }

  Session& session_;
  const MovedSubtree& subtree_;
  const std::string& old_;
  std::string parent_;
  std::optional<ChartAccount> parent_account_;
  MovePlan plan_;
};

/// The number that the last `digits` characters of a code come to; nothing for other characters.
std::optional<std::int64_t> NumberAtEnd(const std::string& code, int digits) {
  const std::size_t start = code.size() - static_cast<std::size_t>(digits);
  std::int64_t number = 0;
  for (const char c : code.substr(start)) {
    if (c < '0' || c > '9') return std::nullopt;
    number = number * 10 + (c - '0');
  }
  return number;
}

}  // namespace

MovedSubtree ReadMovedSubtree(Session& session, const std::string& code) {
  if (!CanRearrange(session)) RefuseChange("这个账簿不能改编码");
  MovedSubtree subtree{.accounts = ReadSubtree(session, code),
                       .postings = CountPostings(session, code, true),
                       .rule = ReadCodeRule(session)};
  if (subtree.accounts.empty()) RefuseChange("科目 " + code + " 已被其他用户删除");
  return subtree;
}

std::string MovePlan::WhyNot() const {
  if (!refusal.empty()) return refusal;
  const auto row = std::ranges::find_if(rows, [](const auto& r) { return !r.refusal.empty(); });
  if (row == rows.end()) return {};
  return (row->new_code.empty() ? row->account.code : row->new_code) + "：" + row->refusal;
}

MovePlan PlanMove(Session& session, const MovedSubtree& subtree, const std::string& new_code) {
  return Planner(session, subtree, new_code).Make();
}

std::optional<std::string> ProposeCode(Session& session, const MovedSubtree& subtree,
                                       const std::string& parent) {
  CodeRuleArithmetic arithmetic;
  const std::int32_t level = parent.empty() ? 1 : arithmetic.LevelOf(parent, subtree.rule) + 1;
  const std::int32_t length = arithmetic.LengthAtLevel(level, subtree.rule);
  const int digits = length - arithmetic.LengthAtLevel(level - 1, subtree.rule);
  if (level == 1 && !parent.empty()) return std::nullopt;  // the parent fits no level
  if (digits <= 0 || digits > 9) return std::nullopt;
  std::vector<std::int64_t> taken;
  const auto range = RangeOf(parent);
  const auto rows = session.Own().Query(std::string("select ccode from gl_code where ") + kInRange +
                                            " and length(ccode)=" + std::to_string(length),
                                        Origin::kDesk, range);
  while (rows->Next()) {
    if (const auto number = NumberAtEnd(rows->Get(0).ToText(), digits)) taken.push_back(*number);
  }
  std::ranges::sort(taken);
  std::int64_t last = 1;
  for (int i = 0; i < digits; ++i) last *= 10;
  std::int64_t next = taken.empty() ? 1 : taken.back() + 1;
  if (next >= last) {  // the first one that is free
    next = 1;
    for (const std::int64_t number : taken) next += number == next ? 1 : 0;
    if (next >= last) return std::nullopt;
  }
  const std::string text = std::to_string(next);
  return parent + std::string(static_cast<std::size_t>(digits) - text.size(), '0') + text;
}

}  // namespace desk::book
