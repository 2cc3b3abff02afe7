#include "book/chart/merge.h"

#include <algorithm>
#include <utility>

#include "book/ledger/code_rule.h"
#include "book/ledger/money_text.h"
#include "book/session/journal_command.h"

namespace desk::book {

namespace {

std::string WordOf(bool set) {
  return set ? "是" : "否";
}

std::string OrNone(const std::string& text) {
  return text.empty() ? "无" : text;
}

ChartAccount Required(Session& session, const std::string& code) {
  auto account = FindAccount(session, code);
  if (!account) RefuseChange("没有科目 " + code);
  return *std::move(account);
}

class Planner {
 public:
  Planner(Session& session, const std::string& from, const std::string& into) : session_(session) {
    plan_.from = Required(session, from);
    plan_.into = Required(session, into);
    plan_.moved = CountPostings(session, plan_.from.code, false);
    plan_.present = CountPostings(session, plan_.into.code, false);
  }

  MergePlan Make() {
    plan_.refusal = RefusalOfAccounts();
    AddLooks();
    AddKinds();
    AddAmounts();
    if (plan_.Allowed()) NoteParent();
    return std::move(plan_);
  }

 private:
  [[nodiscard]] std::string RefusalOfAccounts() const {
    const ChartAccount& from = plan_.from;
    const ChartAccount& into = plan_.into;
    if (!CanRearrange(session_)) return "这个账簿不能合并科目";
    if (from.id == into.id) return "不能合并到科目自己";
    if (!from.leaf) return TitleOf(from) + " 不是明细科目";
    if (!into.leaf) return TitleOf(into) + " 不是明细科目";
    if (into.sealed) return TitleOf(into) + " 已经封存";
    return {};
  }

  void Add(const std::string& subject, const std::string& from, const std::string& into,
           const std::string& note = {}, bool refused = false) {
    plan_.rows.push_back(
        {.subject = subject, .from = from, .into = into, .note = note, .refused = refused});
  }

  void AddLooks() {
    const auto side = [](const ChartAccount& a) { return std::string(a.debit_side ? "借" : "贷"); };
    const auto differs = [](const std::string& a, const std::string& b) {
      return std::string(a == b ? "" : "不同");
    };
    const ChartAccount& from = plan_.from;
    const ChartAccount& into = plan_.into;
    Add("编码", from.code, into.code);
    Add("名称", from.name, into.name);
    Add("类别", from.category, into.category, differs(from.category, into.category));
    Add("余额方向", side(from), side(into), differs(side(from), side(into)));
  }

  void AddKinds() {
    for (std::size_t i = 0; i < kPartnerKinds; ++i) AddPartner(i);
    AddMeasure("外币", plan_.from.currency, plan_.into.currency,
               "coalesce(foreign_amount,0)<>0 or coalesce(currency_name,'')<>''");
    AddMeasure("数量单位", plan_.from.unit, plan_.into.unit, "coalesce(quantity,0)<>0");
  }

  void AddPartner(std::size_t kind) {
    const bool from = plan_.from.partners[kind];
    const bool into = plan_.into.partners[kind];
    if (!from && !into) return;
    const std::string name = kPartnerNames[kind];
    const std::string column = kPartnerColumns[kind];
    std::string note;
    if (from && !into && HasEntries("coalesce(" + column + ",'')<>''"))
      note = "目标科目不按" + name + "核算，会丢失这些明细";
    if (!from && into && HasEntries("coalesce(" + column + ",'')=''"))
      note = "有凭证没有" + name + "，目标科目需要";
    const bool refused = !note.empty();
    if (!refused && from != into) note = "不同";
    Add(name + "核算", WordOf(from), WordOf(into), note, refused);
  }

  /// `said` is what entries have that are in the currency, or by the unit.
  void AddMeasure(const std::string& subject, const std::string& from, const std::string& into,
                  const std::string& said) {
    if (from.empty() && into.empty()) return;
    std::string note;
    if (from != into && !from.empty() && HasEntries(said))
      note = "原科目的凭证按“" + from + "”记账";
    if (from != into && from.empty() && HasEntries("not(" + said + ")")) {
      note = "原科目的凭证没有“" + into + "”";
    }
    const bool refused = !note.empty();
    if (!refused && from != into) note = "不同";
    Add(subject, OrNone(from), OrNone(into), note, refused);
  }

  [[nodiscard]] bool HasEntries(const std::string& condition) const {
    const host::Value code(plan_.from.code);
    const auto rows = session_.Own().Query(
        "select 1 from gl_accvouch where ccode=? and(" + condition + ")limit 1", Origin::kDesk,
        {&code, 1});
    return rows->Next();
  }

  void AddAmounts() {
    const PostingCount& moved = plan_.moved;
    const PostingCount& present = plan_.present;
    Add("凭证分录", std::to_string(moved.entries), std::to_string(present.entries));
    Add("借方累计", MoneyText(moved.debit), MoneyText(present.debit));
    Add("贷方累计", MoneyText(moved.credit), MoneyText(present.credit));
  }

  void NoteParent() {
    const std::string parent =
        CodeRuleArithmetic().ParentCode(plan_.from.code, ReadCodeRule(session_));
    const auto account = FindAccount(session_, parent);
    if (!account) return;
    const auto range = RangeOf(parent);
    const host::Value parameters[] = {parent, range[1], plan_.from.code};
    const auto others =
        session_.Own().Query("select 1 from gl_code where ccode>? and ccode<? and ccode<>? limit 1",
                             Origin::kDesk, parameters);
    if (!others->Next()) plan_.notes.push_back(TitleOf(*account) + " 成为明细科目");
  }

  Session& session_;
  MergePlan plan_;
};

/// The accounts that are summarised into the one that goes.
void MoveGathering(Connection& connection, const MergePlan& plan) {
  const host::Value values[] = {plan.into.code, plan.from.code};
  connection.Execute("update gl_code set cgather=? where lower(cgather)=lower(cast(? as text))",
                     Origin::kDesk, values);
}

}  // namespace

bool MergePlan::Allowed() const {
  return refusal.empty() && std::ranges::none_of(rows, &MergeRow::refused);
}

std::string MergePlan::WhyNot() const {
  if (!refusal.empty()) return refusal;
  const auto row = std::ranges::find_if(rows, &MergeRow::refused);
  return row == rows.end() ? std::string() : row->subject + "：" + row->note;
}

MergePlan PlanMerge(Session& session, const std::string& from, const std::string& into) {
  return Planner(session, from, into).Make();
}

std::int64_t MergeAccounts(Session& session, const MergePlan& plan, const Progress& progress) {
  Tell(progress, {.step = "正在核对科目"});
  PrepareRearranging(session);
  const LongWork long_work(session);
  Transaction transaction(session);
  const MergePlan now = PlanMerge(session, plan.from.code, plan.into.code);
  if (!now.Allowed()) RefuseChange(now.WhyNot());
  if (now.from != plan.from || now.into != plan.into) {
    RefuseChange("其他用户刚修改了这些科目，请核对后再试");
  }
  JournalCommand command(session, CommandKind::kMerge,
                         "合并 " + plan.from.code + " → " + plan.into.code);
  const std::int64_t moved = command.MovePostings(plan.from.code, plan.into.code, progress);
  MoveGathering(session.Own(), now);
  const host::Value id(now.from.id);
  session.Own().Execute("delete from gl_code where i_id=?", Origin::kDesk, {&id, 1});
  SetLeafIfLast(session, CodeRuleArithmetic().ParentCode(now.from.code, ReadCodeRule(session)));
  Tell(progress, {.step = "正在保存"});
  transaction.Commit();
  session.NoteChange();
  return moved;
}

}  // namespace desk::book
