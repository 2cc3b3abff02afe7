// One entry of a voucher: reading it from the boxes, and bringing it back into them.

#include <algorithm>

#include "book/ledger/money_text.h"
#include "host/text.h"
#include "views/voucher_view.h"

namespace desk::views {

namespace host = tavrix::host;

namespace {

std::string Trimmed(const viewkit::TextBox& box) {
  return std::string(host::Trimmed(box.Text()));
}

/// An amount on one side of an entry; nothing for none.
std::string SideText(std::int64_t amount) {
  return amount == 0 ? std::string() : book::MoneyText(amount);
}

std::string PartnersLabel(const std::optional<PostingAccount>& account) {
  if (!account || account->wanted.empty()) return "往来";
  std::string label;
  for (const Partner partner : account->wanted) {
    label.append(label.empty() ? "" : "/").append(NameOf(partner));
  }
  return label;
}

}  // namespace

void VoucherView::ShowAccount() {
  if (refusal_) Answer({}, false);
  const std::optional<PostingAccount>& account = field_.Account();
  name_.SetCaption(account ? account->name : "");
  partner_label_.SetCaption(PartnersLabel(account));
  partner_.SetEnabled(account && !account->wanted.empty());
  ShowForeign();
}

bool VoucherView::ResolveAccount() {
  const std::string refusal = field_.Resolve();
  if (!refusal.empty()) {
    Answer(refusal, true);
    return false;
  }
  return field_.Account().has_value();
}

void VoucherView::TakeSelected() {
  const std::string code = plan_.selected_code();
  if (code.empty()) return Answer("请先在科目表中选择科目", true);
  field_.SetTyped(code);
  if (ResolveAccount()) return Answer({}, false, &debit_);
  code_.SetFocus();
  code_.SelectAll();
}

std::optional<std::int64_t> VoucherView::ReadAmount(viewkit::TextBox& box, const char* side) {
  const std::string text = Trimmed(box);
  const auto amount = book::ParseMoney(text);
  if (!amount) Answer(side + book::WhyNoMoney(text), true, &box);
  return amount;
}

std::optional<VoucherView::Line> VoucherView::ReadLine() {
  if (!ResolveAccount()) {
    if (field_.Typed().empty()) Answer("请填写科目", true);
    code_.SetFocus();
    code_.SelectAll();
    return std::nullopt;
  }
  const PostingAccount& account = *field_.Account();
  if (!WorkOut()) return std::nullopt;
  const auto debit = ReadAmount(debit_, "借方");
  if (!debit) return std::nullopt;
  const auto credit = ReadAmount(credit_, "贷方");
  if (!credit) return std::nullopt;
  if ((*debit == 0) == (*credit == 0)) {
    Answer("请填写借方金额或贷方金额之一", true, &debit_);
    return std::nullopt;
  }
  Line line{.entry = {.summary = Trimmed(summary_),
                      .code = account.code,
                      .debit = *debit,
                      .credit = *credit},
            .account = account};
  KeepUnshown(line.entry);
  if (!ReadForeign(line.entry)) return std::nullopt;
  // A name may hold the slash that parts names.
  const book::Entry* before = EditedEntry();
  const bool kept = before != nullptr && PartnersText(before->auxiliary) == Trimmed(partner_);
  line.entry.auxiliary = kept ? before->auxiliary : ReadPartners(account.wanted, Trimmed(partner_));
  if (const auto lacking = Lacking(account.wanted, line.entry.auxiliary)) {
    Answer("“" + account.name + "”要填写" + NameOf(*lacking), true, &partner_);
    return std::nullopt;
  }
  return line;
}

const book::Entry* VoucherView::EditedEntry() const {
  if (!edited_ || lines_[*edited_].entry.code != field_.Account()->code) return nullptr;
  return &lines_[*edited_].entry;
}

/// What a copied line holds and the account has no box for any more goes on as long as the amount
/// that it belongs to does.
void VoucherView::KeepUnshown(book::Entry& entry) const {
  const book::Entry* before = EditedEntry();
  if (before == nullptr) return;
  if (before->debit != entry.debit || before->credit != entry.credit) return;
  entry.currency = before->currency;
  entry.foreign_amount = before->foreign_amount;
  entry.quantity = before->quantity;
}

void VoucherView::Balance() {
  std::vector<book::Entry> others;
  for (std::size_t row = 0; row < lines_.size(); ++row) {
    if (row != edited_) others.push_back(lines_[row].entry);
  }
  const book::Sides lacking = book::Balancing(others);
  if (lacking == book::Sides{}) return Answer("其他分录已经平衡", false);
  debit_.SetText(SideText(lacking.debit));
  credit_.SetText(SideText(lacking.credit));
  Answer({}, false, lacking.debit != 0 ? &debit_ : &credit_);
}

void VoucherView::AddLine() {
  const auto line = ReadLine();
  if (!line) return;
  if (edited_) {
    lines_[*edited_] = *line;
  } else {
    lines_.push_back(*line);
  }
  Answer({}, false, &code_);
  if (const auto open = OpenLine()) return EditLine(*open);
  EditNew();
}

void VoucherView::AddAccounts(const std::vector<PostingAccount>& accounts) {
  for (const PostingAccount& account : accounts) {
    lines_.push_back(
        {.entry = {.summary = Trimmed(summary_), .code = account.code}, .account = account});
  }
  EditLine(*OpenLine());
  Answer("加入了" + std::to_string(accounts.size()) + "个科目，请逐行填写金额", false);
}

void VoucherView::Take(const book::Voucher& voucher) {
  if (!MayForget("是否换成复制的凭证？")) return;
  Clear();
  for (const book::Entry& entry : voucher.entries) {
    const auto account = field_.AccountOf(entry.code);
    lines_.push_back(
        {.entry = entry,
         .account = account.value_or(PostingAccount{
             .code = entry.code, .name = {}, .wanted = {}, .currency = {}, .unit = {}})});
  }
  if (!lines_.empty()) summary_.SetText(lines_.front().entry.summary);
  EditNew();
  Answer("复制了" + std::to_string(lines_.size()) + "条分录，请核对日期和金额后过账", false,
         &date_);
}

std::optional<std::size_t> VoucherView::OpenLine() const {
  const auto open = std::ranges::find_if(lines_, &Line::Open);
  if (open == lines_.end()) return std::nullopt;
  return static_cast<std::size_t>(open - lines_.begin());
}

void VoucherView::EditLine(std::size_t row) {
  const Line& line = lines_[row];
  edited_ = row;
  field_.Set(line.account);
  summary_.SetText(line.entry.summary);
  debit_.SetText(SideText(line.entry.debit));
  credit_.SetText(SideText(line.entry.credit));
  partner_.SetText(PartnersText(line.entry.auxiliary));
  FillForeign(line.entry);
  add_.SetCaption("更新分录(&A)");
  ShowLines();
  debit_.SetFocus();
  debit_.SelectAll();
}

void VoucherView::EditNew() {
  edited_.reset();
  field_.Clear();
  for (viewkit::TextBox* box : {&debit_, &credit_, &partner_}) box->SetText({});
  FillForeign({});
  add_.SetCaption("加入分录(&A)");
  ShowLines();
}

void VoucherView::ShowLines() {
  std::vector<viewkit::ListView::Texts> items;
  for (const Line& line : lines_) {
    items.push_back({line.account.code, line.account.name, line.entry.summary,
                     SideText(line.entry.debit), SideText(line.entry.credit),
                     PartnersText(line.entry.auxiliary)});
  }
  list_.SetItems(items);
  if (edited_) list_.SetSelected(static_cast<int>(*edited_) + 1, true);
  if (!lines_.empty())
    list_.EnsureVisible(static_cast<int>(edited_.value_or(lines_.size() - 1)) + 1);
  ShowSums();
}

void VoucherView::ShowSums() {
  std::int64_t debit = 0;
  std::int64_t credit = 0;
  for (const Line& line : lines_) {
    debit += line.entry.debit;
    credit += line.entry.credit;
  }
  std::string sums =
      "借方合计 " + book::MoneyText(debit) + "    贷方合计 " + book::MoneyText(credit);
  if (debit != credit) sums += "    差额 " + book::MoneyText(debit - credit);
  sums_.SetCaption(std::move(sums));
  ArrangeSums();
}

}  // namespace desk::views
