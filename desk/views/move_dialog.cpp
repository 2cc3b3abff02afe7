#include "views/move_dialog.h"

#include <array>
#include <utility>

#include "book/ledger/money_text.h"
#include "host/report.h"
#include "host/text.h"
#include "views/caption_text.h"
#include "views/posting_account.h"

namespace desk::views {
namespace {

constexpr int kBoxWidth = 2400;  // in twips

}  // namespace

TypedAccount FindOneTyped(book::Session& session, const std::string& typed) {
  const auto found = FindTypedAccounts(session, typed);
  for (const PostingAccount& account : found) {
    if (account.code == typed) return {.code = account.code, .name = account.name};
  }
  if (found.size() == 1) return {.code = found[0].code, .name = found[0].name};
  if (found.empty()) return {.refusal = "没有科目“" + typed + "”"};
  return {.refusal = "有 " + std::to_string(found.size()) + " 个科目叫“" + typed + "”，请输入编码"};
}

MoveDialog::MoveDialog(book::Session& session, const std::string& code, Purpose purpose,
                       LongRunner run)
    : PreviewDialog(
          "DeskMove",
          [purpose] {
            static constexpr std::array kColumns = {Column{"原编码", 1650}, Column{"新编码", 1650},
                                                    Column{"名称", 2700}, Column{"说明", 3900}};
            const bool move = purpose == Purpose::kMove;
            return PreviewDialog::Plan{.caption = move ? "移到其他上级" : "改编码",
                                       .action = move ? "移动(&O)" : "改编码(&O)",
                                       .title = move ? "移到其他上级" : "改编码",
                                       .form_rows = move ? 3 : 2,
                                       .columns = kColumns};
          }(),
          std::move(run)),
      session_(session),
      purpose_(purpose),
      subtree_(book::ReadMovedSubtree(session, code)) {
  PlaceForm();
  PutRest();
  code_.Changed.Add([this] { Plan(std::string(host::Trimmed(code_.Text()))); });
  parent_.Changed.Add([this] { OnParentTyped(); });
  if (purpose_ == Purpose::kMove) {
    OnParentTyped();
  } else {
    code_.SetText(code);
  }
}

void MoveDialog::PlaceForm() {
  const auto rows = FormRows();
  PutLabel("科目", rows.Label(0));
  PutLabel(EscapedCaption(TitleOf(subtree_.Top())), rows.Field(0));
  int row = 1;
  if (purpose_ == Purpose::kMove) {
    PutLabel("新上级(&P)", rows.Label(row));
    host::Bounds bounds = rows.Field(row++);
    parent_.SetPlaceholder("编码、名称或助记码");
    Put(parent_, {bounds.left, bounds.top, kBoxWidth, bounds.height});
    const int name = kBoxWidth + viewkit::form::kGap;
    Put(parent_name_, {bounds.left + name, bounds.top, bounds.width - name, bounds.height});
  }
  PutLabel("新编码(&N)", rows.Label(row));
  host::Bounds bounds = rows.Field(row);
  bounds.width = kBoxWidth;
  Put(code_, bounds);
}

void MoveDialog::OnParentTyped() {
  const std::string typed(host::Trimmed(parent_.Text()));
  TypedAccount parent;
  if (!typed.empty()) parent = FindOneTyped(session_, typed);
  parent_refusal_ = typed.empty() ? "请输入新的上级科目" : parent.refusal;
  parent_name_.SetCaption(EscapedCaption(parent.name));
  std::string proposed;
  if (parent_refusal_.empty()) {
    const auto code = book::ProposeCode(session_, subtree_, parent.code);
    if (!code) parent_refusal_ = "科目 " + parent.code + " 下面没有可用的编码";
    proposed = code.value_or("");
  }
  if (proposed == code_.Text()) return Plan(proposed);
  code_.SetText(proposed);
}

void MoveDialog::Plan(const std::string& new_code) {
  plan_ = book::PlanMove(session_, subtree_, new_code);
  // A code that is typed says all by itself.
  if (new_code.empty() && purpose_ == Purpose::kMove) plan_.refusal = parent_refusal_;
  Show(PreviewOf());
}

PreviewDialog::Preview MoveDialog::PreviewOf() const {
  Preview preview{.summary = Summary(), .why_not = plan_.WhyNot()};
  preview.rows.reserve(plan_.rows.size());
  for (const book::MovedAccount& row : plan_.rows) {
    const bool bad = !row.refusal.empty();
    preview.rows.push_back(
        {.cells = {row.account.code, row.new_code, row.account.name, bad ? row.refusal : row.note},
         .bad = bad});
  }
  if (plan_.refused > 1 && plan_.refusal.empty()) {
    preview.why_not += "（共 " + std::to_string(plan_.refused) + " 个科目有问题）";
  }
  return preview;
}

std::string MoveDialog::Summary() const {
  std::string text = "将修改 " + book::CountText(static_cast<std::int64_t>(plan_.rows.size())) +
                     " 个科目、" + book::CountText(subtree_.postings.entries) + " 条凭证分录";
  for (const std::string& note : plan_.notes) text += "；" + note;
  return text;
}

void MoveDialog::Carry(const book::Progress& progress) {
  result_ = book::MoveAccounts(
      session_, plan_,
      purpose_ == Purpose::kMove ? book::CommandKind::kMove : book::CommandKind::kRenumber,
      progress);
}

void MoveDialog::Renew() {
  subtree_ = book::ReadMovedSubtree(session_, subtree_.Top().code);
  Plan(std::string(host::Trimmed(code_.Text())));
}

}  // namespace desk::views
