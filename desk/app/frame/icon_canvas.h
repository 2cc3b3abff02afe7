#pragma once

#include <windows.h>

#include <cstdint>
#include <initializer_list>
#include <span>
#include <vector>

#include "viewkit/win32/handles.h"

namespace desk::app {

/// A point on an icon's drawing grid, which is 24 units wide and high at every resolution.
struct IconPoint {
  double x = 0;
  double y = 0;
};

/// Draws small pictures with smooth edges at any resolution: every shape is filled on a much larger
/// mask, whose averages become its opacity. Shapes cover those drawn before.
class IconCanvas {
 public:
  static constexpr int kGrid = 24;

  explicit IconCanvas(int pixels);

  void Polygon(COLORREF color, std::initializer_list<IconPoint> points);
  void Box(COLORREF color, IconPoint from, IconPoint to, double radius = 0);
  void Disc(COLORREF color, IconPoint center, double radius);
  /// A line through `points` with round ends.
  void Line(COLORREF color, double width, std::span<const IconPoint> points);
  void Line(COLORREF color, double width, std::initializer_list<IconPoint> points) {
    Line(color, width, std::span(points.begin(), points.size()));
  }
  /// Part of a circle; degrees count clockwise from the right.
  void Arc(COLORREF color, double width, IconPoint center, double radius, double from, double to);

  /// The picture with straight alpha, as image lists and icons want it; `grey`: as a disabled
  /// command shows it.
  [[nodiscard]] tavrix::viewkit::win32::Bitmap ToBitmap(bool grey) const;

 private:
  [[nodiscard]] POINT Place(IconPoint point) const;
  [[nodiscard]] int Length(double units) const;
  /// Runs `draw` on the cleared mask and lays the result over the picture.
  template <class Draw>
  void Stamp(COLORREF color, Draw&& draw);
  void Blend(COLORREF color);

  struct Pixel {
    double red = 0, green = 0, blue = 0, alpha = 0;  // colours times alpha
  };
  int pixels_;
  std::vector<Pixel> picture_;
  std::uint32_t* mask_bits_ = nullptr;   // set by the making of the mask, so it comes first
  tavrix::viewkit::win32::Bitmap mask_;  // before the device context that it is selected into
  tavrix::viewkit::win32::MemoryDc dc_;
};

}  // namespace desk::app
