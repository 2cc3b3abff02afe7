#include "views/batch_dialog.h"

#include <algorithm>
#include <array>
#include <utility>

#include "book/ledger/folded_text.h"
#include "book/ledger/money_text.h"
#include "host/text.h"

namespace desk::views {

using book::BatchAction;

namespace {

constexpr int kFilterWidth = 2400;  // in twips
constexpr int kOptionWidth = 1500;

struct Words {
  const char* done;     ///< what becomes of an account
  const char* refused;  ///< what does not
};

Words WordsOf(BatchAction action) {
  switch (action) {
    case BatchAction::kSeal:
      return {"封存", "不能封存"};
    case BatchAction::kUnseal:
      return {"解除封存", "不能解除封存"};
    case BatchAction::kDelete:
      break;
  }
  return {"删除", "不能删除"};
}

}  // namespace

BatchDialog::BatchDialog(book::Session& session, const std::string& code, LongRunner run)
    : PreviewDialog(
          "DeskBatch",
          [] {
            static constexpr std::array kColumns = {Column{"选", 450}, Column{"编码", 1650},
                                                    Column{"名称", 3000}, Column{"状态", 1500},
                                                    Column{"结果", 3300}};
            return PreviewDialog::Plan{.caption = "批量处理",
                                       .action = "执行(&O)",
                                       .title = "批量处理",
                                       .form_rows = 2,
                                       .columns = kColumns};
          }(),
          std::move(run)),
      session_(session),
      chart_(book::ReadBatchChart(session)) {
  PlaceForm();
  PutRest();
  const auto found = std::ranges::find(chart_.accounts, code, &book::ChartAccount::code);
  const auto position = static_cast<std::size_t>(found - chart_.accounts.begin());
  const bool known = found != chart_.accounts.end();
  if (known) Choose(position, true);
  (known && found->sealed ? unseal_ : seal_).SetValue(true);
  Listen();
  ShowPlan();
  if (!known) return;
  const int row = List().FixedRows() + static_cast<int>(position);
  List().SetRow(row);
  List().SetTopRow(row);
}

void BatchDialog::PlaceForm() {
  const auto rows = FormRows();
  PutLabel("操作", rows.Label(0));
  host::Bounds bounds = rows.Field(0);
  bounds.width = kOptionWidth;
  for (const auto& [button, caption] :
       {std::pair{&seal_, "封存(&S)"}, std::pair{&unseal_, "解除封存(&U)"},
        std::pair{&delete_, "删除(&D)"}}) {
    button->SetCaption(caption);
    Put(*button, bounds);
    bounds.left += kOptionWidth;
  }
  PutLabel("筛选(&F)", rows.Label(1));
  bounds = rows.Field(1);
  bounds.width = kFilterWidth;
  filter_.SetPlaceholder("编码或名称");
  Put(filter_, bounds);
}

void BatchDialog::Listen() {
  const auto show = [this] { ShowPlan(); };
  for (viewkit::OptionButton* button : {&seal_, &unseal_, &delete_}) button->Clicked.Add(show);
  filter_.Changed.Add(show);
  List().DoubleClick.Add([this] { Toggle(); });
  List().KeyDown.Add([this](viewkit::Key key, viewkit::Modifiers modifiers) {
    if (key == viewkit::Key::kSpace && !modifiers.control && !modifiers.alt) Toggle();
    if (key == static_cast<viewkit::Key>('A') && modifiers.control) ToggleAll();
  });
}

BatchAction BatchDialog::Action() const {
  if (unseal_.Value()) return BatchAction::kUnseal;
  return delete_.Value() ? BatchAction::kDelete : BatchAction::kSeal;
}

void BatchDialog::Toggle() {
  const int row = List().Row();
  if (row < List().FixedRows() || row >= List().Rows()) return;
  const std::size_t account = filtered_.at(PositionOf(row));
  Choose(account, !chosen_.contains(account));
  ShowPlan();
}

void BatchDialog::ToggleAll() {
  const bool choose = !std::ranges::all_of(filtered_, [&](auto a) { return chosen_.contains(a); });
  for (const std::size_t account : filtered_) {
    if (chosen_.contains(account) != choose) Choose(account, choose);
  }
  ShowPlan();
}

/// In order of the codes those below an account follow it, and those above it come before.
void BatchDialog::Choose(std::size_t account, bool chosen) {
  const auto& accounts = chart_.accounts;
  const auto begins = [&](std::size_t longer, std::size_t shorter) {
    return accounts[longer].code.starts_with(accounts[shorter].code);
  };
  for (std::size_t i = account; i < accounts.size() && begins(i, account); ++i) {
    if (chosen) chosen_.insert(i);
    if (!chosen) chosen_.erase(i);
  }
  if (chosen) return;
  std::erase_if(chosen_, [&](std::size_t above) { return begins(account, above); });
}

void BatchDialog::ShowPlan() {
  plan_ = book::PlanBatch(chart_, Action(), chosen_);
  std::vector<const book::BatchRow*> planned(chart_.accounts.size());
  for (const book::BatchRow& row : plan_.rows) planned[row.account] = &row;
  const book::FoldedPattern pattern(host::Trimmed(filter_.Text()));
  filtered_.clear();
  Preview preview{.summary = Summary(), .why_not = WhyNot()};
  for (std::size_t i = 0; i < chart_.accounts.size(); ++i) {
    const book::ChartAccount& account = chart_.accounts[i];
    if (!pattern.Empty() && !pattern.FoundIn(account.code) && !pattern.FoundIn(account.name)) {
      continue;
    }
    filtered_.push_back(i);
    preview.rows.push_back(RowOf(i, planned[i]));
  }
  Show(std::move(preview));
}

PreviewDialog::Row BatchDialog::RowOf(std::size_t account, const book::BatchRow* planned) const {
  const book::ChartAccount& row = chart_.accounts[account];
  std::string state = row.sealed ? "已封存" : "";
  if (chart_.posted[account]) state += state.empty() ? "已记账" : "、已记账";
  std::string result;
  if (planned != nullptr) result = planned->changes ? WordsOf(Action()).done : planned->reason;
  const bool bad = planned != nullptr && !planned->changes && plan_.action == BatchAction::kDelete;
  return {.cells = {planned != nullptr ? "√" : "", row.code, row.name, state, result}, .bad = bad};
}

std::string BatchDialog::Summary() const {
  const Words words = WordsOf(plan_.action);
  std::string text = std::string("将") + words.done + " " +
                     book::CountText(static_cast<std::int64_t>(plan_.changing)) + " 个科目";
  if (plan_.refused > 0) {
    text +=
        "；" + book::CountText(static_cast<std::int64_t>(plan_.refused)) + " 个" + words.refused;
  }
  return text;
}

std::string BatchDialog::WhyNot() const {
  if (plan_.changing > 0) return {};
  if (plan_.rows.empty()) return "请在列表中选择科目（空格键），下级科目一起处理";
  return "选中的科目都" + std::string(plan_.action == BatchAction::kDelete ? "不能删除"
                                      : plan_.action == BatchAction::kSeal ? "已经封存"
                                                                           : "没有封存");
}

void BatchDialog::Carry(const book::Progress& progress) {
  changed_ = book::ChangeBatch(session_, chart_, plan_, chosen_, progress);
}

void BatchDialog::Renew() {
  std::set<std::int64_t> ids;
  for (const std::size_t account : chosen_) ids.insert(chart_.accounts[account].id);
  chart_ = book::ReadBatchChart(session_);
  chosen_.clear();
  for (std::size_t i = 0; i < chart_.accounts.size(); ++i) {
    if (ids.contains(chart_.accounts[i].id)) chosen_.insert(i);
  }
  ShowPlan();
}

}  // namespace desk::views
