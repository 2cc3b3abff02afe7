// One entry of a voucher: reading it from the boxes, and bringing it back into them.

#include <algorithm>
#include <exception>

#include "app/posting/box_text.h"
#include "app/posting/posting_pane.h"
#include "book/ledger/money_text.h"
#include "host/text.h"
#include "host/utf.h"

namespace desk::app {
namespace {

namespace host = tavrix::host;
namespace win32 = tavrix::viewkit::win32;
using tavrix::host::Narrow;
using tavrix::host::Wide;

std::wstring PartnersLabel(const std::optional<PostingAccount>& account) {
  if (!account || account->wanted.empty()) return L"往来";
  std::wstring label;
  for (const Partner partner : account->wanted) {
    label.append(label.empty() ? L"" : L"/").append(NameOf(partner));
  }
  return label;
}

template <class Auxiliary>
auto& PartnerText(Auxiliary& auxiliary, Partner partner) {
  switch (partner) {
    case Partner::kDepartment:
      return auxiliary.department;
    case Partner::kPerson:
      return auxiliary.person;
    case Partner::kCustomer:
      return auxiliary.customer;
    case Partner::kSupplier:
      return auxiliary.supplier;
    case Partner::kProject:
      break;
  }
  return auxiliary.project;
}

/// What the account wants and the entry does not name; nothing when all is there.
std::optional<Partner> Lacking(const PostingAccount& account, const book::Auxiliary& auxiliary) {
  const auto lacking = std::ranges::find_if(
      account.wanted, [&](Partner partner) { return PartnerText(auxiliary, partner).empty(); });
  if (lacking == account.wanted.end()) return std::nullopt;
  return *lacking;
}

}  // namespace

void PostingPane::ShowAccount() {
  if (refusal_) Answer({}, false);
  const std::optional<PostingAccount>& account = field_.Account();
  SetWindowTextW(name_, account ? account->name.c_str() : L"");
  SetWindowTextW(partner_label_, PartnersLabel(account).c_str());
  EnableWindow(partner_, account && !account->wanted.empty());
}

bool PostingPane::ResolveAccount() {
  const std::wstring refusal = field_.Resolve();
  if (!refusal.empty()) {
    Answer(refusal, true);
    return false;
  }
  return field_.Account().has_value();
}

void PostingPane::TakeSelected() {
  const std::wstring code = plan_.selected_code();
  if (code.empty()) return Answer(L"请先在科目表中选择科目", true);
  field_.Clear();
  SetWindowTextW(code_, code.c_str());
  if (!ResolveAccount()) return FocusBox(code_);
  Answer({}, false, debit_);
}

void PostingPane::FillPartners(const PostingAccount& account, book::Auxiliary& auxiliary) {
  std::string rest = TrimmedText(partner_);
  for (const Partner partner : account.wanted) {
    const std::size_t end = rest.find('/');
    PartnerText(auxiliary, partner) = host::Trimmed(std::string_view(rest).substr(0, end));
    rest = end == rest.npos ? std::string() : rest.substr(end + 1);
  }
}

std::optional<std::int64_t> PostingPane::ReadAmount(HWND box, const wchar_t* side) {
  const std::string text = TrimmedText(box);
  const auto amount = book::ParseMoney(text);
  if (!amount) Answer(side + Wide(book::WhyNoMoney(text)), true, box);
  return amount;
}

std::optional<PostingPane::Line> PostingPane::ReadLine() {
  if (!ResolveAccount()) {
    if (TrimmedText(code_).empty()) Answer(L"请填写科目", true);
    FocusBox(code_);
    return std::nullopt;
  }
  const PostingAccount& account = *field_.Account();
  const auto debit = ReadAmount(debit_, L"借方");
  if (!debit) return std::nullopt;
  const auto credit = ReadAmount(credit_, L"贷方");
  if (!credit) return std::nullopt;
  if ((*debit == 0) == (*credit == 0)) {
    Answer(L"请填写借方金额或贷方金额之一", true, debit_);
    return std::nullopt;
  }
  Line line{.entry = {.summary = TrimmedText(summary_),
                      .code = Narrow(account.code),
                      .debit = *debit,
                      .credit = *credit},
            .account = account};
  FillPartners(account, line.entry.auxiliary);
  if (const auto lacking = Lacking(account, line.entry.auxiliary)) {
    Answer(L"“" + account.name + L"”要填写" + NameOf(*lacking), true, partner_);
    return std::nullopt;
  }
  return line;
}

void PostingPane::Balance() {
  std::vector<book::Entry> others;
  for (std::size_t row = 0; row < lines_.size(); ++row) {
    if (row != edited_) others.push_back(lines_[row].entry);
  }
  const book::Sides lacking = book::Balancing(others);
  if (lacking == book::Sides{}) return Answer(L"其他分录已经平衡", false);
  SetWindowTextW(debit_, SideText(lacking.debit).c_str());
  SetWindowTextW(credit_, SideText(lacking.credit).c_str());
  Answer({}, false, lacking.debit != 0 ? debit_ : credit_);
}

void PostingPane::AddLine() {
  const auto line = ReadLine();
  if (!line) return;
  if (edited_) {
    lines_[*edited_] = *line;
  } else {
    lines_.push_back(*line);
  }
  Answer({}, false, code_);
  if (const auto open = OpenLine()) return EditLine(*open);
  EditNew();
}

void PostingPane::AddAccounts(const std::vector<PostingAccount>& accounts) {
  for (const PostingAccount& account : accounts) {
    lines_.push_back({.entry = {.summary = TrimmedText(summary_), .code = Narrow(account.code)},
                      .account = account});
  }
  EditLine(*OpenLine());
  Answer(L"加入了" + std::to_wstring(accounts.size()) + L"个科目，请逐行填写金额", false);
}

std::optional<std::size_t> PostingPane::OpenLine() const {
  const auto open = std::ranges::find_if(lines_, &Line::Open);
  if (open == lines_.end()) return std::nullopt;
  return static_cast<std::size_t>(open - lines_.begin());
}

void PostingPane::EditLine(std::size_t row) {
  const Line& line = lines_[row];
  edited_ = row;
  field_.Set(line.account);
  SetWindowTextW(summary_, Wide(line.entry.summary).c_str());
  SetWindowTextW(debit_, SideText(line.entry.debit).c_str());
  SetWindowTextW(credit_, SideText(line.entry.credit).c_str());
  SetWindowTextW(partner_, PartnersText(line.entry.auxiliary).c_str());
  SetWindowTextW(add_, L"更新分录(&A)");
  ShowLines();
  FocusBox(debit_);
}

void PostingPane::EditNew() {
  edited_.reset();
  field_.Clear();
  for (const HWND box : {debit_, credit_, partner_}) SetWindowTextW(box, L"");
  SetWindowTextW(add_, L"加入分录(&A)");
  ShowLines();
}

}  // namespace desk::app
