// The parts of the posting pane: making, arranging and painting them.

#include <windows.h>

#include <commctrl.h>
#include <windowsx.h>

#include <algorithm>
#include <array>

#include "app/frame/icons.h"
#include "app/frame/search_strip.h"
#include "app/posting/account_range.h"
#include "app/posting/posting_ids.h"
#include "app/posting/posting_pane.h"
#include "book/ledger/money_text.h"
#include "host/utf.h"

namespace desk::app {
namespace {

namespace win32 = tavrix::viewkit::win32;

struct ColumnPlan {
  const wchar_t* heading;
  int width;
  int least;  ///< where the pane is narrow
  int format;
};
constexpr std::array kColumns = {ColumnPlan{L"科目编码", 96, 76, LVCFMT_LEFT},
                                 ColumnPlan{L"科目名称", 170, 90, LVCFMT_LEFT},
                                 ColumnPlan{L"摘要", 220, 70, LVCFMT_LEFT},
                                 ColumnPlan{L"借方金额", 120, 100, LVCFMT_RIGHT},
                                 ColumnPlan{L"贷方金额", 120, 100, LVCFMT_RIGHT},
                                 ColumnPlan{L"往来", 160, 70, LVCFMT_LEFT}};

constexpr std::size_t kSummary = 2;

constexpr int kMargin = 10;
constexpr int kGap = 8;

}  // namespace

HWND PostingPane::Add(const wchar_t* class_name, const wchar_t* text, DWORD style, int id) {
  return CreateWindowExW(0, class_name, text, WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, Hwnd(),
                         reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), win32::ThisModule(),
                         nullptr);
}

// The order of creation is that of the Tab key: date, summary, account, amounts, and last what is
// seldom needed, whatever stands where.
void PostingPane::CreateParts() {
  constexpr DWORD kBox = WS_TABSTOP | WS_BORDER | ES_AUTOHSCROLL;
  constexpr DWORD kNumber = kBox | ES_RIGHT;
  constexpr DWORD kLabel = SS_LEFT | SS_CENTERIMAGE;
  constexpr DWORD kButton = WS_TABSTOP | BS_NOTIFY;
  date_label_ = Add(WC_STATICW, L"日期", kLabel, kPostingLabel);
  date_ = Add(DATETIMEPICK_CLASSW, L"", WS_TABSTOP | DTS_SHORTDATECENTURYFORMAT, kPostingDate);
  DateTime_SetFormat(date_, L"yyyy-MM-dd");
  summary_label_ = Add(WC_STATICW, L"摘要", kLabel, kPostingLabel);
  summary_ = Add(WC_EDITW, L"", kBox, kPostingSummary);
  code_label_ = Add(WC_STATICW, L"科目", kLabel, kPostingLabel);
  code_ = Add(WC_EDITW, L"", kBox, kPostingCode);
  Edit_SetCueBannerText(code_, L"编码、名称或助记码");
  // Its keys are F4 and Alt+Down in the box; the way of the Tab key leads past it.
  drop_ = Add(WC_BUTTONW, L"▼", BS_PUSHBUTTON, kPostingDrop);
  name_ = Add(WC_STATICW, L"", kLabel | SS_ENDELLIPSIS, kPostingLabel);
  debit_label_ = Add(WC_STATICW, L"借方", kLabel, kPostingLabel);
  debit_ = Add(WC_EDITW, L"", kNumber, kPostingDebit);
  credit_label_ = Add(WC_STATICW, L"贷方", kLabel, kPostingLabel);
  credit_ = Add(WC_EDITW, L"", kNumber, kPostingCredit);
  partner_label_ = Add(WC_STATICW, L"往来", kLabel | SS_ENDELLIPSIS, kPostingLabel);
  partner_ = Add(WC_EDITW, L"", kBox | WS_DISABLED, kPostingPartner);
  add_ = Add(WC_BUTTONW, L"加入分录(&A)", kButton | BS_DEFPUSHBUTTON, IDOK);
  CreateList();
  remove_ = Add(WC_BUTTONW, L"删除分录(&D)", kButton | BS_PUSHBUTTON, kPostingRemove);
  clear_ = Add(WC_BUTTONW, L"清空(&E)", kButton | BS_PUSHBUTTON, kPostingClear);
  post_ = Add(WC_BUTTONW, L"过账(&G)", kButton | BS_PUSHBUTTON, kPostingPost);
  range_label_ = Add(WC_STATICW, L"科目范围", kLabel, kPostingLabel);
  range_ = Add(WC_COMBOBOXW, L"", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST, kPostingRange);
  for (const AccountRange& range : AccountRanges()) ComboBox_AddString(range_, range.title);
  ComboBox_SetCurSel(range_, 0);
  range_codes_ = Add(WC_EDITW, L"", kBox | WS_DISABLED, kPostingRangeCodes);
  Edit_SetCueBannerText(range_codes_, L"如 1001,22");
  several_ = Add(WC_BUTTONW, L"多选(&M)", kButton | BS_PUSHBUTTON, kPostingSeveral);
  take_ = Add(WC_BUTTONW, L"取所选(&T)", kButton | BS_PUSHBUTTON, kPostingTake);
  SetStyle(style_);
}

void PostingPane::CreateList() {
  list_ = Add(
      WC_LISTVIEWW, L"",
      WS_TABSTOP | WS_BORDER | LVS_REPORT | LVS_SHOWSELALWAYS | LVS_NOSORTHEADER | LVS_SINGLESEL,
      kPostingList);
  ListView_SetExtendedListViewStyle(list_, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
  for (int i = 0; i < static_cast<int>(kColumns.size()); ++i) {
    const ColumnPlan& plan = kColumns[static_cast<std::size_t>(i)];
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT | LVCF_FMT | LVCF_SUBITEM;
    column.pszText = const_cast<wchar_t*>(plan.heading);
    column.fmt = plan.format;
    column.iSubItem = i;
    ListView_InsertColumn(list_, i, &column);
  }
}

void PostingPane::SetStyle(SharedStyle style) {
  style_ = std::move(style);
  field_.SetStyle(style_);
  SetFontsInside(Hwnd(), *style_);
  Arrange();
}

/// The columns share the list's width, so that it needs no bar to be scrolled by.
void PostingPane::FitColumns(int list_width) {
  const auto design = [this](int pixels) { return style_->scale.Design(pixels); };
  int over = GetSystemMetricsForDpi(SM_CXVSCROLL, static_cast<UINT>(style_->scale.dpi)) +
             2 * GetSystemMetrics(SM_CXBORDER) - list_width;
  int spare = 0;
  for (const ColumnPlan& plan : kColumns) {
    over += design(plan.width);
    spare += design(plan.width) - design(plan.least);
  }
  for (std::size_t i = 0; i < kColumns.size(); ++i) {
    const int own_spare = design(kColumns[i].width) - design(kColumns[i].least);
    int width = design(kColumns[i].width);
    if (over > 0) width -= MulDiv(std::min(over, spare), own_spare, spare);
    if (over < 0 && i == kSummary) width -= over;
    ListView_SetColumnWidth(list_, static_cast<int>(i), width);
  }
}

void PostingPane::Place(HWND window, int left, int top, int width, int height) {
  MoveWindow(window, left, top, std::max(0, width), std::max(0, height), TRUE);
}

void PostingPane::Arrange() {
  if (post_ == nullptr) return;
  const auto design = [this](int pixels) { return style_->scale.Design(pixels); };
  const RECT area = Client();
  const int width = static_cast<int>(area.right);
  const int height = style_->fonts.LinePixels() + design(8);
  int top = style_->strip_height + design(4);
  top = ArrangeHead(top, height, width);
  top = ArrangeEntry(top, height, width);
  const int foot = static_cast<int>(area.bottom) - height - design(kGap);
  Place(list_, design(kMargin), top, width - 2 * design(kMargin), foot - top - design(kGap));
  FitColumns(width - 2 * design(kMargin));
  ArrangeFoot(foot, height, width);
  InvalidateRect(Hwnd(), nullptr, FALSE);
}

int PostingPane::ArrangeHead(int top, int height, int width) {
  const auto design = [this](int pixels) { return style_->scale.Design(pixels); };
  int left = design(kMargin);
  const auto put = [&](HWND window, int pixels, int gap) {
    Place(window, left, top, pixels, height);
    left += pixels + design(gap);
  };
  put(date_label_, design(32), 4);
  put(date_, design(120), 16);
  put(summary_label_, design(32), 4);
  constexpr int kRangeWidth = 16 + 56 + 4 + 112 + 6 + 120 + kMargin;
  put(summary_, std::clamp(width - left - design(kRangeWidth), design(90), design(360)), 16);
  put(range_label_, design(56), 4);
  // A list box of the system has its own idea of its height, unless its field is given one.
  const LONG inner = height - design(6);
  SendMessageW(range_, CB_SETITEMHEIGHT, static_cast<WPARAM>(-1), inner);
  put(range_, design(112), 6);
  put(range_codes_, design(120), 0);
  return top + height + design(6);
}

int PostingPane::ArrangeEntry(int top, int height, int width) {
  const auto design = [this](int pixels) { return style_->scale.Design(pixels); };
  int left = design(kMargin);
  const auto put = [&](HWND window, int units, int gap) {
    Place(window, left, top, design(units), height);
    left += design(units + gap);
  };
  put(code_label_, 32, 4);
  put(code_, 140, 0);
  put(drop_, 24, 6);
  put(several_, 64, 6);
  put(take_, 76, 8);
  // In a narrow window the amounts go to a line of their own.
  constexpr int kName = 120;
  constexpr int kAmounts = 8 + 36 + 112 + 36 + 112 + 68 + 60 + kGap + 92 + kMargin;
  if (left + design(kName + kAmounts) > width) {
    Place(name_, left, top, width - left - design(kMargin), height);
    left = design(kMargin);
    top += height + design(6);
  } else {
    put(name_, kName, 8);
  }
  put(debit_label_, 32, 4);
  put(debit_, 100, 12);
  put(credit_label_, 32, 4);
  put(credit_, 100, 12);
  put(partner_label_, 64, 4);
  const int add_width = design(92);
  const int partner_width =
      std::clamp(width - left - add_width - design(kMargin + kGap), design(60), design(200));
  Place(partner_, left, top, partner_width, height);
  Place(add_, left + partner_width + design(kGap), top, add_width, height);
  return top + height + design(kGap);
}

void PostingPane::ArrangeFoot(int top, int height, int width) {
  const auto design = [this](int pixels) { return style_->scale.Design(pixels); };
  int right = width - design(kMargin);
  for (const HWND button : {post_, clear_, remove_}) {
    Place(button, right - design(92), top, design(92), height);
    right -= design(92 + 6);
  }
  foot_ = {design(kMargin), top, right - design(kGap), top + height};
}

RECT PostingPane::CloseButton() const {
  return CrossArea(Client(), style_->strip_height, *style_);
}

void PostingPane::Paint(HDC dc, const RECT& area) {
  const auto design = [this](int pixels) { return style_->scale.Design(pixels); };
  FillPane(dc, area, *style_);
  const int icon = style_->small_icon_pixels;
  const int top = (style_->strip_height - icon) / 2;
  PaintIcon(dc, Icon::kVoucher, design(8), top, icon);
  const RECT close = CloseButton();
  PaintCross(dc, close, *style_);
  const win32::Selected font(dc, style_->BoldFont());
  DrawLine(dc, L"录入凭证", {design(30), 0, close.left, style_->strip_height}, TextColor());
  PaintFoot(dc, foot_);
  if (GetFocus() == list_) PaintListFocus(dc);
}

/// An empty list has no row that could show it.
void PostingPane::PaintListFocus(HDC dc) const {
  RECT frame{};
  GetWindowRect(list_, &frame);
  MapWindowPoints(nullptr, Hwnd(), reinterpret_cast<POINT*>(&frame), 2);
  InflateRect(&frame, style_->scale.Design(2), style_->scale.Design(2));
  FillBox(dc, frame, GetSysColor(COLOR_HIGHLIGHT));
}

void PostingPane::PaintFoot(HDC dc, const RECT& area) const {
  std::int64_t debit = 0;
  std::int64_t credit = 0;
  for (const Line& line : lines_) {
    debit += line.entry.debit;
    credit += line.entry.credit;
  }
  std::wstring sums = L"借方合计 " + tavrix::host::Wide(book::MoneyText(debit)) + L"    贷方合计 " +
                      tavrix::host::Wide(book::MoneyText(credit));
  if (debit != credit) sums += L"    差额 " + tavrix::host::Wide(book::MoneyText(debit - credit));
  const win32::Selected font(dc, style_->Font());
  DrawLine(dc, sums.c_str(), area, TextColor());
  RECT rest = area;
  rest.left += style_->fonts.Pixels(sums, false) + style_->scale.Design(24);
  DrawLine(dc, answer_.c_str(), rest, refusal_ ? RefusedColor() : DoneColor());
}

}  // namespace desk::app
