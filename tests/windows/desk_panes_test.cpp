// Parts of the desk that paint themselves: what they tell assistive programs, what comes on paper.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "accessible/accessible_object.h"
#include "app/frame/account_pane.h"
#include "app/print/page_pane.h"
#include "host/non_copyable.h"
#include "support/matchers.h"
#include "viewkit/win32/handles.h"
#include "windows/accessible_tree.h"
#include "windows/desktop.h"

namespace tavrix::test {
namespace {

namespace app = desk::app;
namespace views = desk::views;
namespace win32 = viewkit::win32;
using testing::SizeIs;

class ParentWindow : private host::NonCopyable {
 public:
  ParentWindow() {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    accessible::OfferAccessibility();
    window_ = win32::OwnedWindow(CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPED | WS_VISIBLE, 0,
                                                 0, 500, 400, nullptr, nullptr, nullptr, nullptr));
  }
  ~ParentWindow() {
    window_ = win32::OwnedWindow();
    CoUninitialize();
  }
  [[nodiscard]] HWND Hwnd() const { return window_.Get(); }
  [[nodiscard]] app::SharedStyle Style() const { return std::make_shared<const app::Style>(96); }

 private:
  win32::OwnedWindow window_;
};

views::PrintTable Table(int rows) {
  views::PrintTable table{.title = "会计科目表", .left = "示例公司", .foot = "2026-11-22"};
  table.columns = {{.caption = "编码"},
                   {.caption = "名称", .wraps = true, .indented = true},
                   {.caption = "余额", .align = views::PrintAlign::kRight, .amount = true}};
  for (int row = 0; row < rows; ++row) {
    table.rows.push_back(
        {.cells = {std::to_string(1000 + row), "Dépréciation 银行存款𠀀", "-1,234.50"},
         .level = row % 4,
         .bold = row % 7 == 0});
  }
  return table;
}

TEST(DeskPanes, TheAccountSpeaksLineByLine) {
  const ParentWindow frame;
  const auto pane = app::AccountPane::Make(frame.Hwnd(), frame.Style(), {});
  pane->SetSheet(views::AccountSheet{
      .code = "1122",
      .name = "应收账款",
      .path = "资产",
      .lines = {{"余额方向", "借方"}},
      .balance = "借 5.00",
      .months = {{.month = "2026-01", .debit = "5.00", .credit = "", .balance = "借 5.00"}}});
  ShowWindow(pane->Hwnd(), SW_SHOW);
  EXPECT_EQ(TreeOf(ClientOf(pane->Hwnd())),
            "document \"1122 应收账款 借 5.00\"\n"
            "  static text \"1122 应收账款\"\n"
            "  static text \"资产\"\n"
            "  static text \"余额 借 5.00\"\n"
            "  static text \"余额方向 借方\"\n"
            "  static text \"2026-01 借方 5.00 余额 借 5.00\"\n");
  const Element line = ClientOf(pane->Hwnd()).Children().at(1);
  pane->SetSheet(std::nullopt, L"没有选中科目");
  EXPECT_EQ(ClientOf(pane->Hwnd()).Name(), "没有选中科目");
  EXPECT_EQ(line.Name(), "") << "it is not there any more";
}

TEST(DeskPanes, ThePageOfAPreviewSpeaks) {
  const ParentWindow frame;
  const app::PageMeasure measure;
  views::PrintPreview preview({{"", [] { return Table(100); }}}, {}, measure, {});
  const auto pane = app::PagePane::Make(frame.Hwnd(), frame.Style(), preview, measure, {});
  pane->Show();
  EXPECT_THAT(
      TreeOf(ClientOf(pane->Hwnd())),
      testing::AllOf(HasSubstr("document \"第 1 页 共 3 页\"\n  static text \"会计科目表\"\n"),
                     HasSubstr("static text \"编码 名称 余额\"\n  static text \"1000 Dépréciation"),
                     HasSubstr("static text \"2026-11-22 第 1 页 共 3 页\"")));
  preview.GoTo(2);
  pane->Show();
  EXPECT_EQ(ClientOf(pane->Hwnd()).Name(), "第 3 页 共 3 页");
}

/// A page as it is painted, `dpi` pixels to the inch.
class PagePicture {
 public:
  PagePicture(const views::PrintPage& page, const views::Paper& paper,
              const app::PageMeasure& measure)
      : picture_(Pixels(paper.width), Pixels(paper.height), [&](HDC dc) {
          PatBlt(dc, 0, 0, Pixels(paper.width), Pixels(paper.height), WHITENESS);
          app::PagePainter(measure).Paint(dc, {0, 0}, {kDpi, kDpi}, page);
        }) {}
  /// Painted pixels of a box whose edges are twips.
  [[nodiscard]] int Ink(int left, int top, int right, int bottom) const {
    const RECT area{std::max(0, Pixels(left)), std::max(0, Pixels(top)),
                    std::min(picture_.Width(), Pixels(right)),
                    std::min(picture_.Height(), Pixels(bottom))};
    const auto all = static_cast<int>((area.right - area.left) * (area.bottom - area.top));
    return all - picture_.Count(area, RGB(255, 255, 255));
  }

 private:
  static constexpr int kDpi = 144;
  static int Pixels(int twips) { return MulDiv(twips, kDpi, viewkit::kTwipsPerInch); }
  Picture picture_;
};

TEST(DeskPanes, WhatIsPaintedStaysInsideTheMarginsAndTheCells) {
  const app::PageMeasure measure;
  const views::PrintTable table = Table(60);
  for (const bool landscape : {false, true}) {
    const views::Paper paper = views::PaperOf({.landscape = landscape});
    const views::PrintLayout layout(table, paper, measure);
    const views::PrintPage page = layout.Page(0);
    const PagePicture picture(page, paper, measure);
    constexpr int kPen = 30;  // half of a line, and a character's overhang
    EXPECT_EQ(picture.Ink(0, 0, paper.width, paper.top), 0);
    EXPECT_EQ(picture.Ink(0, 0, paper.left - kPen, paper.height), 0);
    EXPECT_EQ(picture.Ink(paper.width - paper.right + kPen, 0, paper.width, paper.height), 0);
    EXPECT_EQ(picture.Ink(0, paper.height - paper.bottom, paper.width, paper.height), 0);
    for (const views::PrintText& text : page.texts) {
      const int bottom = text.y + text.height;
      EXPECT_GT(picture.Ink(text.x, text.y, text.x + text.width, bottom), 0) << text.text;
      // Between a text and the edge of its cell nothing is painted: it is as wide as was measured.
      EXPECT_EQ(picture.Ink(text.x + text.width + 10, text.y, text.x + text.width + 40, bottom), 0)
          << text.text;
    }
  }
}

}  // namespace
}  // namespace tavrix::test
