#include "viewkit/win32/fonts.h"

#include <algorithm>

#include "host/utf.h"

namespace tavrix::viewkit::win32 {
namespace {

constexpr std::size_t kRememberedWidths = 1024;
constexpr int kSmallest = 180;  // twips; Chinese characters are not legible below

Font MakeFont(const FontSpec& wanted, Scale scale, bool bold) {
  LOGFONTW font{};
  font.lfHeight = -scale.ToPixels(wanted.height);
  font.lfWeight = bold ? FW_BOLD : FW_NORMAL;
  font.lfItalic = wanted.italic ? TRUE : FALSE;
  font.lfCharSet = DEFAULT_CHARSET;
  font.lfQuality = CLEARTYPE_QUALITY;
  wanted.face.copy(font.lfFaceName, LF_FACESIZE - 1);
  return Font(CreateFontIndirectW(&font));
}

}  // namespace

FontSpec FontSpec::System() {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  FontSpec wanted{.face = L"Microsoft YaHei UI"};
  if (!SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, 96)) {
    return wanted;
  }
  const LOGFONTW& font = metrics.lfMessageFont;
  wanted.face = font.lfFaceName;
  if (font.lfHeight < 0) {
    wanted.height = std::max(kSmallest, static_cast<int>(-font.lfHeight) * kTwipsPerPixel);
  }
  wanted.italic = font.lfItalic != 0;
  wanted.bold = font.lfWeight >= FW_BOLD;
  return wanted;
}

FontSet::FontSet(const FontSpec& wanted, Scale scale)
    : scale_(scale),
      regular_(MakeFont(wanted, scale, wanted.bold)),
      bold_(MakeFont(wanted, scale, true)) {
  const Selected font(dc_.Get(), regular_.get());
  TEXTMETRICW metrics{};
  GetTextMetricsW(dc_.Get(), &metrics);
  line_height_ = static_cast<int>(metrics.tmHeight);
}

int FontSet::Width(std::string_view text, bool bold) const {
  auto& widths = widths_[bold ? 1 : 0];
  if (widths.size() >= kRememberedWidths) widths.clear();
  const auto [place, fresh] = widths.try_emplace(std::string(text), 0);
  if (fresh) place->second = scale_.ToTwips(Pixels(host::Wide(text), bold));
  return place->second;
}

int FontSet::Pixels(std::wstring_view text, bool bold) const {
  const Selected font(dc_.Get(), Get(bold));
  SIZE size{};
  GetTextExtentPoint32W(dc_.Get(), text.data(), static_cast<int>(text.size()), &size);
  return static_cast<int>(size.cx);
}

}  // namespace tavrix::viewkit::win32
