#include "app/frame/account_painter.h"

#include <algorithm>

#include "host/utf.h"

namespace desk::app {
namespace {

using tavrix::host::Wide;
using views::AccountSheet;

constexpr UINT kWrap = DT_WORDBREAK | DT_EDITCONTROL | DT_NOPREFIX;
constexpr int kThousandths = 1000;

COLORREF GroundColor() {
  return GetSysColor(COLOR_WINDOW);
}
COLORREF InkColor() {
  return GetSysColor(COLOR_WINDOWTEXT);
}
COLORREF LabelColor() {
  return Readable(FaintColor(), GroundColor(), InkColor());
}
COLORREF DebitColor() {
  return Readable(kLinkColor, GroundColor(), InkColor());
}
COLORREF CreditColor() {
  return Readable(kDoneColor, GroundColor(), FaintColor());
}

}  // namespace

AccountPainter::AccountPainter(HDC dc, const Style& style, int width, Mode mode)
    : dc_(dc),
      style_(style),
      width_(width),
      mode_(mode),
      left_(style.scale.Design(12)),
      line_(style.fonts.LinePixels() + style.scale.Design(6)) {}

int AccountPainter::Paint(const AccountSheet& sheet) {
  top_ = Design(10);
  Heading(sheet);
  Rule();
  Balance(sheet);
  Rule();
  Lines(sheet.lines);
  if (!sheet.months.empty()) {
    Rule();
    Bars(sheet.months);
    Table(sheet.months);
  }
  return top_ + Design(10);
}

void AccountPainter::Heading(const AccountSheet& sheet) {
  const COLORREF ink = sheet.sealed ? LabelColor() : InkColor();
  Wrapped(Wide(sheet.code + "  " + sheet.name), left_, ink, true);
  top_ += Design(2);
  Wrapped(Wide(sheet.path), left_, LabelColor(), false);
}

void AccountPainter::Balance(const AccountSheet& sheet) {
  Text(L"余额", left_, Right(), LabelColor(), DT_LEFT, false);
  Text(Wide(sheet.balance), left_, Right(), InkColor(), DT_RIGHT, true);
  top_ += line_;
  if (sheet.share.empty()) return;
  Text(L"占上级", left_, Right(), LabelColor(), DT_LEFT, false);
  Text(Wide(sheet.share), left_, Right(), InkColor(), DT_RIGHT, false);
  top_ += line_;
  if (Draws()) {
    const RECT whole{left_, top_, Right(), top_ + Design(5)};
    RECT part = whole;
    part.right = part.left + MulDiv(whole.right - whole.left, sheet.share_bar, kThousandths);
    FillBox(dc_, whole, LineColor());
    FillBox(dc_, part, DebitColor());
  }
  top_ += Design(7);
}

void AccountPainter::Lines(const std::vector<AccountSheet::Line>& lines) {
  int labels = 0;
  for (const AccountSheet::Line& line : lines) {
    labels = std::max(labels, style_.fonts.Pixels(Wide(line.label), false));
  }
  for (const AccountSheet::Line& line : lines) {
    Text(Wide(line.label), left_, Right(), LabelColor(), DT_LEFT, false);
    Wrapped(Wide(line.text), left_ + labels + Design(12), InkColor(), false);
  }
}

/// A pair of bars for each month, debit and credit.
void AccountPainter::Bars(const std::vector<AccountSheet::Bar>& months) {
  const int height = Design(56);
  const int count = std::max(6, static_cast<int>(months.size()));
  const int pitch = std::min((Right() - left_) / count, Design(28));
  const int bar = std::max(2, pitch / 2 - Design(1));
  const int foot = top_ + height;
  if (Draws()) {
    int left = left_;
    for (const AccountSheet::Bar& month : months) {
      const int debit = MulDiv(height, month.debit_bar, kThousandths);
      const int credit = MulDiv(height, month.credit_bar, kThousandths);
      FillBox(dc_, {left, foot - debit, left + bar, foot}, DebitColor());
      FillBox(dc_, {left + bar, foot - credit, left + 2 * bar, foot}, CreditColor());
      left += pitch;
    }
    FillBox(dc_, {left_, foot, Right(), foot + Design(1)}, LineColor());
  }
  top_ = foot + Design(6);
}

void AccountPainter::Table(const std::vector<AccountSheet::Bar>& months) {
  SetTableColumns(months);
  TableRow({.month = "月份", .debit = "借方", .credit = "贷方", .balance = "余额"}, LabelColor());
  for (auto month = months.rbegin(); month != months.rend(); ++month) TableRow(*month, InkColor());
}

/// The balances go where they would cut the movements.
void AccountPainter::SetTableColumns(const std::vector<AccountSheet::Bar>& months) {
  int widest = style_.fonts.Pixels(L"余额", false);
  int widest_balance = widest;
  for (const AccountSheet::Bar& month : months) {
    for (const std::string& amount : {month.debit, month.credit}) {
      widest = std::max(widest, style_.fonts.Pixels(Wide(amount), false));
    }
    widest_balance = std::max(widest_balance, style_.fonts.Pixels(Wide(month.balance), false));
  }
  const int room = Right() - left_ - style_.fonts.Pixels(L"2024-00", false);
  const int gap = Design(8);
  balance_width_ = widest_balance + gap;
  with_balance_ = 2 * (widest + gap) + balance_width_ <= room;
  if (!with_balance_) balance_width_ = 0;
  amount_width_ = (room - balance_width_) / 2;
}

void AccountPainter::TableRow(const AccountSheet::Bar& row, COLORREF color) {
  Text(Wide(row.month), left_, Right(), color, DT_LEFT, false);
  const int credit = Right() - balance_width_;
  const int debit = credit - amount_width_;
  Text(Wide(row.debit), left_, debit, color, DT_RIGHT, false);
  Text(Wide(row.credit), debit, credit, color, DT_RIGHT, false);
  if (with_balance_) Text(Wide(row.balance), credit, Right(), color, DT_RIGHT, false);
  top_ += line_;
}

void AccountPainter::Wrapped(const std::wstring& text, int left, COLORREF color, bool bold) {
  const win32::Selected font(dc_, style_.fonts.Get(bold));
  RECT place{left, top_, std::max(Right(), left + 1), top_};
  DrawTextW(dc_, text.c_str(), -1, &place, kWrap | DT_CALCRECT);
  place.right = std::max(Right(), left + 1);
  SetTextColor(dc_, color);
  if (Draws()) DrawTextW(dc_, text.c_str(), -1, &place, kWrap);
  const int gap = line_ - style_.fonts.LinePixels();
  top_ += std::max(static_cast<int>(place.bottom - place.top) + gap, line_);
}

void AccountPainter::Text(const std::wstring& text, int left, int right, COLORREF color, UINT flags,
                          bool bold) {
  if (!Draws()) return;
  const win32::Selected font(dc_, style_.fonts.Get(bold));
  const RECT place{left, top_, right, top_ + style_.fonts.LinePixels()};
  DrawLine(dc_, text.c_str(), place, color, flags);
}

void AccountPainter::Rule() {
  top_ += Design(4);
  if (Draws()) FillBox(dc_, {left_, top_, Right(), top_ + Design(1)}, LineColor());
  top_ += Design(8);
}

}  // namespace desk::app
