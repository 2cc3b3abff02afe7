#include "app/frame/icon_canvas.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace desk::app {
namespace {

namespace win32 = tavrix::viewkit::win32;

constexpr int kOversampling = 8;

win32::Bitmap MakePixels(int side, std::uint32_t** bits) {
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = side;
  info.bmiHeader.biHeight = -side;  // top row first
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  void* memory = nullptr;
  win32::Bitmap bitmap(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &memory, nullptr, 0));
  *bits = static_cast<std::uint32_t*>(memory);
  return bitmap;
}

std::uint32_t Byte(double part) {
  return static_cast<std::uint32_t>(std::lround(std::clamp(part, 0.0, 1.0) * 255));
}

std::uint32_t Argb(double red, double green, double blue, double alpha) {
  return Byte(alpha) << 24 | Byte(red) << 16 | Byte(green) << 8 | Byte(blue);
}

}  // namespace

IconCanvas::IconCanvas(int pixels)
    : pixels_(pixels),
      picture_(static_cast<std::size_t>(pixels) * static_cast<std::size_t>(pixels)),
      mask_(MakePixels(pixels * kOversampling, &mask_bits_)) {
  SelectObject(dc_.Get(), mask_.get());
}

POINT IconCanvas::Place(IconPoint point) const {
  return {Length(point.x), Length(point.y)};
}

int IconCanvas::Length(double units) const {
  return static_cast<int>(std::lround(units * pixels_ * kOversampling / kGrid));
}

template <class Draw>
void IconCanvas::Stamp(COLORREF color, Draw&& draw) {
  const int side = pixels_ * kOversampling;
  PatBlt(dc_.Get(), 0, 0, side, side, BLACKNESS);
  {
    const win32::SavedDc saved(dc_.Get());
    SelectObject(dc_.Get(), GetStockObject(WHITE_BRUSH));
    SelectObject(dc_.Get(), GetStockObject(NULL_PEN));
    draw(dc_.Get());
  }
  GdiFlush();
  Blend(color);
}

void IconCanvas::Blend(COLORREF color) {
  const auto side = static_cast<std::size_t>(pixels_);
  const std::size_t stride = side * kOversampling;
  for (std::size_t at = 0; at < picture_.size(); ++at) {
    const std::uint32_t* corner =
        mask_bits_ + (at / side) * kOversampling * stride + (at % side) * kOversampling;
    int covered = 0;
    for (std::size_t i = 0; i < std::size_t{kOversampling} * kOversampling; ++i) {
      covered += (corner[i / kOversampling * stride + i % kOversampling] & 0xFF) != 0 ? 1 : 0;
    }
    const double share = covered / static_cast<double>(kOversampling * kOversampling);
    Pixel& pixel = picture_[at];
    pixel.red = GetRValue(color) / 255.0 * share + pixel.red * (1 - share);
    pixel.green = GetGValue(color) / 255.0 * share + pixel.green * (1 - share);
    pixel.blue = GetBValue(color) / 255.0 * share + pixel.blue * (1 - share);
    pixel.alpha = share + pixel.alpha * (1 - share);
  }
}

void IconCanvas::Polygon(COLORREF color, std::initializer_list<IconPoint> points) {
  std::vector<POINT> places;
  for (const IconPoint& point : points) places.push_back(Place(point));
  Stamp(color, [&](HDC dc) { ::Polygon(dc, places.data(), static_cast<int>(places.size())); });
}

void IconCanvas::Box(COLORREF color, IconPoint from, IconPoint to, double radius) {
  const POINT top = Place(from);
  const POINT bottom = Place(to);
  const int round = Length(radius * 2);
  // A shape without an outline ends one pixel early.
  Stamp(color,
        [&](HDC dc) { RoundRect(dc, top.x, top.y, bottom.x + 1, bottom.y + 1, round, round); });
}

void IconCanvas::Disc(COLORREF color, IconPoint center, double radius) {
  const POINT top = Place({center.x - radius, center.y - radius});
  const POINT bottom = Place({center.x + radius, center.y + radius});
  Stamp(color, [&](HDC dc) { Ellipse(dc, top.x, top.y, bottom.x + 1, bottom.y + 1); });
}

void IconCanvas::Line(COLORREF color, double width, std::span<const IconPoint> points) {
  std::vector<POINT> places;
  for (const IconPoint& point : points) places.push_back(Place(point));
  const LOGBRUSH white{BS_SOLID, RGB(255, 255, 255), 0};
  using Pen = win32::GdiObject<HPEN>;
  const Pen pen(ExtCreatePen(PS_GEOMETRIC | PS_SOLID | PS_ENDCAP_ROUND | PS_JOIN_ROUND,
                             static_cast<DWORD>(Length(width)), &white, 0, nullptr));
  Stamp(color, [&](HDC dc) {
    SelectObject(dc, pen.get());
    Polyline(dc, places.data(), static_cast<int>(places.size()));
  });
}

void IconCanvas::Arc(COLORREF color, double width, IconPoint center, double radius, double from,
                     double to) {
  constexpr int kSteps = 48;
  std::vector<IconPoint> points;
  for (int i = 0; i <= kSteps; ++i) {
    const double angle = (from + (to - from) * i / kSteps) * std::numbers::pi / 180;
    points.push_back({center.x + radius * std::cos(angle), center.y + radius * std::sin(angle)});
  }
  Line(color, width, points);
}

win32::Bitmap IconCanvas::ToBitmap(bool grey) const {
  constexpr double kGreyOpacity = 0.38;
  std::uint32_t* bits = nullptr;
  win32::Bitmap bitmap = MakePixels(pixels_, &bits);
  for (const Pixel& pixel : picture_) {
    const double alpha = pixel.alpha > 0 ? pixel.alpha : 1;
    const double light = (pixel.red * 0.30 + pixel.green * 0.59 + pixel.blue * 0.11) / alpha;
    *bits++ = grey ? Argb(light, light, light, pixel.alpha * kGreyOpacity)
                   : Argb(pixel.red / alpha, pixel.green / alpha, pixel.blue / alpha, pixel.alpha);
  }
  return bitmap;
}

}  // namespace desk::app
