#pragma once

#include <windows.h>

#include "app/frame/style.h"
#include "host/non_copyable.h"
#include "views/account_sheet.h"

namespace desk::app {

/// Draws what is known of an account from the top of `dc` down, `width` pixels wide, and gives the
/// height that it takes. `Mode::kMeasure` draws nothing.
class AccountPainter : private tavrix::host::NonCopyable {
 public:
  enum class Mode { kMeasure, kDraw };

  AccountPainter(HDC dc, const Style& style, int width, Mode mode);

  int Paint(const views::AccountSheet& sheet);

 private:
  void Heading(const views::AccountSheet& sheet);
  void Balance(const views::AccountSheet& sheet);
  void Lines(const std::vector<views::AccountSheet::Line>& lines);
  void Bars(const std::vector<views::AccountSheet::Bar>& months);
  void Table(const std::vector<views::AccountSheet::Bar>& months);
  void TableRow(const views::AccountSheet::Bar& row, COLORREF color);
  void SetTableColumns(const std::vector<views::AccountSheet::Bar>& months);

  /// A text that may take several lines; moves down behind it.
  void Wrapped(const std::wstring& text, int left, COLORREF color, bool bold);
  void Text(const std::wstring& text, int left, int right, COLORREF color, UINT flags, bool bold);
  void Rule();
  [[nodiscard]] int Design(int pixels) const { return style_.scale.Design(pixels); }
  [[nodiscard]] bool Draws() const { return mode_ == Mode::kDraw; }
  [[nodiscard]] int Right() const { return width_ - Design(12); }

  HDC dc_;
  const Style& style_;
  int width_;
  Mode mode_;
  int top_ = 0;
  int left_;
  int line_;              // one line of text with its gap
  int amount_width_ = 0;  // of a column of the table
  int balance_width_ = 0;
  bool with_balance_ = true;  // the table has room for it
};

}  // namespace desk::app
