#include "app/frame/icons.h"

#include <algorithm>
#include <array>
#include <vector>

#include "app/frame/icon_canvas.h"
#include "app/frame/style.h"

namespace desk::app {
namespace {

constexpr COLORREF kSoft = RGB(160, 172, 186);
constexpr COLORREF kPaper = RGB(240, 244, 249);
constexpr COLORREF kBlue = kLinkColor;
constexpr COLORREF kGreen = RGB(46, 150, 92);
constexpr COLORREF kRed = kErrorColor;
constexpr COLORREF kAmber = kWarningColor;
constexpr COLORREF kWhite = RGB(255, 255, 255);

/// Lines and frames, which must be seen on dark strips too.
COLORREF Ink() {
  return Readable(RGB(72, 86, 104), FaceColor(), TextColor());
}

void Plus(IconCanvas& c, IconPoint center) {
  c.Disc(kWhite, center, 5.6);
  c.Disc(kGreen, center, 4.8);
  c.Line(kWhite, 1.6, {{center.x - 2.5, center.y}, {center.x + 2.5, center.y}});
  c.Line(kWhite, 1.6, {{center.x, center.y - 2.5}, {center.x, center.y + 2.5}});
}

void NewBook(IconCanvas& c) {
  c.Box(kBlue, {4, 2}, {19, 21}, 1.5);
  c.Box(kPaper, {7.5, 2}, {17.5, 19}, 0.5);
  c.Box(kBlue, {9.5, 6}, {15.5, 7.5});
  c.Box(kBlue, {9.5, 10}, {15.5, 11.5});
  Plus(c, {17.5, 17.5});
}

void OpenBook(IconCanvas& c) {
  c.Box(kAmber, {2, 4}, {10, 12}, 1.5);
  c.Box(kAmber, {2, 6}, {20, 19}, 1.5);
  c.Box(kPaper, {5, 8}, {18, 16}, 0.5);
  c.Polygon(RGB(244, 186, 84), {{5.5, 11}, {23, 11}, {19.5, 20}, {2, 20}});
}

void AddSibling(IconCanvas& c) {
  c.Line(kSoft, 1.4, {{4, 3}, {4, 15}, {8, 15}});
  c.Line(kSoft, 1.4, {{4, 6}, {8, 6}});
  c.Box(Ink(), {8, 3.5}, {21, 8.5}, 1);
  c.Box(kGreen, {8, 12.5}, {21, 17.5}, 1);
  Plus(c, {18, 18});
}

void AddChild(IconCanvas& c) {
  c.Box(Ink(), {3, 3.5}, {17, 8.5}, 1);
  c.Line(kSoft, 1.4, {{6, 9}, {6, 15}, {10, 15}});
  c.Box(kGreen, {10, 12.5}, {21, 17.5}, 1);
  Plus(c, {18, 18});
}

void Edit(IconCanvas& c) {
  c.Polygon(kBlue, {{6, 14}, {15.5, 4.5}, {19.5, 8.5}, {10, 18}});
  c.Polygon(kAmber, {{16.5, 3.5}, {18, 2}, {22, 6}, {20.5, 7.5}});
  c.Polygon(Ink(), {{5, 15}, {9, 19}, {3.5, 20.5}});
  c.Box(kSoft, {12, 20}, {21, 21.5});
}

void Delete(IconCanvas& c) {
  c.Box(kRed, {5.5, 8}, {18.5, 22}, 2);
  c.Box(kRed, {5.5, 8}, {18.5, 12});
  c.Box(kRed, {3.5, 4}, {20.5, 6.5}, 1);
  c.Box(kRed, {9, 2}, {15, 5}, 1);
  for (const double x : {9.0, 12.0, 15.0}) c.Line(kWhite, 1.4, {{x, 11}, {x, 18.5}});
}

/// An upward or downward arrow; with `bar`, as far as it goes.
void Move(IconCanvas& c, bool up, bool bar) {
  const auto y = [up](double from_top) { return up ? from_top : IconCanvas::kGrid - from_top; };
  const double tip = bar ? 7 : 5;
  c.Polygon(kBlue, {{12, y(tip)}, {19.5, y(tip + 8)}, {4.5, y(tip + 8)}});
  c.Box(kBlue, {9.5, std::min(y(tip + 7.5), y(20))}, {14.5, std::max(y(tip + 7.5), y(20))}, 0.5);
  if (bar) c.Box(Ink(), {4.5, std::min(y(3), y(5.5))}, {19.5, std::max(y(3), y(5.5))}, 0.5);
}

void Find(IconCanvas& c) {
  c.Line(Ink(), 3.4, {{15, 15}, {20.5, 20.5}});
  c.Disc(kBlue, {10, 10}, 7.5);
  c.Disc(kPaper, {10, 10}, 5.3);
}

void Filter(IconCanvas& c) {
  c.Polygon(kBlue, {{2.5, 3.5}, {21.5, 3.5}, {14.5, 12}, {14.5, 18}, {9.5, 21.5}, {9.5, 12}});
  c.Box(RGB(120, 170, 226), {2.5, 3.5}, {21.5, 5.7}, 0.5);
}

void Refresh(IconCanvas& c) {
  c.Arc(kGreen, 2.6, {12, 12}, 7.6, -75, 95);
  c.Arc(kGreen, 2.6, {12, 12}, 7.6, 105, 275);
  c.Polygon(kGreen, {{14.5, 0.2}, {14.5, 8.6}, {8.8, 4.4}});
  c.Polygon(kGreen, {{9.5, 15.4}, {9.5, 23.8}, {15.2, 19.6}});
}

void Voucher(IconCanvas& c) {
  c.Box(Ink(), {3, 3}, {21, 21}, 1.5);
  c.Box(kPaper, {4.5, 8}, {19.5, 19.5}, 0.5);
  c.Box(kWhite, {8, 4.8}, {16, 6.2});
  c.Box(kSoft, {11.5, 8}, {12.5, 19.5});
  c.Box(kSoft, {4.5, 11.2}, {19.5, 12.2});
  c.Box(kBlue, {6, 13.8}, {10, 15.2});
  c.Box(kGreen, {14, 13.8}, {18, 15.2});
  c.Box(kBlue, {6, 16.6}, {10, 18});
}

void Warning(IconCanvas& c) {
  c.Line(kAmber, 3, {{12, 4}, {21, 20}, {3, 20}, {12, 4}, {21, 20}});
  c.Polygon(kAmber, {{12, 4}, {21, 20}, {3, 20}});
  c.Line(kWhite, 2.2, {{12, 9.5}, {12, 14}});
  c.Disc(kWhite, {12, 17.6}, 1.3);
}

void Error(IconCanvas& c) {
  c.Disc(kRed, {12, 12}, 10);
  c.Line(kWhite, 2.4, {{8.3, 8.3}, {15.7, 15.7}});
  c.Line(kWhite, 2.4, {{15.7, 8.3}, {8.3, 15.7}});
}

void Reports(IconCanvas& c) {
  c.Box(Ink(), {2.5, 3}, {21.5, 21}, 1.5);
  c.Box(kPaper, {4, 6.5}, {20, 19.5}, 0.5);
  c.Disc(kRed, {7.5, 10}, 1.7);
  c.Disc(kAmber, {7.5, 15.8}, 1.7);
  c.Box(Ink(), {11, 9.2}, {18, 10.8});
  c.Box(Ink(), {11, 15}, {18, 16.6});
}

void Details(IconCanvas& c) {
  c.Box(Ink(), {2.5, 3}, {21.5, 21}, 1.5);
  c.Box(kPaper, {4, 4.5}, {12.5, 19.5}, 0.5);
  c.Box(kWhite, {14, 6}, {20, 7.4});
  c.Box(kSoft, {14, 9}, {20, 10.2});
  c.Box(kBlue, {14, 14}, {15.6, 18.5});
  c.Box(kGreen, {16.3, 12}, {17.9, 18.5});
  c.Box(kAmber, {18.6, 15.5}, {20.2, 18.5});
}

void More(IconCanvas& c) {
  c.Line(Ink(), 2, {{5, 6}, {11, 12}, {5, 18}});
  c.Line(Ink(), 2, {{12, 6}, {18, 12}, {12, 18}});
}

void Close(IconCanvas& c) {
  c.Line(Ink(), 2.2, {{7, 7}, {17, 17}});
  c.Line(Ink(), 2.2, {{17, 7}, {7, 17}});
}

void Collapse(IconCanvas& c) {
  c.Line(Ink(), 2.2, {{6, 9}, {12, 15}, {18, 9}});
}

void Expand(IconCanvas& c) {
  c.Line(Ink(), 2.2, {{6, 15}, {12, 9}, {18, 15}});
}

void Ledger(IconCanvas& c) {
  c.Box(kBlue, {3, 1.5}, {21, 22.5}, 2);
  c.Box(RGB(26, 80, 146), {3, 1.5}, {7, 22.5}, 1.5);
  c.Box(kWhite, {9.5, 5}, {18.5, 10}, 0.8);
  c.Box(kBlue, {11, 6.8}, {17, 8.2});
  c.Line(kWhite, 1.2, {{10, 14}, {18, 14}});
  c.Line(kWhite, 1.2, {{10, 17.5}, {16, 17.5}});
}

using Painter = void (*)(IconCanvas&);
constexpr std::array<Painter, kIconCount> kPainters = {NewBook,
                                                       OpenBook,
                                                       AddSibling,
                                                       AddChild,
                                                       Edit,
                                                       Delete,
                                                       [](IconCanvas& c) { Move(c, true, true); },
                                                       [](IconCanvas& c) { Move(c, true, false); },
                                                       [](IconCanvas& c) { Move(c, false, false); },
                                                       [](IconCanvas& c) { Move(c, false, true); },
                                                       Find,
                                                       Filter,
                                                       Refresh,
                                                       Voucher,
                                                       Reports,
                                                       Details,
                                                       More,
                                                       Error,
                                                       Warning,
                                                       Close,
                                                       Collapse,
                                                       Expand,
                                                       Ledger};

}  // namespace

win32::Bitmap DrawIcon(Icon icon, int pixels, bool grey) {
  IconCanvas canvas(pixels);
  kPainters[static_cast<std::size_t>(icon)](canvas);
  return canvas.ToBitmap(grey);
}

ImageList MakeImageList(int pixels, bool grey) {
  ImageList list(ImageList_Create(pixels, pixels, ILC_COLOR32, kIconCount, 0));
  for (int i = 0; i < kIconCount; ++i) {
    const win32::Bitmap bitmap = DrawIcon(static_cast<Icon>(i), pixels, grey);
    ImageList_Add(list.get(), bitmap.get(), nullptr);
  }
  return list;
}

OwnedIcon MakeIcon(Icon icon, int pixels) {
  const win32::Bitmap color = DrawIcon(icon, pixels, false);
  // The alpha channel decides; the mask must only be there. Its rows are whole words.
  const std::vector<BYTE> opaque(static_cast<std::size_t>((pixels + 15) / 16 * 2 * pixels));
  const win32::Bitmap mask(CreateBitmap(pixels, pixels, 1, 1, opaque.data()));
  ICONINFO info{TRUE, 0, 0, mask.get(), color.get()};
  return OwnedIcon(CreateIconIndirect(&info));
}

void PaintIcon(HDC dc, Icon icon, int x, int y, int pixels) {
  const OwnedIcon picture = MakeIcon(icon, pixels);
  DrawIconEx(dc, x, y, picture.get(), pixels, pixels, 0, nullptr, DI_NORMAL);
}

}  // namespace desk::app
