#include "app/posting/posting_pane.h"

#include <commctrl.h>
#include <windowsx.h>

#include <array>
#include <exception>

#include "app/frame/icons.h"
#include "app/frame/search_strip.h"
#include "app/posting/posting_ids.h"
#include "book/money_text.h"
#include "host/report.h"
#include "host/text.h"
#include "viewkit/win32/wide.h"

namespace desk::app {
namespace {

namespace host = tavrix::host;
namespace win32 = tavrix::viewkit::win32;
using win32::Narrow;
using win32::Wide;

const win32::WindowClass& PaneClass() {
  static const win32::WindowClass pane(L"DeskPosting", CS_HREDRAW | CS_VREDRAW);
  return pane;
}

std::string TrimmedText(HWND box) {
  return std::string(host::Trimmed(Narrow(WindowText(box))));
}

std::wstring PartnersLabel(const std::optional<PostingAccount>& account) {
  if (!account || account->wanted.empty()) return L"往来";
  std::wstring label;
  for (const Partner partner : account->wanted) {
    label.append(label.empty() ? L"" : L"/").append(NameOf(partner));
  }
  return label;
}

std::string& PartnerText(book::Auxiliary& auxiliary, Partner partner) {
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

std::wstring PartnersText(const book::Auxiliary& auxiliary) {
  std::string text;
  for (const std::string* part : {&auxiliary.department, &auxiliary.person, &auxiliary.customer,
                                  &auxiliary.supplier, &auxiliary.project}) {
    if (!part->empty()) text += (text.empty() ? "" : "/") + *part;
  }
  return Wide(text);
}

std::wstring SideText(std::int64_t amount) {
  return amount == 0 ? std::wstring() : Wide(book::MoneyText(amount));
}

}  // namespace

std::shared_ptr<PostingPane> PostingPane::Make(HWND parent, SharedStyle style, PostingPlan plan) {
  auto pane = std::make_shared<PostingPane>();
  pane->style_ = std::move(style);
  pane->plan_ = std::move(plan);
  pane->Create(PaneClass(), {.text = L"凭证录入",
                             .style = WS_CHILD | WS_CLIPCHILDREN,
                             .extended_style = WS_EX_CONTROLPARENT,
                             .parent = parent});
  pane->CreateParts();
  return pane;
}

void PostingPane::FocusFirst() {
  SetFocus(code_);
}

void PostingPane::OnCode() {
  const std::string code = TrimmedText(code_);
  account_ = code.empty() ? std::nullopt : plan_.account(Wide(code));
  std::wstring text = code.empty() ? L"" : L"没有这个科目";
  if (account_) text = account_->leaf ? account_->name : account_->name + L"（不是明细科目）";
  SetWindowTextW(name_, text.c_str());
  SetWindowTextW(partner_label_, PartnersLabel(account_).c_str());
  EnableWindow(partner_, account_ && !account_->wanted.empty());
}

void PostingPane::TakeSelected() {
  const std::wstring code = plan_.selected_code();
  if (code.empty()) return Answer(L"请先在科目表中选择科目", true);
  SetWindowTextW(code_, code.c_str());
  SetFocus(debit_);
}

void PostingPane::FillPartners(const PostingAccount& account, book::Auxiliary& auxiliary) {
  std::string rest = TrimmedText(partner_);
  for (const Partner partner : account.wanted) {
    const std::size_t end = rest.find('/');
    PartnerText(auxiliary, partner) = host::Trimmed(std::string_view(rest).substr(0, end));
    rest = end == rest.npos ? std::string() : rest.substr(end + 1);
  }
}

std::optional<PostingPane::Line> PostingPane::ReadLine() {
  const auto debit = book::ParseMoney(TrimmedText(debit_));
  const auto credit = book::ParseMoney(TrimmedText(credit_));
  const auto refuse = [this](const wchar_t* text, HWND box) {
    Answer(text, true, box);
    return std::nullopt;
  };
  if (!account_) return refuse(L"没有这个科目", code_);
  if (!account_->leaf) return refuse(L"只能用明细科目", code_);
  if (!debit) return refuse(L"借方金额不正确", debit_);
  if (!credit) return refuse(L"贷方金额不正确", credit_);
  if ((*debit == 0) == (*credit == 0)) return refuse(L"请填写借方金额或贷方金额之一", debit_);
  Line line{.entry = {.summary = TrimmedText(summary_),
                      .code = TrimmedText(code_),
                      .debit = *debit,
                      .credit = *credit},
            .account_name = account_->name};
  FillPartners(*account_, line.entry.auxiliary);
  return line;
}

void PostingPane::AddLine() {
  const auto line = ReadLine();
  if (!line) return;
  lines_.push_back(*line);
  for (const HWND box : {code_, debit_, credit_, partner_}) SetWindowTextW(box, L"");
  ShowLines();
  Answer({}, false, code_);
}

void PostingPane::RemoveLine() {
  const int row = ListView_GetNextItem(list_, -1, LVNI_SELECTED);
  if (row < 0) return Answer(L"请选择要删除的分录", true);
  lines_.erase(lines_.begin() + row);
  ShowLines();
  Answer({}, false);
}

void PostingPane::Clear() {
  lines_.clear();
  for (const HWND box : {summary_, code_, debit_, credit_, partner_}) SetWindowTextW(box, L"");
  ShowLines();
}

book::Voucher PostingPane::ReadVoucher() const {
  SYSTEMTIME date{};
  DateTime_GetSystemtime(date_, &date);
  book::Voucher voucher{.year = date.wYear, .month = date.wMonth, .day = date.wDay};
  for (const Line& line : lines_) voucher.entries.push_back(line.entry);
  return voucher;
}

void PostingPane::PostVoucher() {
  const book::Voucher voucher = ReadVoucher();
  const int number = plan_.post(voucher);
  Clear();
  Answer(L"已过账：" + std::to_wstring(voucher.year) + L"年" + std::to_wstring(voucher.month) +
             L"月第" + std::to_wstring(number) + L"号凭证",
         false, code_);
}

void PostingPane::ShowLines() {
  ListView_DeleteAllItems(list_);
  for (int row = 0; row < static_cast<int>(lines_.size()); ++row) {
    const Line& line = lines_[static_cast<std::size_t>(row)];
    const std::array<std::wstring, 6> cells = {
        Wide(line.entry.code),       line.account_name,
        Wide(line.entry.summary),    SideText(line.entry.debit),
        SideText(line.entry.credit), PartnersText(line.entry.auxiliary)};
    LVITEMW item{};
    item.mask = LVIF_TEXT;
    item.iItem = row;
    item.pszText = const_cast<wchar_t*>(cells[0].c_str());
    ListView_InsertItem(list_, &item);
    for (int column = 1; column < static_cast<int>(cells.size()); ++column) {
      ListView_SetItemText(list_, row, column,
                           const_cast<wchar_t*>(cells[static_cast<std::size_t>(column)].c_str()));
    }
  }
  ListView_EnsureVisible(list_, static_cast<int>(lines_.size()) - 1, FALSE);
  InvalidateRect(Hwnd(), nullptr, FALSE);
}

void PostingPane::Answer(std::wstring text, bool refusal, HWND box) {
  answer_ = std::move(text);
  refusal_ = refusal;
  InvalidateRect(Hwnd(), nullptr, FALSE);
  if (box != nullptr) SetFocus(box);
}

void PostingPane::OnCommand(int id, int code) {
  try {
    if (id == kPostingCode && code == EN_CHANGE) return OnCode();
    if (code != BN_CLICKED) return;
    if (id == IDOK) return AddLine();
    if (id == IDCANCEL) return plan_.close();
    if (id == kPostingTake) return TakeSelected();
    if (id == kPostingRemove) return RemoveLine();
    if (id == kPostingPost) return PostVoucher();
    if (id == kPostingClear) {
      Clear();
      Answer({}, false, code_);
    }
  } catch (const std::exception& error) {
    Answer(Wide(host::ErrorText(error)), true);
  }
}

LRESULT PostingPane::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_SIZE:
      Arrange();
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT:
      Paint();
      return 0;
    case WM_LBUTTONDOWN: {
      const RECT close = CloseButton();
      if (PtInRect(&close, {GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)})) plan_.close();
      return 0;
    }
    case WM_COMMAND:
      OnCommand(LOWORD(wparam), HIWORD(wparam));
      return 0;
    case WM_SETFOCUS:
      FocusFirst();
      return 0;
    default:
      return Window::OnMessage(message, wparam, lparam);
  }
}

}  // namespace desk::app
