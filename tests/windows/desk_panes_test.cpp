// Parts of the desk that paint themselves: what they tell assistive programs, what comes on paper.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "accessible/accessible_object.h"
#include "app/frame/account_pane.h"
#include "app/print/page_pane.h"
#include "viewkit/win32/handles.h"
#include "windows/accessible_tree.h"

namespace tavrix::test {
namespace {

namespace app = desk::app;
namespace views = desk::views;
namespace win32 = viewkit::win32;
using testing::HasSubstr;
using testing::SizeIs;

class Frame {
 public:
  Frame() {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    accessible::OfferAccessibility();
    window_ = win32::OwnedWindow(CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPED | WS_VISIBLE, 0,
                                                 0, 500, 400, nullptr, nullptr, nullptr, nullptr));
  }
  Frame(const Frame&) = delete;
  Frame& operator=(const Frame&) = delete;
  ~Frame() {
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
  const Frame frame;
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
  const Frame frame;
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
class Picture {
 public:
  Picture(const views::PrintPage& page, const views::Paper& paper, const app::PageMeasure& measure)
      : width_(Pixels(paper.width)), height_(Pixels(paper.height)) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width_;
    info.bmiHeader.biHeight = -height_;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    bitmap_.reset(CreateDIBSection(dc_.Get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    pixels_ = static_cast<const std::uint32_t*>(bits);
    const win32::Selected selected(dc_.Get(), bitmap_.get());
    PatBlt(dc_.Get(), 0, 0, width_, height_, WHITENESS);
    app::PagePainter(measure).Paint(dc_.Get(), {0, 0}, {kDpi, kDpi}, page);
    GdiFlush();
  }
  static int Pixels(int twips) { return MulDiv(twips, kDpi, viewkit::kTwipsPerInch); }
  /// Painted pixels of a box whose edges are twips.
  [[nodiscard]] int Ink(int left, int top, int right, int bottom) const {
    int ink = 0;
    for (int y = std::max(0, Pixels(top)); y < std::min(height_, Pixels(bottom)); ++y) {
      for (int x = std::max(0, Pixels(left)); x < std::min(width_, Pixels(right)); ++x) {
        ink += (pixels_[y * width_ + x] & 0xFFFFFF) != 0xFFFFFF ? 1 : 0;
      }
    }
    return ink;
  }

 private:
  static constexpr int kDpi = 144;
  int width_;
  int height_;
  win32::MemoryDc dc_;
  win32::Bitmap bitmap_;
  const std::uint32_t* pixels_ = nullptr;
};

TEST(DeskPanes, WhatIsPaintedStaysInsideTheMarginsAndTheCells) {
  const app::PageMeasure measure;
  const views::PrintTable table = Table(60);
  for (const bool landscape : {false, true}) {
    const views::Paper paper = views::PaperOf({.landscape = landscape});
    const views::PrintLayout layout(table, paper, measure);
    const views::PrintPage page = layout.Page(0);
    const Picture picture(page, paper, measure);
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
