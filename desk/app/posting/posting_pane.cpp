#include "app/posting/posting_pane.h"

#include <commctrl.h>
#include <windowsx.h>

#include <algorithm>
#include <array>
#include <exception>

#include "app/frame/icons.h"
#include "app/frame/popup_menu.h"
#include "app/frame/search_strip.h"
#include "app/posting/account_range.h"
#include "app/posting/box_text.h"
#include "app/posting/posting_ids.h"
#include "book/ledger/money_text.h"
#include "host/report.h"
#include "host/utf.h"

namespace desk::app {
namespace {

namespace host = tavrix::host;
namespace win32 = tavrix::viewkit::win32;
using tavrix::host::Wide;

constexpr UINT kAccountLeft = WM_APP + 1;

const win32::WindowClass& PaneClass() {
  static const win32::WindowClass pane(L"DeskPosting", CS_HREDRAW | CS_VREDRAW);
  return pane;
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

void PostingPane::RemoveLine() {
  const int row = ListView_GetNextItem(list_, -1, LVNI_SELECTED);
  if (row < 0) return Answer(L"请选择要删除的分录", true, list_);
  lines_.erase(lines_.begin() + row);
  EditNew();
  Answer({}, false);
}

bool PostingPane::MayForget(const wchar_t* question) const {
  const bool typed = std::ranges::any_of(std::array{code_, debit_, credit_},
                                         [](HWND box) { return !TrimmedText(box).empty(); });
  if (lines_.empty() && !typed) return true;
  const std::wstring lost =
      lines_.empty() ? L"正在录入的分录" : L"已录入的" + std::to_wstring(lines_.size()) + L"条分录";
  const std::wstring text = L"凭证还没有过账，" + lost + L"将会丢失。\n\n" + question;
  return MessageBoxW(GetAncestor(Hwnd(), GA_ROOT), text.c_str(), L"提示：",
                     MB_YESNO | MB_ICONWARNING | MB_DEFBUTTON2) == IDYES;
}

void PostingPane::FocusFirst() {
  FocusBox(lines_.empty() && TrimmedText(code_).empty() ? date_ : code_);
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
  int number = 0;
  try {
    number = plan_.post(voucher);
  } catch (const book::EntryRefused& refusal) {
    Line& line = lines_[refusal.Position()];
    if (const auto account = plan_.account(line.account.code)) line.account = *account;
    EditLine(refusal.Position());
    return Answer(Wide(refusal.what()), true, refusal.LacksPartner() ? partner_ : code_);
  }
  Clear();
  Answer(L"已过账：" + std::to_wstring(voucher.year) + L"年" + std::to_wstring(voucher.month) +
             L"月第" + std::to_wstring(number) + L"号凭证",
         false, date_);
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
  if (box != nullptr) FocusBox(box);
}

HWND PostingPane::BoxAfter(HWND box) const {
  if (box == date_) return summary_;
  if (box == summary_ || box == range_codes_) return code_;
  if (box == range_) return IsWindowEnabled(range_codes_) ? range_codes_ : code_;
  const bool debit_empty = box == debit_ && TrimmedText(debit_).empty();
  if (debit_empty && TrimmedText(credit_).empty()) return credit_;
  const bool asks_partner = IsWindowEnabled(partner_) && TrimmedText(partner_).empty();
  return (box == debit_ || box == credit_) && asks_partner ? partner_ : nullptr;
}

void PostingPane::EditSelected() {
  const int row = ListView_GetNextItem(list_, -1, LVNI_SELECTED);
  if (row >= 0) EditLine(static_cast<std::size_t>(row));
}

/// Enter in a box goes on, from the last one of an entry into the list.
void PostingPane::OnEnter() {
  const HWND focus = GetFocus();
  if (focus == list_) return EditSelected();
  // Enter in the account's box ends the typing there; an empty box goes on too.
  if (focus == code_) {
    return FocusBox(ResolveAccount() || TrimmedText(code_).empty() ? debit_ : code_);
  }
  if (const HWND next = BoxAfter(focus)) return FocusBox(next);
  AddLine();
}

bool PostingPane::IsButton(HWND window) const {
  const std::array buttons = {several_, take_, add_, remove_, clear_, post_};
  return std::ranges::find(buttons, window) != buttons.end();
}

/// The button that Enter presses looks like it.
void PostingPane::ShowDefault(HWND button) {
  for (const HWND other : {several_, take_, add_, remove_, clear_, post_}) {
    const LONG kind = other == button ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON;
    Button_SetStyle(other, kind | BS_NOTIFY, TRUE);
  }
}

void PostingPane::OnCommand(int id, int code) {
  try {
    if (code == EN_CHANGE) return OnEdit(id);
    if (code == BN_SETFOCUS) return ShowDefault(GetDlgItem(Hwnd(), id));
    if (code == BN_KILLFOCUS) return ShowDefault(add_);
    if (id == kPostingRange && code == CBN_SELCHANGE) return OnRange();
    // The focus is still on its way.
    if (id == kPostingCode && code == EN_KILLFOCUS) {
      PostMessageW(Hwnd(), kAccountLeft, 0, 0);
      return;
    }
    if (code != BN_CLICKED) return;
    OnButton(id);
  } catch (const std::exception& error) {
    Answer(Wide(host::ErrorText(error)), true, code_);
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
      if (!lines_.empty() && !MayForget(L"是否清空？")) return;
      Clear();
      return Answer({}, false, date_);
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
  // Who goes on with the entry comes back to what was refused; who leaves it may.
  const bool goes_on = focus == debit_ || focus == credit_ || focus == partner_;
  try {
    if (!ResolveAccount() && refusal_ && goes_on) FocusBox(code_);
  } catch (const std::exception& error) {
    Answer(Wide(host::ErrorText(error)), true);
  }
}

void PostingPane::OnNotice(const NMHDR& header) {
  if (header.idFrom != kPostingList) return;
  switch (header.code) {
    case NM_DBLCLK:
      return EditSelected();
    case NM_SETFOCUS:
      if (ListView_GetNextItem(list_, -1, LVNI_SELECTED) < 0) {
        constexpr UINT kShown = LVIS_SELECTED | LVIS_FOCUSED;
        ListView_SetItemState(list_, ListView_GetItemCount(list_) - 1, kShown, kShown);
      }
      [[fallthrough]];
    case NM_KILLFOCUS:  // the frame around the list comes and goes
      InvalidateRect(Hwnd(), nullptr, FALSE);
      return;
    case LVN_KEYDOWN:
      if (reinterpret_cast<const NMLVKEYDOWN&>(header).wVKey == VK_DELETE) RemoveLine();
      return;
    default:
      return;
  }
}

/// Boxes have the system's own menu.
void PostingPane::OnContextMenu(LPARAM place) {
  const bool chosen = ListView_GetNextItem(list_, -1, LVNI_SELECTED) >= 0;
  const std::array entries = {MenuEntry{L"修改分录(&M)\tEnter", chosen},
                              MenuEntry{L"删除分录(&D)\tDel", chosen}, MenuEntry{},
                              MenuEntry{L"过账(&G)", !lines_.empty()},
                              MenuEntry{L"清空(&E)", !lines_.empty()}};
  const auto entry = ChooseEntry(Hwnd(), MenuPlaceInList(list_, place), entries);
  if (entry == 0U) EditSelected();
  if (entry == 1U) RemoveLine();
  if (entry == 3U) OnCommand(kPostingPost, BN_CLICKED);
  if (entry == 4U) OnCommand(kPostingClear, BN_CLICKED);
}

bool PostingPane::Translate(MSG& message) {
  if (field_.Translate(message)) return true;
  const bool in_amount = message.hwnd == debit_ || message.hwnd == credit_;
  if (!in_amount || message.message != WM_CHAR || message.wParam != L'=') return false;
  Balance();
  return true;
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
    case WM_CONTEXTMENU:
      if (reinterpret_cast<HWND>(wparam) == list_) OnContextMenu(lparam);
      return 0;
    case kAccountLeft:
      OnAccountLeft();
      return 0;
    case DM_GETDEFID: {
      const HWND focus = GetFocus();
      const int id = IsButton(focus) ? GetDlgCtrlID(focus) : IDOK;
      return MAKELRESULT(id, DC_HASDEFID);
    }
    default:
      return Pane::OnMessage(message, wparam, lparam);
  }
}

}  // namespace desk::app
