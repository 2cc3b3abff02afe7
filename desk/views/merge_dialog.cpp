#include "views/merge_dialog.h"

#include <array>
#include <utility>

#include "book/ledger/money_text.h"
#include "host/text.h"
#include "views/caption_text.h"
#include "views/move_dialog.h"

namespace desk::views {
namespace {

constexpr int kBoxWidth = 2400;  // in twips

book::ChartAccount LeafOf(book::Session& session, const std::string& code) {
  auto account = book::FindAccount(session, code);
  if (!account) book::RefuseChange("科目 " + code + " 已被其他用户删除");
  if (!account->leaf) book::RefuseChange("只有明细科目可以合并：" + TitleOf(*account));
  return *std::move(account);
}

}  // namespace

MergeDialog::MergeDialog(book::Session& session, const std::string& code, LongRunner run)
    : PreviewDialog(
          "DeskMerge",
          [] {
            static constexpr std::array kColumns = {Column{"项目", 1350}, Column{"原科目", 2550},
                                                    Column{"目标科目", 2550}, Column{"说明", 3600}};
            return PreviewDialog::Plan{.caption = "合并到",
                                       .action = "合并(&O)",
                                       .title = "合并科目",
                                       .form_rows = 2,
                                       .columns = kColumns,
                                       .offers_only_bad = false};
          }(),
          std::move(run)),
      session_(session),
      from_(LeafOf(session, code)) {
  PlaceForm();
  PutRest();
  into_.Changed.Add([this] { OnTyped(); });
  OnTyped();
}

void MergeDialog::PlaceForm() {
  const auto rows = FormRows();
  PutLabel("科目", rows.Label(0));
  PutLabel(EscapedCaption(TitleOf(from_)), rows.Field(0));
  PutLabel("合并到(&T)", rows.Label(1));
  const host::Bounds bounds = rows.Field(1);
  into_.SetPlaceholder("编码、名称或助记码");
  Put(into_, {bounds.left, bounds.top, kBoxWidth, bounds.height});
  const int name = kBoxWidth + viewkit::form::kGap;
  Put(into_name_, {bounds.left + name, bounds.top, bounds.width - name, bounds.height});
}

void MergeDialog::OnTyped() {
  const std::string typed(host::Trimmed(into_.Text()));
  TypedAccount into;
  if (!typed.empty()) into = FindOneTyped(session_, typed);
  into_name_.SetCaption(EscapedCaption(into.name));
  plan_.reset();
  if (into.code.empty()) {
    return Show({.why_not = typed.empty() ? "请输入要合并到的科目" : into.refusal});
  }
  plan_ = book::PlanMerge(session_, from_.code, into.code);
  Show(PreviewOf(*plan_));
}

PreviewDialog::Preview MergeDialog::PreviewOf(const book::MergePlan& plan) const {
  Preview preview{.summary = "将转移 " + book::CountText(plan.moved.entries) +
                             " 条凭证分录，并删除科目 " + TitleOf(plan.from),
                  .why_not = plan.WhyNot()};
  for (const std::string& note : plan.notes) preview.summary += "；" + note;
  for (const book::MergeRow& row : plan.rows) {
    preview.rows.push_back(
        {.cells = {row.subject, row.from, row.into, row.note}, .bad = row.refused});
  }
  return preview;
}

void MergeDialog::Carry(const book::Progress& progress) {
  moved_ = book::MergeAccounts(session_, *plan_, progress);
}

}  // namespace desk::views
