#include "app/print/page_painter.h"

#include <array>
#include <string>

#include "app/frame/style.h"
#include "host/utf.h"
#include "viewkit/ports.h"

namespace desk::app {
namespace {

using tavrix::host::Wide;

constexpr int kUnits = 10;
constexpr COLORREF kThinColor = RGB(160, 160, 160);
constexpr int kThinLine = 8;  // twips
constexpr int kStrongLine = 14;
constexpr COLORREF kRed = RGB(192, 0, 0);

win32::Font MakeFont(int height, bool bold) {
  LOGFONTW font{};
  font.lfHeight = -height;
  font.lfWeight = bold ? FW_BOLD : FW_NORMAL;
  font.lfCharSet = DEFAULT_CHARSET;
  font.lfQuality = CLEARTYPE_QUALITY;
  DeskFont().face.copy(font.lfFaceName, LF_FACESIZE - 1);
  return win32::Font(CreateFontIndirectW(&font));
}

}  // namespace

PageMeasure::PageMeasure() {
  constexpr std::size_t kSingleUnits = 0x10000;
  for (const bool bold : {false, true}) {
    fonts_[bold ? 1 : 0] = MakeFont(views::kPrintSize * kUnits, bold);
    advances_[bold ? 1 : 0].assign(kSingleUnits, -1);
  }
  const win32::Selected font(dc_.Get(), fonts_[0].get());
  TEXTMETRICW metrics{};
  GetTextMetricsW(dc_.Get(), &metrics);
  line_height_ = static_cast<int>(metrics.tmHeight + metrics.tmExternalLeading) / kUnits + 1;
}

int PageMeasure::Advance(std::wstring_view character, bool bold) const {
  const win32::Selected font(dc_.Get(), fonts_[bold ? 1 : 0].get());
  SIZE size{};
  GetTextExtentPoint32W(dc_.Get(), character.data(), static_cast<int>(character.size()), &size);
  return static_cast<int>(size.cx);
}

/// The units of a pair share its width: where a font lacks the character each of them is painted.
std::vector<int> PageMeasure::Advances(std::wstring_view text, bool bold) const {
  std::vector<int> advances(text.size(), 0);
  std::vector<int>& known = advances_[bold ? 1 : 0];
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (IS_HIGH_SURROGATE(text[i]) && i + 1 < text.size()) {
      const int advance = Advance(text.substr(i, 2), bold);
      advances[i] = advance / 2;
      advances[++i] = advance - advance / 2;
      continue;
    }
    int& advance = known.at(static_cast<std::size_t>(text[i]));
    if (advance < 0) advance = Advance(text.substr(i, 1), bold);
    advances[i] = advance;
  }
  return advances;
}

int PageMeasure::Width(std::string_view text, bool bold) const {
  int width = 0;
  for (const int advance : Advances(Wide(text), bold)) width += advance;
  return (width + kUnits - 1) / kUnits;
}

std::vector<int> PageMeasure::Steps(std::wstring_view text, int size, bool bold) const {
  std::vector<int> steps = Advances(text, bold);
  // Rounded where each character stands, so that nothing adds up.
  constexpr long long kWhole = static_cast<long long>(kUnits) * views::kPrintSize;
  long long width = 0;
  int at = 0;
  for (int& step : steps) {
    width += step;
    const int next = static_cast<int>(width * size / kWhole);
    step = next - at;
    at = next;
  }
  return steps;
}

HFONT PagePainter::FontOf(int size, bool bold) {
  auto& font = fonts_[{size, bold}];
  if (!font) font = MakeFont(size, bold);
  return font.get();
}

void PagePainter::PaintText(HDC dc, const views::PrintText& text) {
  const std::wstring wide = Wide(text.text);
  const win32::Selected font(dc, FontOf(text.font.size, text.font.bold));
  SetTextColor(dc, text.font.color == views::PrintColor::kRed ? kRed : RGB(0, 0, 0));
  const std::vector<int> steps = measure_.Steps(wide, text.font.size, text.font.bold);
  ExtTextOutW(dc, text.x, text.y, 0, nullptr, wide.data(), static_cast<UINT>(wide.size()),
              steps.data());
}

void PagePainter::Paint(HDC dc, POINT origin, SIZE per_inch, const views::PrintPage& page) {
  const win32::SavedDc saved(dc);
  SetMapMode(dc, MM_ANISOTROPIC);
  SetWindowExtEx(dc, tavrix::viewkit::kTwipsPerInch, tavrix::viewkit::kTwipsPerInch, nullptr);
  SetViewportExtEx(dc, per_inch.cx, per_inch.cy, nullptr);
  SetViewportOrgEx(dc, origin.x, origin.y, nullptr);
  SetBkMode(dc, TRANSPARENT);
  const win32::GdiObject<HPEN> thin(CreatePen(PS_SOLID, kThinLine, kThinColor));
  const win32::GdiObject<HPEN> strong(CreatePen(PS_SOLID, kStrongLine, RGB(0, 0, 0)));
  for (const bool strong_ones : {false, true}) {  // the strong ones cover the ends of the others
    const win32::Selected pen(dc, strong_ones ? strong.get() : thin.get());
    for (const views::PrintLine& line : page.lines) {
      if (line.strong != strong_ones) continue;
      MoveToEx(dc, line.x1, line.y1, nullptr);
      LineTo(dc, line.x2, line.y2);
    }
  }
  for (const views::PrintText& text : page.texts) PaintText(dc, text);
}

}  // namespace desk::app
