#include "app/posting/posting_pane.h"

#include <commctrl.h>
#include <windowsx.h>

#include <algorithm>
#include <array>
#include <exception>

#include "app/frame/icons.h"
#include "app/frame/search_strip.h"
#include "app/posting/account_range.h"
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

constexpr UINT kAccountLeft = WM_APP + 1;

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
  PostingPane& self = *pane;
  self.field_.Attach(
      self.code_, self.style_,
      {.account = self.plan_.account,
       .typed = self.plan_.typed,
       .system = self.plan_.system,
       .changed = [&self] { self.ShowAccount(); },
       .several =
           [&self](const std::vector<PostingAccount>& accounts) { self.AddAccounts(accounts); }});
  return pane;
}

void PostingPane::OnEdit(int id) {
  if (id == kPostingCode) field_.OnTextChanged();
  if (id == kPostingRangeCodes) OnRange();
}

void PostingPane::OnRange() {
  const auto chosen = static_cast<std::size_t>(std::max(0, ComboBox_GetCurSel(range_)));
  const AccountRange& range = AccountRanges()[chosen];
  const bool typed = range.key != nullptr && range.value == nullptr;
  EnableWindow(range_codes_, typed);
  field_.SetRange(chosen, typed ? TrimmedText(range_codes_) : std::string());
}

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
  if (!ResolveAccount()) {
    SetFocus(code_);
    return;
  }
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

std::optional<PostingPane::Line> PostingPane::ReadLine() {
  const auto debit = book::ParseMoney(TrimmedText(debit_));
  const auto credit = book::ParseMoney(TrimmedText(credit_));
  const auto refuse = [this](const wchar_t* text, HWND box) {
    Answer(text, true, box);
    return std::nullopt;
  };
  if (!ResolveAccount()) {
    if (TrimmedText(code_).empty()) return refuse(L"请填写科目", code_);
    SetFocus(code_);
    return std::nullopt;
  }
  const PostingAccount& account = *field_.Account();
  if (!debit) return refuse(L"借方金额不正确", debit_);
  if (!credit) return refuse(L"贷方金额不正确", credit_);
  if ((*debit == 0) == (*credit == 0)) return refuse(L"请填写借方金额或贷方金额之一", debit_);
  Line line{.entry = {.summary = TrimmedText(summary_),
                      .code = Narrow(account.code),
                      .debit = *debit,
                      .credit = *credit},
            .account = account};
  FillPartners(account, line.entry.auxiliary);
  return line;
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
  SetWindowTextW(add_, L"更新分录");
  ShowLines();
  SetFocus(debit_);
}

void PostingPane::EditNew() {
  edited_.reset();
  field_.Clear();
  for (const HWND box : {debit_, credit_, partner_}) SetWindowTextW(box, L"");
  SetWindowTextW(add_, L"加入分录");
  ShowLines();
}

void PostingPane::RemoveLine() {
  const int row = ListView_GetNextItem(list_, -1, LVNI_SELECTED);
  if (row < 0) return Answer(L"请选择要删除的分录", true);
  lines_.erase(lines_.begin() + row);
  EditNew();
  Answer({}, false);
}

void PostingPane::Clear() {
  lines_.clear();
  SetWindowTextW(summary_, L"");
  EditNew();
}

void PostingPane::ForgetBook() {
  field_.ForgetBook();
  Clear();
  Answer({}, false);
}

book::Voucher PostingPane::ReadVoucher() const {
  SYSTEMTIME date{};
  DateTime_GetSystemtime(date_, &date);
  book::Voucher voucher{.year = date.wYear, .month = date.wMonth, .day = date.wDay};
  for (const Line& line : lines_) voucher.entries.push_back(line.entry);
  return voucher;
}

void PostingPane::PostVoucher() {
  if (const auto open = OpenLine()) {
    EditLine(*open);
    return Answer(L"“" + lines_[*open].account.name + L"”还没有金额", true);
  }
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
        line.account.code,           line.account.name,
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
  const int shown = static_cast<int>(edited_.value_or(lines_.size() - 1));
  if (edited_) ListView_SetItemState(list_, shown, LVIS_SELECTED, LVIS_SELECTED);
  if (!lines_.empty()) ListView_EnsureVisible(list_, shown, FALSE);
  InvalidateRect(Hwnd(), nullptr, FALSE);
}

void PostingPane::Answer(std::wstring text, bool refusal, HWND box) {
  answer_ = std::move(text);
  refusal_ = refusal;
  InvalidateRect(Hwnd(), nullptr, FALSE);
  if (box != nullptr) SetFocus(box);
}

void PostingPane::OnEnter() {
  const HWND focus = GetFocus();
  if (focus == list_) {
    const int row = ListView_GetNextItem(list_, -1, LVNI_SELECTED);
    if (row >= 0) EditLine(static_cast<std::size_t>(row));
    return;
  }
  if (focus != code_) return AddLine();
  // Enter in the account's box ends the typing there; an empty box goes on too.
  if (ResolveAccount() || TrimmedText(code_).empty()) SetFocus(debit_);
}

void PostingPane::OnCommand(int id, int code) {
  try {
    if (code == EN_CHANGE) return OnEdit(id);
    if (id == kPostingRange && code == CBN_SELCHANGE) return OnRange();
    // The focus is still on its way.
    if (id == kPostingCode && code == EN_KILLFOCUS) {
      PostMessageW(Hwnd(), kAccountLeft, 0, 0);
      return;
    }
    if (code != BN_CLICKED) return;
    OnButton(id);
  } catch (const std::exception& error) {
    Answer(Wide(host::ErrorText(error)), true);
  }
}

void PostingPane::OnButton(int id) {
  switch (id) {
    case IDOK:
      return OnEnter();
    case IDCANCEL:
      return plan_.close();
    case kPostingDrop:
      return field_.Open(false);
    case kPostingSeveral:
      return field_.Open(true);
    case kPostingTake:
      return TakeSelected();
    case kPostingRemove:
      return RemoveLine();
    case kPostingPost:
      return PostVoucher();
    case kPostingClear:
      Clear();
      return Answer({}, false, code_);
    default:
      return;
  }
}

/// The user has gone on from the account's box, unless to what belongs to it.
void PostingPane::OnAccountLeft() {
  const HWND focus = GetFocus();
  const bool stays = field_.IsOpen() || focus == nullptr || focus == code_ || focus == drop_ ||
                     focus == several_ || focus == range_ || focus == range_codes_;
  if (stays) return;
  try {
    (void)ResolveAccount();
  } catch (const std::exception& error) {
    Answer(Wide(host::ErrorText(error)), true);
  }
}

void PostingPane::OnNotice(const NMHDR& header) {
  if (header.idFrom != kPostingList || header.code != NM_DBLCLK) return;
  const int row = ListView_GetNextItem(list_, -1, LVNI_SELECTED);
  if (row >= 0) EditLine(static_cast<std::size_t>(row));
}

LRESULT PostingPane::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_LBUTTONDOWN: {
      const RECT close = CloseButton();
      if (PtInRect(&close, {GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)})) plan_.close();
      return 0;
    }
    case WM_COMMAND:
      OnCommand(LOWORD(wparam), HIWORD(wparam));
      return 0;
    case WM_NOTIFY:
      OnNotice(*reinterpret_cast<const NMHDR*>(lparam));
      return 0;
    case WM_SETFOCUS:
      FocusFirst();
      return 0;
    case kAccountLeft:
      OnAccountLeft();
      return 0;
    case DM_GETDEFID:  // the button that looks like the one that Enter means
      return MAKELRESULT(IDOK, DC_HASDEFID);
    default:
      return Pane::OnMessage(message, wparam, lparam);
  }
}

}  // namespace desk::app
